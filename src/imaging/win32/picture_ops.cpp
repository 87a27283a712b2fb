// The pictures' operations on Windows: decoding, JPEG encoding and file
// reading through the Windows Imaging Component, everything else as plain
// pixel loops.
#include "imaging/picture_ops.h"
#include "imaging/picture_size.h"
#include "imaging/win32/com_object.h"

#include <windows.h>
#include <objbase.h>
#include <wincodec.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>

namespace vx::imaging {

namespace {

using win32::ComPtr;
using win32::comReady;

// The first frame of a decoder converted to `format` with `channels`.
Picture firstFrame(IWICImagingFactory* factory, IWICBitmapDecoder* decoder, REFWICPixelFormatGUID format,
                   int channels)
{
    ComPtr<IWICBitmapFrameDecode> frame;
    if (FAILED(decoder->GetFrame(0, frame.out())))
        return Picture();
    ComPtr<IWICFormatConverter> converter;
    if (FAILED(factory->CreateFormatConverter(converter.out())) ||
        FAILED(converter->Initialize(frame.p, format, WICBitmapDitherTypeNone, nullptr, 0.0,
                                     WICBitmapPaletteTypeCustom)))
        return Picture();
    UINT width = 0, height = 0;
    if (FAILED(converter->GetSize(&width, &height)) || width == 0 || height == 0 || width > 32768 ||
        height > 32768)
        return Picture();
    Picture out = makePicture(static_cast<int>(width), static_cast<int>(height), channels);
    if (FAILED(converter->CopyPixels(nullptr, static_cast<UINT>(out.stride),
                                     static_cast<UINT>(out.stride * out.height), out.data)))
        return Picture();
    return out;
}

// The channels of the frame as stored: 1 for gray, 4 with alpha, else 3.
int frameChannels(IWICImagingFactory* factory, IWICBitmapDecoder* decoder)
{
    ComPtr<IWICBitmapFrameDecode> frame;
    WICPixelFormatGUID format{};
    if (FAILED(decoder->GetFrame(0, frame.out())) || FAILED(frame->GetPixelFormat(&format)))
        return 3;
    if (IsEqualGUID(format, GUID_WICPixelFormat8bppGray) || IsEqualGUID(format, GUID_WICPixelFormat16bppGray) ||
        IsEqualGUID(format, GUID_WICPixelFormatBlackWhite) || IsEqualGUID(format, GUID_WICPixelFormat2bppGray) ||
        IsEqualGUID(format, GUID_WICPixelFormat4bppGray))
        return 1;
    ComPtr<IWICComponentInfo> info;
    if (FAILED(factory->CreateComponentInfo(format, info.out())))
        return 3;
    ComPtr<IWICPixelFormatInfo2> pixelInfo;
    if (FAILED(info->QueryInterface(IID_IWICPixelFormatInfo2, reinterpret_cast<void**>(pixelInfo.out()))))
        return 3;
    BOOL alpha = FALSE;
    return SUCCEEDED(pixelInfo->SupportsTransparency(&alpha)) && alpha ? 4 : 3;
}

bool makeFactory(ComPtr<IWICImagingFactory>& factory)
{
    return comReady() && SUCCEEDED(CoCreateInstance(CLSID_WICImagingFactory, nullptr, CLSCTX_INPROC_SERVER,
                                                    IID_IWICImagingFactory,
                                                    reinterpret_cast<void**>(factory.out())));
}

std::uint8_t saturate(double v)
{
    const long r = std::lround(v);
    return static_cast<std::uint8_t>(std::clamp(r, 0L, 255L));
}

bool sameShape(const Picture& a, const Picture& b)
{
    return a.width == b.width && a.height == b.height && a.channels == b.channels;
}

// Sets one pixel when it lies inside.
void plot(Picture& p, int x, int y, const PictureColour& colour)
{
    if (x < 0 || y < 0 || x >= p.width || y >= p.height)
        return;
    std::uint8_t* px = p.at(x, y);
    for (int c = 0; c < p.channels; ++c)
        px[c] = saturate(colour[c]);
}

void fillRect(Picture& p, const PictureRect& rect, const PictureColour& colour)
{
    const PictureRect r = intersection(rect, p.bounds());
    for (int y = r.y; y < r.y + r.height; ++y)
        for (int x = r.x; x < r.x + r.width; ++x)
            plot(p, x, y, colour);
}

} // namespace

Picture decodePicture(std::span<const std::uint8_t> bytes)
{
    ComPtr<IWICImagingFactory> factory;
    if (bytes.empty() || bytes.size() > 0x7fffffff || !makeFactory(factory))
        return Picture();
    // The stream reads the caller's bytes where they are.
    ComPtr<IWICStream> stream;
    if (FAILED(factory->CreateStream(stream.out())) ||
        FAILED(stream->InitializeFromMemory(const_cast<BYTE*>(bytes.data()), static_cast<DWORD>(bytes.size()))))
        return Picture();
    ComPtr<IWICBitmapDecoder> decoder;
    if (FAILED(factory->CreateDecoderFromStream(stream.p, nullptr, WICDecodeMetadataCacheOnDemand, decoder.out())))
        return Picture();
    return firstFrame(factory.p, decoder.p, GUID_WICPixelFormat24bppBGR, 3);
}

// The decoder frame's scaling interface, which mingw-w64's wincodec.h
// leaves out; declared as the platform documents it.
struct IWicSourceTransform : public IUnknown {
    virtual HRESULT STDMETHODCALLTYPE CopyPixels(const WICRect* rect, UINT width, UINT height,
                                                 WICPixelFormatGUID* format, WICBitmapTransformOptions transform,
                                                 UINT stride, UINT bufferSize, BYTE* buffer) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetClosestSize(UINT* width, UINT* height) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetClosestPixelFormat(WICPixelFormatGUID* format) = 0;
    virtual HRESULT STDMETHODCALLTYPE DoesSupportTransform(WICBitmapTransformOptions transform, BOOL* supported) = 0;
};
const IID iidWicSourceTransform = {0x3b16811b, 0x6a43, 0x4ec9, {0xb7, 0x13, 0x3d, 0x5a, 0x0c, 0x13, 0xb9, 0x40}};

// A JPEG decoder that offers the source transform scales in its DCT; one
// that doesn't (or won't give three-channel pixels at that size) decodes
// the whole picture instead.
Picture decodePictureFor(std::span<const std::uint8_t> bytes, int width, int height)
{
    int fullWidth = 0, fullHeight = 0;
    if (!jpegSize(bytes, fullWidth, fullHeight))
        return decodePicture(bytes);
    const int factor = reductionFor(fullWidth, fullHeight, width, height);
    ComPtr<IWICImagingFactory> factory;
    if (factor == 1 || bytes.size() > 0x7fffffff || !makeFactory(factory))
        return decodePicture(bytes);
    ComPtr<IWICStream> stream;
    ComPtr<IWICBitmapDecoder> decoder;
    ComPtr<IWICBitmapFrameDecode> frame;
    ComPtr<IWicSourceTransform> transform;
    if (FAILED(factory->CreateStream(stream.out())) ||
        FAILED(stream->InitializeFromMemory(const_cast<BYTE*>(bytes.data()), static_cast<DWORD>(bytes.size()))) ||
        FAILED(factory->CreateDecoderFromStream(stream.p, nullptr, WICDecodeMetadataCacheOnDemand, decoder.out())) ||
        FAILED(decoder->GetFrame(0, frame.out())) ||
        FAILED(frame->QueryInterface(iidWicSourceTransform, reinterpret_cast<void**>(transform.out()))))
        return decodePicture(bytes);
    UINT scaledWidth = static_cast<UINT>((fullWidth + factor - 1) / factor);
    UINT scaledHeight = static_cast<UINT>((fullHeight + factor - 1) / factor);
    WICPixelFormatGUID format = GUID_WICPixelFormat24bppBGR;
    if (FAILED(transform->GetClosestSize(&scaledWidth, &scaledHeight)) ||
        scaledWidth < static_cast<UINT>(width) || scaledHeight < static_cast<UINT>(height) ||
        scaledWidth > static_cast<UINT>(fullWidth) || scaledHeight > static_cast<UINT>(fullHeight) ||
        FAILED(transform->GetClosestPixelFormat(&format)) || !IsEqualGUID(format, GUID_WICPixelFormat24bppBGR))
        return decodePicture(bytes);
    Picture out = makePicture(static_cast<int>(scaledWidth), static_cast<int>(scaledHeight), 3);
    if (out.empty() || FAILED(transform->CopyPixels(nullptr, scaledWidth, scaledHeight, &format,
                                                    WICBitmapTransformRotate0, static_cast<UINT>(out.stride),
                                                    static_cast<UINT>(out.stride * out.height), out.data)))
        return decodePicture(bytes);
    return out;
}

// The encoder writes into a stream over a growing memory block; its bytes
// are copied out once both frame and encoder are committed.
std::vector<std::uint8_t> encodeJpeg(const Picture& picture, int quality)
{
    ComPtr<IWICImagingFactory> factory;
    if (picture.empty() || !makeFactory(factory))
        return {};
    Picture bgr = picture;
    if (picture.channels != 3) {
        bgr = makePicture(picture.width, picture.height, 3);
        convertInto(picture, bgr);
    }
    ComPtr<IStream> stream;
    ComPtr<IWICBitmapEncoder> encoder;
    if (FAILED(CreateStreamOnHGlobal(nullptr, TRUE, stream.out())) ||
        FAILED(factory->CreateEncoder(GUID_ContainerFormatJpeg, nullptr, encoder.out())) ||
        FAILED(encoder->Initialize(stream.p, WICBitmapEncoderNoCache)))
        return {};
    ComPtr<IWICBitmapFrameEncode> frame;
    ComPtr<IPropertyBag2> options;
    if (FAILED(encoder->CreateNewFrame(frame.out(), options.out())))
        return {};
    if (options.p) {
        PROPBAG2 option{};
        option.pstrName = const_cast<LPOLESTR>(L"ImageQuality");
        VARIANT value;
        VariantInit(&value);
        value.vt = VT_R4;
        value.fltVal = static_cast<float>(std::clamp(quality, 1, 100)) / 100.0f;
        options->Write(1, &option, &value);   // the encoder's default quality otherwise
    }
    WICPixelFormatGUID format = GUID_WICPixelFormat24bppBGR;
    const UINT stride = static_cast<UINT>(bgr.stride);
    const UINT bytes = stride * static_cast<UINT>(bgr.height - 1) + static_cast<UINT>(bgr.width * 3);
    if (FAILED(frame->Initialize(options.p)) ||
        FAILED(frame->SetSize(static_cast<UINT>(bgr.width), static_cast<UINT>(bgr.height))) ||
        FAILED(frame->SetPixelFormat(&format)) || !IsEqualGUID(format, GUID_WICPixelFormat24bppBGR) ||
        FAILED(frame->WritePixels(static_cast<UINT>(bgr.height), stride, bytes, bgr.data)) ||
        FAILED(frame->Commit()) || FAILED(encoder->Commit()))
        return {};
    HGLOBAL memory = nullptr;
    STATSTG status{};
    if (FAILED(GetHGlobalFromStream(stream.p, &memory)) || FAILED(stream->Stat(&status, STATFLAG_NONAME)))
        return {};
    const auto size = static_cast<std::size_t>(status.cbSize.QuadPart);
    const auto* data = static_cast<const std::uint8_t*>(GlobalLock(memory));
    if (!data)
        return {};
    std::vector<std::uint8_t> out(data, data + size);
    GlobalUnlock(memory);
    return out;
}

Picture readPictureFile(const std::filesystem::path& file)
{
    ComPtr<IWICImagingFactory> factory;
    if (!makeFactory(factory))
        return Picture();
    ComPtr<IWICBitmapDecoder> decoder;
    if (FAILED(factory->CreateDecoderFromFilename(file.c_str(), nullptr, GENERIC_READ,
                                                  WICDecodeMetadataCacheOnDemand, decoder.out())))
        return Picture();
    switch (frameChannels(factory.p, decoder.p)) {
    case 1:
        return firstFrame(factory.p, decoder.p, GUID_WICPixelFormat8bppGray, 1);
    case 4:
        return firstFrame(factory.p, decoder.p, GUID_WICPixelFormat32bppBGRA, 4);
    default:
        return firstFrame(factory.p, decoder.p, GUID_WICPixelFormat24bppBGR, 3);
    }
}

// Bilinear, with pixel centres lined up (half-pixel offset), edges clamped.
Picture scaled(const Picture& source, int width, int height)
{
    if (source.empty() || width <= 0 || height <= 0)
        return Picture();
    Picture out = makePicture(width, height, source.channels);
    const double sx = static_cast<double>(source.width) / width;
    const double sy = static_cast<double>(source.height) / height;
    for (int y = 0; y < height; ++y) {
        const double fy = std::clamp((y + 0.5) * sy - 0.5, 0.0, source.height - 1.0);
        const int y0 = static_cast<int>(fy), y1 = std::min(y0 + 1, source.height - 1);
        const double wy = fy - y0;
        for (int x = 0; x < width; ++x) {
            const double fx = std::clamp((x + 0.5) * sx - 0.5, 0.0, source.width - 1.0);
            const int x0 = static_cast<int>(fx), x1 = std::min(x0 + 1, source.width - 1);
            const double wx = fx - x0;
            const std::uint8_t* a = source.at(x0, y0);
            const std::uint8_t* b = source.at(x1, y0);
            const std::uint8_t* c = source.at(x0, y1);
            const std::uint8_t* d = source.at(x1, y1);
            std::uint8_t* o = out.at(x, y);
            for (int k = 0; k < source.channels; ++k) {
                const double top = a[k] + (b[k] - a[k]) * wx;
                const double bottom = c[k] + (d[k] - c[k]) * wx;
                o[k] = saturate(top + (bottom - top) * wy);
            }
        }
    }
    return out;
}

void convertInto(const Picture& source, Picture& target)
{
    if (source.empty() || target.empty() || source.width != target.width || source.height != target.height)
        return;
    for (int y = 0; y < source.height; ++y)
        for (int x = 0; x < source.width; ++x) {
            const std::uint8_t* s = source.at(x, y);
            std::uint8_t* t = target.at(x, y);
            std::uint8_t bgra[4] = {s[0], s[0], s[0], 255};
            if (source.channels >= 3) {
                bgra[1] = s[1];
                bgra[2] = s[2];
            }
            if (source.channels == 4)
                bgra[3] = s[3];
            if (target.channels == 1)
                t[0] = source.channels == 1 ? s[0] : saturate(0.114 * s[0] + 0.587 * s[1] + 0.299 * s[2]);
            else
                std::memcpy(t, bgra, static_cast<std::size_t>(std::min(target.channels, 4)));
        }
}

void fill(Picture& picture, const PictureColour& colour)
{
    if (!picture.empty())
        fillRect(picture, picture.bounds(), colour);
}

void drawRectangle(Picture& picture, const PictureRect& rect, const PictureColour& colour, int thickness)
{
    if (picture.empty() || rect.width <= 0 || rect.height <= 0)
        return;
    thickness = std::max(thickness, 1);
    const int x1 = rect.x + rect.width - 1, y1 = rect.y + rect.height - 1;
    const int before = (thickness - 1) / 2, after = thickness / 2;
    // A thickness of one is the outline itself; thicker ones grow both ways.
    fillRect(picture, {rect.x - before, rect.y - before, rect.width + before + after, thickness}, colour);
    fillRect(picture, {rect.x - before, y1 - before, rect.width + before + after, thickness}, colour);
    fillRect(picture, {rect.x - before, rect.y - before, thickness, rect.height + before + after}, colour);
    fillRect(picture, {x1 - before, rect.y - before, thickness, rect.height + before + after}, colour);
}

void drawLine(Picture& picture, int x0, int y0, int x1, int y1, const PictureColour& colour, int thickness)
{
    if (picture.empty())
        return;
    thickness = std::max(thickness, 1);
    const int before = (thickness - 1) / 2;
    const int dx = std::abs(x1 - x0), dy = -std::abs(y1 - y0);
    const int stepX = x0 < x1 ? 1 : -1, stepY = y0 < y1 ? 1 : -1;
    int error = dx + dy;
    for (;;) {
        fillRect(picture, {x0 - before, y0 - before, thickness, thickness}, colour);
        if (x0 == x1 && y0 == y1)
            break;
        const int twice = 2 * error;
        if (twice >= dy) {
            error += dy;
            x0 += stepX;
        }
        if (twice <= dx) {
            error += dx;
            y0 += stepY;
        }
    }
}

void multiply(Picture& picture, double factor)
{
    for (int y = 0; y < picture.height && !picture.empty(); ++y) {
        std::uint8_t* row = picture.row(y);
        for (int i = 0; i < picture.width * picture.channels; ++i)
            row[i] = saturate(row[i] * factor);
    }
}

void addInto(Picture& target, const Picture& source)
{
    if (target.empty() || !sameShape(target, source))
        return;
    for (int y = 0; y < target.height; ++y) {
        std::uint8_t* t = target.row(y);
        const std::uint8_t* s = source.row(y);
        for (int i = 0; i < target.width * target.channels; ++i)
            t[i] = static_cast<std::uint8_t>(std::min(255, t[i] + s[i]));
    }
}

void blendInto(Picture& target, double targetWeight, const Picture& source, double sourceWeight)
{
    if (target.empty() || !sameShape(target, source))
        return;
    for (int y = 0; y < target.height; ++y) {
        std::uint8_t* t = target.row(y);
        const std::uint8_t* s = source.row(y);
        for (int i = 0; i < target.width * target.channels; ++i)
            t[i] = saturate(t[i] * targetWeight + s[i] * sourceWeight);
    }
}

} // namespace vx::imaging
