#include "dialogs/messages.h"

#include "config/text_codec.h"

namespace vx::dialogs {

std::string messageTitle() { return config::utf8ToCp1251("Сообщение"); }
std::string cautionTitle() { return config::utf8ToCp1251("Осторожно!"); }
std::string warningTitle() { return config::utf8ToCp1251("Предупреждение"); }

void showError(Messages& messages, const std::string& text)
{
    messages.show({messageTitle(), text, MessageIcon::error, MessageButtons::ok});
}

void showInformation(Messages& messages, const std::string& text)
{
    messages.show({messageTitle(), text, MessageIcon::information, MessageButtons::ok});
}

bool askYesNo(Messages& messages, const std::string& text)
{
    return messages.show({cautionTitle(), text, MessageIcon::warning, MessageButtons::yesNo});
}

bool askOkCancel(Messages& messages, const std::string& text)
{
    return messages.show({warningTitle(), text, MessageIcon::warning, MessageButtons::okCancel});
}

bool ScriptedMessages::show(const Message& box)
{
    shown.push_back(box);
    if (box.buttons == MessageButtons::ok)
        return true;
    if (answers_.empty())
        return otherAnswer;
    const bool yes = answers_.front();
    answers_.pop_front();
    return yes;
}

} // namespace vx::dialogs
