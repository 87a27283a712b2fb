// Frames on Windows. A file or link goes to Media Foundation's source
// reader, asked for RGB32; where the reader can't convert by itself (Wine's
// can't), it hands out NV12, which the system's colour converter turns into
// RGB32. A file the source reader can't open (or that isn't there) is
// replaced by a generated scene, so the stream still shows a moving picture;
// a link that can't be opened is a lost link, as on every platform.
#include "frame_reader.h"

#include <windows.h>
#include <objbase.h>
#include <mfapi.h>
#include <mferror.h>
#include <mfidl.h>
#include <mfreadwrite.h>
#include <mftransform.h>
#include <wmcodecdsp.h>

#include <cstring>
#include <filesystem>

#include "generated_scene.h"
#include "imaging/picture_ops.h"
#include "imaging/win32/com_object.h"
#include "video_source.h"

namespace vx::stream {

namespace {

using imaging::win32::ComPtr;
using imaging::win32::comReady;

// Media Foundation is started for as long as one of its readers lives.
struct MediaFoundation {
    MediaFoundation() : ready(comReady() && SUCCEEDED(MFStartup(MF_VERSION, MFSTARTUP_FULL))) {}
    ~MediaFoundation()
    {
        if (ready)
            MFShutdown();
    }
    MediaFoundation(const MediaFoundation&) = delete;
    MediaFoundation& operator=(const MediaFoundation&) = delete;
    const bool ready;
};

bool makeVideoType(ComPtr<IMFMediaType>& type, REFGUID subtype)
{
    return SUCCEEDED(MFCreateMediaType(type.out())) &&
           SUCCEEDED(type->SetGUID(MF_MT_MAJOR_TYPE, MFMediaType_Video)) &&
           SUCCEEDED(type->SetGUID(MF_MT_SUBTYPE, subtype));
}

constexpr DWORD videoStream = static_cast<DWORD>(MF_SOURCE_READER_FIRST_VIDEO_STREAM);

class SourceReaderFrames : public FrameReader {
public:
    // False when the source can't be opened or gives no frames we can take.
    bool open(const std::string& path)
    {
        if (!foundation_.ready)
            return false;
        const std::wstring url = std::filesystem::path(std::u8string(path.begin(), path.end())).wstring();
        ComPtr<IMFAttributes> attributes;
        if (FAILED(MFCreateAttributes(attributes.out(), 1)) ||
            FAILED(attributes->SetUINT32(MF_SOURCE_READER_ENABLE_VIDEO_PROCESSING, TRUE)) ||
            FAILED(MFCreateSourceReaderFromURL(url.c_str(), attributes.p, reader_.out())))
            return false;
        reader_->SetStreamSelection(static_cast<DWORD>(MF_SOURCE_READER_ALL_STREAMS), FALSE);
        if (FAILED(reader_->SetStreamSelection(videoStream, TRUE)))
            return false;
        ComPtr<IMFMediaType> rgb;
        if (!makeVideoType(rgb, MFVideoFormat_RGB32))
            return false;
        if (FAILED(reader_->SetCurrentMediaType(videoStream, nullptr, rgb.p)) && !useConverter())
            return false;
        ComPtr<IMFMediaType> current;
        if (FAILED(reader_->GetCurrentMediaType(videoStream, current.out())))
            return false;
        UINT32 width = 0, height = 0, numerator = 0, denominator = 0;
        if (FAILED(MFGetAttributeSize(current.p, MF_MT_FRAME_SIZE, &width, &height)) || width == 0 ||
            height == 0 || width > 8192 || height > 8192)
            return false;
        if (SUCCEEDED(MFGetAttributeRatio(current.p, MF_MT_FRAME_RATE, &numerator, &denominator)) &&
            denominator != 0)
            fps_ = static_cast<double>(numerator) / denominator;
        width_ = static_cast<int>(width);
        height_ = static_cast<int>(height);
        // RGB32 comes top-down unless the type says its rows run upwards.
        stride_ = width_ * 4;
        if (!converter_.p) {
            UINT32 stride = 0;
            if (SUCCEEDED(current->GetUINT32(MF_MT_DEFAULT_STRIDE, &stride)) && stride != 0)
                stride_ = static_cast<INT32>(stride);
        } else if (!converterOutput(current.p)) {
            return false;
        }
        return true;
    }

    double fps() const override { return fps_; }

    bool grab() override
    {
        sample_.reset();
        retrieved_ = false;
        return nextSample(sample_);
    }

    bool retrieve(imaging::Picture& frame) override
    {
        if (retrieved_) {
            frame = bgr_;
            return true;
        }
        if (!sample_.p)
            return false;
        if (converter_.p && !convert(sample_))
            return false;
        ComPtr<IMFMediaBuffer> buffer;
        if (FAILED(sample_->ConvertToContiguousBuffer(buffer.out())))
            return false;
        BYTE* bytes = nullptr;
        DWORD length = 0;
        if (FAILED(buffer->Lock(&bytes, nullptr, &length)))
            return false;
        const std::size_t row = static_cast<std::size_t>(width_) * 4;
        const std::size_t step = static_cast<std::size_t>(stride_ < 0 ? -stride_ : stride_);
        const bool whole = step >= row && length >= step * static_cast<std::size_t>(height_ - 1) + row;
        if (whole) {
            if (bgrx_.empty())
                bgrx_ = imaging::makePicture(width_, height_, 4);
            for (int y = 0; y < height_; ++y) {
                const int from = stride_ < 0 ? height_ - 1 - y : y;
                std::memcpy(bgrx_.row(y), bytes + static_cast<std::size_t>(from) * step, row);
            }
        }
        buffer->Unlock();
        if (!whole)
            return false;
        if (bgr_.empty())
            bgr_ = imaging::makePicture(width_, height_, 3);
        imaging::convertInto(bgrx_, bgr_);
        frame = bgr_;
        retrieved_ = true;
        return true;
    }

private:
    // The reader gives NV12 instead, for the colour converter to take.
    bool useConverter()
    {
        ComPtr<IMFMediaType> nv12;
        return makeVideoType(nv12, MFVideoFormat_NV12) &&
               SUCCEEDED(reader_->SetCurrentMediaType(videoStream, nullptr, nv12.p)) &&
               SUCCEEDED(CoCreateInstance(CLSID_CColorConvertDMO, nullptr, CLSCTX_INPROC_SERVER, IID_IMFTransform,
                                          reinterpret_cast<void**>(converter_.out())));
    }

    bool converterOutput(IMFMediaType* input)
    {
        ComPtr<IMFMediaType> output;
        return SUCCEEDED(converter_->SetInputType(0, input, 0)) && makeVideoType(output, MFVideoFormat_RGB32) &&
               SUCCEEDED(MFSetAttributeSize(output.p, MF_MT_FRAME_SIZE, static_cast<UINT32>(width_),
                                            static_cast<UINT32>(height_))) &&
               SUCCEEDED(output->SetUINT32(MF_MT_DEFAULT_STRIDE, static_cast<UINT32>(width_ * 4))) &&
               SUCCEEDED(converter_->SetOutputType(0, output.p, 0));
    }

    // The next sample of the video stream; false at its end or on an error.
    bool nextSample(ComPtr<IMFSample>& sample)
    {
        // Stream ticks and format changes come without a sample: a few are
        // passed over, then the source counts as ended.
        for (int attempt = 0; attempt < 50; ++attempt) {
            DWORD flags = 0;
            LONGLONG time = 0;
            if (FAILED(reader_->ReadSample(videoStream, 0, nullptr, &flags, &time, sample.out())))
                return false;
            if (flags & (MF_SOURCE_READERF_ENDOFSTREAM | MF_SOURCE_READERF_ERROR))
                return false;
            if (sample.p)
                return true;
        }
        return false;
    }

    // Runs a sample through the colour converter; on success `sample` holds
    // the RGB32 one.
    bool convert(ComPtr<IMFSample>& sample)
    {
        for (int attempt = 0; attempt < 50; ++attempt) {
            if (FAILED(converter_->ProcessInput(0, sample.p, 0)))
                return false;
            ComPtr<IMFSample> out;
            ComPtr<IMFMediaBuffer> buffer;
            if (FAILED(MFCreateSample(out.out())) ||
                FAILED(MFCreateMemoryBuffer(static_cast<DWORD>(width_ * height_ * 4), buffer.out())) ||
                FAILED(out->AddBuffer(buffer.p)))
                return false;
            MFT_OUTPUT_DATA_BUFFER result{};
            result.pSample = out.p;
            DWORD status = 0;
            const HRESULT hr = converter_->ProcessOutput(0, 1, &result, &status);
            if (result.pEvents)
                result.pEvents->Release();
            if (SUCCEEDED(hr)) {
                sample.reset();
                sample.p = out.p;
                out.p = nullptr;
                return true;
            }
            if (hr != MF_E_TRANSFORM_NEED_MORE_INPUT || !nextSample(sample))
                return false;
        }
        return false;
    }

    MediaFoundation foundation_;   // first in, last out
    ComPtr<IMFSourceReader> reader_;
    ComPtr<IMFTransform> converter_;
    int width_ = 0;
    int height_ = 0;
    INT32 stride_ = 0;
    double fps_ = 0.0;
    ComPtr<IMFSample> sample_;   // the one read last; converted in place
    bool retrieved_ = false;     // bgr_ holds it
    imaging::Picture bgrx_;
    imaging::Picture bgr_;
};

class GeneratedFrames : public FrameReader {
public:
    double fps() const override { return GeneratedScene::fps; }
    bool grab() override
    {
        frame_ = scene_.next();
        return true;
    }
    bool retrieve(imaging::Picture& frame) override
    {
        frame = frame_;
        return !frame.empty();
    }

private:
    GeneratedScene scene_;
    imaging::Picture frame_;
};

} // namespace

void prepareFrameReaders(const SourceSettings&) {}

std::unique_ptr<FrameReader> openFrameReader(const SourceSettings& settings, bool link,
                                             const std::function<void(const std::string&)>& log)
{
    auto reader = std::make_unique<SourceReaderFrames>();
    if (reader->open(settings.path)) {
        log("Video source: Media Foundation reads " + settings.path);
        return reader;
    }
    if (link)
        return nullptr;
    log("Video source: Media Foundation can't play " + settings.path + ", a generated picture is shown instead");
    return std::make_unique<GeneratedFrames>();
}

} // namespace vx::stream
