#include "config/text_codec.h"

#include <array>
#include <cstdint>

namespace vx::config {
namespace {

constexpr char16_t replacementCharacter = 0xFFFD;

// Bytes 0x80..0xBF of Windows-1251. Bytes 0xC0..0xFF are U+0410..U+044F in
// order, and bytes below 0x80 are ASCII.
constexpr std::array<char16_t, 64> upperHalf = {
    0x0402, 0x0403, 0x201A, 0x0453, 0x201E, 0x2026, 0x2020, 0x2021,  // 80
    0x20AC, 0x2030, 0x0409, 0x2039, 0x040A, 0x040C, 0x040B, 0x040F,  // 88
    0x0452, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,  // 90
    0x0098, 0x2122, 0x0459, 0x203A, 0x045A, 0x045C, 0x045B, 0x045F,  // 98 (0x98: see header)
    0x00A0, 0x040E, 0x045E, 0x0408, 0x00A4, 0x0490, 0x00A6, 0x00A7,  // A0
    0x0401, 0x00A9, 0x0404, 0x00AB, 0x00AC, 0x00AD, 0x00AE, 0x0407,  // A8
    0x00B0, 0x00B1, 0x0406, 0x0456, 0x0491, 0x00B5, 0x00B6, 0x00B7,  // B0
    0x0451, 0x2116, 0x0454, 0x00BB, 0x0458, 0x0405, 0x0455, 0x0457,  // B8
};

char16_t decodeByte(unsigned char byte) {
    if (byte < 0x80) return byte;
    if (byte >= 0xC0) return static_cast<char16_t>(0x0410 + (byte - 0xC0));
    return upperHalf[byte - 0x80];
}

char encodeUnit(char16_t unit) {
    if (unit < 0x80) return static_cast<char>(unit);
    if (unit >= 0x0410 && unit <= 0x044F) return static_cast<char>(0xC0 + (unit - 0x0410));
    for (std::size_t i = 0; i < upperHalf.size(); ++i)
        if (upperHalf[i] == unit) return static_cast<char>(0x80 + i);
    return '?';
}

bool isContinuation(unsigned char byte, unsigned char low = 0x80, unsigned char high = 0xBF) {
    return byte >= low && byte <= high;
}

// Decodes UTF-8 into UTF-16. An ill-formed sequence yields one U+FFFD for its
// longest prefix that could have begun a valid sequence, and decoding goes on
// at the first byte that broke it.
std::u16string utf8ToUtf16(const std::string& text) {
    std::u16string out;
    out.reserve(text.size());
    const std::size_t size = text.size();
    std::size_t i = 0;
    auto byteAt = [&](std::size_t k) { return static_cast<unsigned char>(text[k]); };
    while (i < size) {
        const unsigned char lead = byteAt(i);
        if (lead < 0x80) {
            out.push_back(lead);
            ++i;
            continue;
        }
        int length = 0;
        std::uint32_t codePoint = 0;
        unsigned char secondLow = 0x80, secondHigh = 0xBF;
        if (lead >= 0xC2 && lead <= 0xDF) {
            length = 2;
            codePoint = lead & 0x1F;
        } else if (lead >= 0xE0 && lead <= 0xEF) {
            length = 3;
            codePoint = lead & 0x0F;
            if (lead == 0xE0) secondLow = 0xA0;    // no overlong forms
            if (lead == 0xED) secondHigh = 0x9F;   // no surrogates
        } else if (lead >= 0xF0 && lead <= 0xF4) {
            length = 4;
            codePoint = lead & 0x07;
            if (lead == 0xF0) secondLow = 0x90;    // no overlong forms
            if (lead == 0xF4) secondHigh = 0x8F;   // nothing above U+10FFFF
        } else {
            out.push_back(replacementCharacter);
            ++i;
            continue;
        }
        std::size_t next = i + 1;
        bool valid = true;
        for (int k = 1; k < length; ++k, ++next) {
            const bool fits = next < size &&
                (k == 1 ? isContinuation(byteAt(next), secondLow, secondHigh)
                        : isContinuation(byteAt(next)));
            if (!fits) {
                valid = false;
                break;
            }
            codePoint = (codePoint << 6) | (byteAt(next) & 0x3F);
        }
        i = next;
        if (!valid) {
            out.push_back(replacementCharacter);
        } else if (codePoint > 0xFFFF) {
            codePoint -= 0x10000;
            out.push_back(static_cast<char16_t>(0xD800 + (codePoint >> 10)));
            out.push_back(static_cast<char16_t>(0xDC00 + (codePoint & 0x3FF)));
        } else {
            out.push_back(static_cast<char16_t>(codePoint));
        }
    }
    return out;
}

void appendUtf8(std::string& out, std::uint32_t codePoint) {
    if (codePoint < 0x80) {
        out.push_back(static_cast<char>(codePoint));
    } else if (codePoint < 0x800) {
        out.push_back(static_cast<char>(0xC0 | (codePoint >> 6)));
        out.push_back(static_cast<char>(0x80 | (codePoint & 0x3F)));
    } else if (codePoint < 0x10000) {
        out.push_back(static_cast<char>(0xE0 | (codePoint >> 12)));
        out.push_back(static_cast<char>(0x80 | ((codePoint >> 6) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | (codePoint & 0x3F)));
    } else {
        out.push_back(static_cast<char>(0xF0 | (codePoint >> 18)));
        out.push_back(static_cast<char>(0x80 | ((codePoint >> 12) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | ((codePoint >> 6) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | (codePoint & 0x3F)));
    }
}

} // namespace

std::u16string cp1251ToUtf16(const std::string& text) {
    std::u16string out;
    out.reserve(text.size());
    for (char c : text) out.push_back(decodeByte(static_cast<unsigned char>(c)));
    return out;
}

std::string utf16ToCp1251(const std::u16string& text) {
    std::string out;
    out.reserve(text.size());
    for (char16_t unit : text) out.push_back(encodeUnit(unit));
    return out;
}

std::string cp1251ToUtf8(const std::string& text) {
    // Every byte of 1251 is a single character of the Basic Multilingual
    // Plane, so no surrogate pair can arise here.
    std::string out;
    out.reserve(text.size() * 2);
    for (char c : text) appendUtf8(out, decodeByte(static_cast<unsigned char>(c)));
    return out;
}

std::string utf8ToCp1251(const std::string& text) {
    return utf16ToCp1251(utf8ToUtf16(text));
}

} // namespace vx::config
