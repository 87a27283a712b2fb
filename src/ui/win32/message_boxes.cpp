#include "ui/win32/message_boxes.h"

#include "ui/win32/win_text.h"

namespace vx::ui::win32 {

bool Win32Messages::show(const dialogs::Message& box)
{
    UINT style = MB_ICONERROR;
    if (box.icon == dialogs::MessageIcon::information)
        style = MB_ICONINFORMATION;
    else if (box.icon == dialogs::MessageIcon::warning)
        style = MB_ICONWARNING;
    if (box.buttons == dialogs::MessageButtons::yesNo)
        style |= MB_YESNO;
    else if (box.buttons == dialogs::MessageButtons::okCancel)
        style |= MB_OKCANCEL;
    // Over whatever window of ours is in front (a dialog over the main one).
    HWND owner = ::GetActiveWindow();
    const int answer = ::MessageBoxW(owner ? owner : owner_, wideOf(box.text).c_str(), wideOf(box.title).c_str(), style);
    return answer == IDOK || answer == IDYES;
}

void showErrorBox(HWND owner, const std::string& title, const std::string& text)
{
    ::MessageBoxW(owner, wideOf(text).c_str(), wideOf(title).c_str(), MB_ICONERROR);
}

} // namespace vx::ui::win32
