#pragma once
// A process's "window": the address other processes reach it by. On POSIX it
// is a SOCK_SEQPACKET socket in <runtime>/windows/ named by a 64-bit handle,
// with a small record beside it giving the class name, the title and the
// owner's pid. Messages are synchronous: the sender waits until the receiver
// has handled the message and acknowledged it, or until its timeout.
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace vx::platform {

using WindowHandle = std::uint64_t;   // 0 is "no window"

enum class ShowCommand : std::uint8_t { Restore = 1, Minimize = 2, Show = 3, Hide = 4 };

// cbData travels as given, apart from the payload: a stream says who it is
// by its ID in cbData and sends no data. A sender whose cbData is a length
// sets it to payload.size() itself (copyDataOf does).
struct CopyDataMessage {
    std::uint64_t dwData = 0;
    std::uint32_t cbData = 0;
    std::vector<char> payload;
};

// A message whose cbData is the payload's length.
inline CopyDataMessage copyDataOf(std::uint64_t dwData, std::vector<char> payload)
{
    CopyDataMessage message;
    message.dwData = dwData;
    message.cbData = static_cast<std::uint32_t>(payload.size());
    message.payload = std::move(payload);
    return message;
}

// A window endpoint owned by this process. Messages are handled only inside
// `dispatchPending()`, on the caller's thread (the manager calls it from its
// UI thread when `pollDescriptor()` becomes readable).
class WindowEndpoint {
public:
    virtual ~WindowEndpoint() = default;
    virtual WindowHandle handle() const = 0;
    // Descriptor that becomes readable when a message waits (-1 if none).
    virtual int pollDescriptor() const = 0;
    // Handles every waiting message; returns how many were handled.
    virtual int dispatchPending() = 0;
    // Waits up to timeoutMs for one message and handles it; false on timeout.
    // A negative timeout waits without limit.
    virtual bool dispatchOne(int timeoutMs) = 0;
    // Other processes find the new title from now on. Call it on the
    // dispatching thread.
    virtual void setTitle(const std::string& title) = 0;

    // Run inside dispatchPending()/dispatchOne(). A message the window has no
    // handler for is still acknowledged (copy data with the result false).
    std::function<bool(const CopyDataMessage&)> onCopyData;   // the result is acknowledged
    std::function<void(ShowCommand)> onShow;
    std::function<void()> onForeground;
};

// Registers a new window of this process. Null on failure.
std::unique_ptr<WindowEndpoint> createWindowEndpoint(const std::string& className,
                                                     const std::string& title);

// Like FindWindow: the first live window whose class and title match; an
// empty argument matches anything. Records of dead owners are skipped (and
// cleaned up). 0 when none.
WindowHandle findWindow(const std::string& className, const std::string& title);
// The owner's pid, 0 when the window or its process is gone.
long windowOwnerPid(WindowHandle window);
// Sends a copy-data message and waits for the receiver's acknowledgement.
// True when the receiver handled it within timeoutMs; the handler's own
// result then goes to *handlerResult when given. A payload over 64 KiB is
// refused. A window that is gone fails at once, not after the timeout.
bool sendCopyData(WindowHandle window, const CopyDataMessage& message, int timeoutMs,
                  bool* handlerResult = nullptr);
// Asks the owner of a window to show itself / come to the front.
bool showWindow(WindowHandle window, ShowCommand command, int timeoutMs = 1000);
bool setForegroundWindow(WindowHandle window, int timeoutMs = 1000);

} // namespace vx::platform
