#pragma once
// Binds the controls of a dialog to the fields of a form, one binder per
// kind of field. A control only carries what the operator does to its field;
// after each such action the form reacts and every bound control is set
// again from its field, so the form alone decides what is shown, enabled
// and chosen. The dialog procedure hands its WM_COMMAND, WM_NOTIFY and
// WM_DRAWITEM here.
#include <windows.h>

#include <commctrl.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "dialogs/form_fields.h"

namespace vx::ui::win32 {

class FormBinding {
public:
    explicit FormBinding(HWND dialog) : dialog_(dialog) {}
    FormBinding(const FormBinding&) = delete;
    FormBinding& operator=(const FormBinding&) = delete;

    HWND dialog() const { return dialog_; }
    HWND control(int id) const { return ::GetDlgItem(dialog_, id); }

    // Sets every bound control from its field.
    void pull();

    // An edit control, one line or several (ES_MULTILINE: its CR LF line
    // ends are the field's LF); limited to the field's maximum length.
    void bindText(int id, dialogs::TextField& field);
    void bindInteger(int id, dialogs::IntegerField& field);
    void bindReal(int id, dialogs::RealField& field);
    void bindCheck(int id, dialogs::CheckField& field);
    // One radio button per choice, in the choices' order.
    void bindChoice(const std::vector<int>& ids, dialogs::ChoiceField& field);
    // A drop-down combo box or a list box.
    void bindList(int id, dialogs::ListField& field);
    // Date and time pickers (SysDateTimePick32).
    void bindDate(int id, dialogs::DateField& field);
    void bindTime(int id, dialogs::TimeField& field);
    // A push button; one with BS_OWNERDRAW shows a marked field white on
    // green.
    void bindButton(int id, dialogs::ButtonField& field);
    void bindLabel(int id, dialogs::LabelField& field);
    // A report list view: grid lines, full-row selection, column 0
    // left-aligned and the others as their columns say, widths by the
    // columns' shares of the client width.
    void bindTable(int id, dialogs::TableField& field);

    // The dialog procedure's messages; true when a bound control took it.
    bool onCommand(int id, int code);
    bool onNotify(const NMHDR& header);
    bool onDrawItem(const DRAWITEMSTRUCT& item);

private:
    struct Bound {
        int id;
        std::function<void(int code)> command;
        std::function<void(const NMHDR&)> notify;
        std::function<void(const DRAWITEMSTRUCT&)> draw;
    };
    // Runs an operator's action, then pulls; ignored while pulling, when the
    // controls' own notifications come from the form's values.
    void act(const std::function<void()>& action);
    template <typename Field>
    void bindEdit(int id, Field& field);

    HWND dialog_;
    std::vector<std::function<void()>> pulls_;
    std::vector<Bound> bound_;
    bool pulling_ = false;
};

// The text of a control in Windows-1251, and setting it from Windows-1251.
std::string controlText(HWND control);
void setControlText(HWND control, const std::string& cp1251);

} // namespace vx::ui::win32
