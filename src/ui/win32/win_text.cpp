#include "ui/win32/win_text.h"

#include "config/text_codec.h"
#include "platform/win32/wide_text.h"

namespace vx::ui::win32 {

std::wstring wideOf(const std::string& cp1251)
{
    return platform::win32::widen(config::cp1251ToUtf8(cp1251));
}

std::wstring wideLiteral(const char* utf8)
{
    return platform::win32::widen(utf8);
}

std::string cp1251Of(const std::wstring& wide)
{
    return config::utf8ToCp1251(platform::win32::narrow(wide));
}

} // namespace vx::ui::win32
