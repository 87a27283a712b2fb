#pragma once
// The dialogs' message boxes as MessageBoxW over the window in front.
#include <windows.h>

#include "dialogs/messages.h"

namespace vx::ui::win32 {

class Win32Messages : public dialogs::Messages {
public:
    explicit Win32Messages(HWND owner) : owner_(owner) {}
    bool show(const dialogs::Message& box) override;

private:
    HWND owner_;
};

// A failure under `title` with the error icon; both texts Windows-1251.
void showErrorBox(HWND owner, const std::string& title, const std::string& text);

} // namespace vx::ui::win32
