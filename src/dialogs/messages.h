#pragma once
// The message boxes of the dialogs, behind one interface: the window layer
// shows real boxes, tests answer from a script. Three kinds:
//  - a failure of a form: "Сообщение", error icon, OK;
//  - a notice: "Сообщение", information icon, OK;
//  - a question: "Осторожно!" with Yes and No, or "Предупреждение" with OK
//    and Cancel, warning icon.
// Texts are Windows-1251.
#include <deque>
#include <string>
#include <vector>

namespace vx::dialogs {

enum class MessageIcon { error, information, warning };
enum class MessageButtons { ok, yesNo, okCancel };

struct Message {
    std::string title;
    std::string text;
    MessageIcon icon = MessageIcon::error;
    MessageButtons buttons = MessageButtons::ok;
};

class Messages {
public:
    virtual ~Messages() = default;
    // Shows the box and waits; true for OK or Yes.
    virtual bool show(const Message& box) = 0;
};

// The titles, in Windows-1251.
std::string messageTitle();    // "Сообщение"
std::string cautionTitle();    // "Осторожно!"
std::string warningTitle();    // "Предупреждение"

void showError(Messages& messages, const std::string& text);
void showInformation(Messages& messages, const std::string& text);
bool askYesNo(Messages& messages, const std::string& text);
bool askOkCancel(Messages& messages, const std::string& text);

// Boxes answered from a script, for tests: every box is kept in `shown`;
// a question takes the next answer, or `otherAnswer` when none is left.
class ScriptedMessages : public Messages {
public:
    bool show(const Message& box) override;
    void answer(bool yes) { answers_.push_back(yes); }
    std::vector<Message> shown;
    bool otherAnswer = false;

private:
    std::deque<bool> answers_;
};

} // namespace vx::dialogs
