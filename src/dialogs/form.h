#pragma once
// What every dialog's form is: fill copies a record into the fields, read
// back builds a fresh record from them, accept tests it and stores it. A
// form that `accept`s closes its dialog with OK; one that refuses stays open
// after showing its one message.
#include <optional>
#include <string>

#include "dialogs/messages.h"

namespace vx::dialogs {

class Form {
public:
    explicit Form(Messages& messages) : messages_(messages) {}
    virtual ~Form() = default;
    Form(const Form&) = delete;
    Form& operator=(const Form&) = delete;

    virtual void fill() = 0;
    // OK pressed: true closes the dialog with OK.
    virtual bool accept() = 0;

    Messages& messages() { return messages_; }

private:
    Messages& messages_;
};

// The tests of an accept: all of them run, and the last that fails gives the
// one message shown.
class FormChecks {
public:
    void test(bool passed, const std::string& failureText);
    bool passed() const { return !failure_.has_value(); }
    // Shows the message of the last failing test as a form failure; true when
    // every test passed.
    bool report(Messages& messages) const;

    // Text that its file writes as it stands, with no escaping: a `"` or a
    // `\` would break the file. `fieldName` is the field's name as the
    // message gives it, in UTF-8 ("Название потока").
    void plainText(const std::string& text, const char* fieldName);
    // A path, written with its backslashes doubled: only `"` breaks it.
    void pathText(const std::string& text, const char* fieldName);

private:
    std::optional<std::string> failure_;
};

} // namespace vx::dialogs
