#include "platform/posix/window_wire.h"

namespace vx::platform::posix {
namespace {

void putLittleEndian(std::vector<char>& out, std::uint64_t value, int bytes)
{
    for (int i = 0; i < bytes; ++i)
        out.push_back(static_cast<char>((value >> (8 * i)) & 0xff));
}

std::uint64_t getLittleEndian(const char* data, int bytes)
{
    std::uint64_t value = 0;
    for (int i = 0; i < bytes; ++i)
        value |= static_cast<std::uint64_t>(static_cast<unsigned char>(data[i])) << (8 * i);
    return value;
}

} // namespace

std::vector<char> encodeCopyData(const CopyDataMessage& message)
{
    std::vector<char> out;
    out.reserve(kCopyDataHeader + message.payload.size());
    out.push_back(static_cast<char>(WireKind::CopyData));
    putLittleEndian(out, message.dwData, 8);
    putLittleEndian(out, message.cbData, 4);
    putLittleEndian(out, message.payload.size(), 4);
    out.insert(out.end(), message.payload.begin(), message.payload.end());
    return out;
}

std::vector<char> encodeShow(ShowCommand command)
{
    return {static_cast<char>(WireKind::Show), static_cast<char>(command)};
}

std::vector<char> encodeForeground()
{
    return {static_cast<char>(WireKind::Foreground)};
}

std::optional<WireMessage> decodeDatagram(const char* data, std::size_t size)
{
    if (size == 0)
        return std::nullopt;
    switch (static_cast<WireKind>(data[0])) {
    case WireKind::CopyData: {
        if (size < kCopyDataHeader)
            return std::nullopt;
        const std::uint64_t length = getLittleEndian(data + 13, 4);
        if (length > kMaxPayload || size != kCopyDataHeader + length)
            return std::nullopt;
        CopyDataMessage message;
        message.dwData = getLittleEndian(data + 1, 8);
        message.cbData = static_cast<std::uint32_t>(getLittleEndian(data + 9, 4));
        message.payload.assign(data + kCopyDataHeader, data + size);
        return message;
    }
    case WireKind::Show: {
        if (size != 2)
            return std::nullopt;
        const auto command = static_cast<std::uint8_t>(data[1]);
        if (command < static_cast<std::uint8_t>(ShowCommand::Restore)
            || command > static_cast<std::uint8_t>(ShowCommand::Hide))
            return std::nullopt;
        return static_cast<ShowCommand>(command);
    }
    case WireKind::Foreground:
        if (size != 1)
            return std::nullopt;
        return ForegroundRequest{};
    }
    return std::nullopt;
}

} // namespace vx::platform::posix
