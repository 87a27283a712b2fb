#include "dialogs/form.h"

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

} // namespace vx::dialogs
