// A process's window is a real top-level window of the system, created
// hidden, so that other processes find it with FindWindowW by class and
// title. Copy data travels as WM_COPYDATA with SendMessageTimeoutW: the
// system copies the block into the receiver and returns once its window
// procedure has answered. Messages are handled by whoever pumps this thread's
// messages: the dispatch calls below, or the program's own message loop.
#include "platform/window_endpoint.h"

#include "platform/win32/wide_text.h"

#include <windows.h>

#include <vector>

namespace vx::platform {

namespace {

class SystemWindow;

// Counts the messages handled for the dispatch calls' results.
thread_local int handledMessages = 0;

LRESULT CALLBACK endpointProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

class SystemWindow : public WindowEndpoint {
public:
    explicit SystemWindow(HWND window) : window_(window)
    {
        ::SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    }
    ~SystemWindow() override
    {
        ::SetWindowLongPtrW(window_, GWLP_USERDATA, 0);
        ::DestroyWindow(window_);
    }
    WindowHandle handle() const override { return reinterpret_cast<WindowHandle>(window_); }
    int pollDescriptor() const override { return -1; }
    int dispatchPending() override
    {
        const int before = handledMessages;
        MSG msg;
        while (::PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE)) {
            ::TranslateMessage(&msg);
            ::DispatchMessageW(&msg);
        }
        return handledMessages - before;
    }
    bool dispatchOne(int timeoutMs) override
    {
        const int before = handledMessages;
        const ULONGLONG deadline = ::GetTickCount64() + static_cast<ULONGLONG>(timeoutMs < 0 ? 0 : timeoutMs);
        for (;;) {
            dispatchPending();
            if (handledMessages != before)
                return true;
            DWORD wait = INFINITE;
            if (timeoutMs >= 0) {
                const ULONGLONG now = ::GetTickCount64();
                if (now >= deadline)
                    return false;
                wait = static_cast<DWORD>(deadline - now);
            }
            ::MsgWaitForMultipleObjectsEx(0, nullptr, wait, QS_ALLINPUT, MWMO_INPUTAVAILABLE);
        }
    }
    void setTitle(const std::string& title) override { ::SetWindowTextW(window_, win32::widen(title).c_str()); }

    LRESULT handle(UINT message, WPARAM wParam, LPARAM lParam)
    {
        if (message == WM_COPYDATA) {
            ++handledMessages;
            const auto* data = reinterpret_cast<const COPYDATASTRUCT*>(lParam);
            if (!data || !onCopyData)
                return FALSE;
            CopyDataMessage copy;
            copy.dwData = static_cast<std::uint64_t>(data->dwData);
            copy.cbData = data->cbData;
            if (data->lpData && data->cbData > 0) {
                const char* bytes = static_cast<const char*>(data->lpData);
                copy.payload.assign(bytes, bytes + data->cbData);
            }
            return onCopyData(copy) ? TRUE : FALSE;
        }
        if (message == WM_SHOWWINDOW && wParam && onShow) {
            ++handledMessages;
            onShow(ShowCommand::Show);
        }
        if (message == WM_ACTIVATE && LOWORD(wParam) != WA_INACTIVE && onForeground) {
            ++handledMessages;
            onForeground();
        }
        return ::DefWindowProcW(window_, message, wParam, lParam);
    }
private:
    HWND window_;
};

LRESULT CALLBACK endpointProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    auto* endpoint = reinterpret_cast<SystemWindow*>(::GetWindowLongPtrW(window, GWLP_USERDATA));
    if (endpoint)
        return endpoint->handle(message, wParam, lParam);
    return ::DefWindowProcW(window, message, wParam, lParam);
}

bool registerEndpointClass(const std::wstring& className)
{
    WNDCLASSW existing{};
    if (::GetClassInfoW(::GetModuleHandleW(nullptr), className.c_str(), &existing))
        return true;
    WNDCLASSW windowClass{};
    windowClass.lpfnWndProc = endpointProcedure;
    windowClass.hInstance = ::GetModuleHandleW(nullptr);
    windowClass.lpszClassName = className.c_str();
    return ::RegisterClassW(&windowClass) != 0;
}

HWND asWindow(WindowHandle window)
{
    return reinterpret_cast<HWND>(static_cast<std::uintptr_t>(window));
}

} // namespace

std::unique_ptr<WindowEndpoint> createWindowEndpoint(const std::string& className, const std::string& title)
{
    const std::wstring wideClass = win32::widen(className);
    if (!registerEndpointClass(wideClass))
        return nullptr;
    HWND window = ::CreateWindowExW(0, wideClass.c_str(), win32::widen(title).c_str(), WS_OVERLAPPEDWINDOW,
                                    CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, nullptr, nullptr,
                                    ::GetModuleHandleW(nullptr), nullptr);
    if (!window)
        return nullptr;
    return std::make_unique<SystemWindow>(window);
}

WindowHandle findWindow(const std::string& className, const std::string& title)
{
    const std::wstring wideClass = win32::widen(className);
    const std::wstring wideTitle = win32::widen(title);
    HWND window = ::FindWindowW(className.empty() ? nullptr : wideClass.c_str(),
                                title.empty() ? nullptr : wideTitle.c_str());
    return reinterpret_cast<WindowHandle>(window);
}

long windowOwnerPid(WindowHandle window)
{
    if (window == 0 || !::IsWindow(asWindow(window)))
        return 0;
    DWORD pid = 0;
    ::GetWindowThreadProcessId(asWindow(window), &pid);
    return static_cast<long>(pid);
}

bool sendCopyData(WindowHandle window, const CopyDataMessage& message, int timeoutMs, bool* handlerResult)
{
    if (window == 0 || !::IsWindow(asWindow(window)) || message.payload.size() > 65536)
        return false;
    // With a payload, cbData is its length and may not promise more than it
    // holds; without one, cbData is a value of its own and nothing is copied.
    if (!message.payload.empty() && message.cbData > message.payload.size())
        return false;
    COPYDATASTRUCT data{};
    data.dwData = static_cast<ULONG_PTR>(message.dwData);
    data.cbData = message.cbData;
    data.lpData = message.payload.empty() ? nullptr : const_cast<char*>(message.payload.data());
    // A value in cbData with no block (a stream's ID) goes with a block of
    // that many zero bytes: some relays of the message (Wine's) hand cbData
    // over only with a block, and the receiver reads cbData, not the block.
    std::vector<char> zeros;
    if (message.payload.empty() && message.cbData > 0 && message.cbData <= 65536) {
        zeros.assign(message.cbData, '\0');
        data.lpData = zeros.data();
    }
    DWORD_PTR result = 0;
    if (!::SendMessageTimeoutW(asWindow(window), WM_COPYDATA, 0, reinterpret_cast<LPARAM>(&data),
                               SMTO_ABORTIFHUNG, static_cast<UINT>(timeoutMs < 0 ? 0 : timeoutMs), &result))
        return false;
    if (handlerResult)
        *handlerResult = result != 0;
    return true;
}

bool showWindow(WindowHandle window, ShowCommand command, int /*timeoutMs*/)
{
    if (window == 0 || !::IsWindow(asWindow(window)))
        return false;
    int show = SW_RESTORE;
    switch (command) {
    case ShowCommand::Restore: show = SW_RESTORE; break;
    case ShowCommand::Minimize: show = SW_MINIMIZE; break;
    case ShowCommand::Show: show = SW_SHOW; break;
    case ShowCommand::Hide: show = SW_HIDE; break;
    }
    ::ShowWindow(asWindow(window), show);
    return true;
}

bool setForegroundWindow(WindowHandle window, int /*timeoutMs*/)
{
    if (window == 0 || !::IsWindow(asWindow(window)))
        return false;
    ::SetForegroundWindow(asWindow(window));
    return true;
}

} // namespace vx::platform
