#include "dialogs/form.h"

#include "config/text_codec.h"

namespace vx::dialogs {

void FormChecks::test(bool passed, const std::string& failureText)
{
    if (!passed)
        failure_ = failureText;
}

bool FormChecks::report(Messages& messages) const
{
    if (!failure_)
        return true;
    showError(messages, *failure_);
    return false;
}

void FormChecks::plainText(const std::string& text, const char* fieldName)
{
    test(text.find_first_of("\"\\") == std::string::npos,
         config::utf8ToCp1251(std::string(fieldName) + " не может содержать символы \" и \\!"));
}

void FormChecks::pathText(const std::string& text, const char* fieldName)
{
    test(text.find('"') == std::string::npos,
         config::utf8ToCp1251(std::string(fieldName) + " не может содержать символ \"!"));
}

} // namespace vx::dialogs
