#pragma once
// The datagrams a window receives, byte by byte (numbers little-endian):
//   copy data:  kind 1, dwData (8 bytes), cbData (4 bytes), the payload's
//               length n (4 bytes), n bytes
//   show:       kind 2, the ShowCommand (1 byte)
//   foreground: kind 3
// A datagram is exactly that long; anything else is malformed. The answer is
// one byte: the handler's result (1 or 0) for copy data, 1 for the others.
// Internal to the POSIX code.
#include "platform/window_endpoint.h"

#include <cstddef>
#include <optional>
#include <variant>
#include <vector>

namespace vx::platform::posix {

enum class WireKind : std::uint8_t { CopyData = 1, Show = 2, Foreground = 3 };

inline constexpr std::size_t kCopyDataHeader = 1 + 8 + 4 + 4;
// The largest payload we send or accept; the messages of this system are a
// few hundred bytes.
inline constexpr std::size_t kMaxPayload = 64 * 1024;
inline constexpr std::size_t kMaxDatagram = kCopyDataHeader + kMaxPayload;

struct ForegroundRequest {};
using WireMessage = std::variant<CopyDataMessage, ShowCommand, ForegroundRequest>;

std::vector<char> encodeCopyData(const CopyDataMessage& message);
std::vector<char> encodeShow(ShowCommand command);
std::vector<char> encodeForeground();
// Nothing when the bytes aren't exactly one of the forms above.
std::optional<WireMessage> decodeDatagram(const char* data, std::size_t size);

} // namespace vx::platform::posix
