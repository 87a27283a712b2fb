#pragma once
// "Помощь в переносе настроек из последней запущенной программы": offered
// when the manager runs from a new folder and the earlier one still holds
// its configs. OK copies them over this installation's; the box, ticked at
// first, also points the log, report and video folders at this one.
#include <filesystem>

#include "dialogs/form.h"
#include "dialogs/form_fields.h"

namespace vx::dialogs {

class SettingsMigrationForm : public Form {
public:
    SettingsMigrationForm(std::filesystem::path earlier, std::filesystem::path current, Messages& messages);

    void fill() override;   // names the earlier folder; the box ticked
    bool readBack() const;  // migrateFolders
    // Copies the earlier configs; a failed copy shows why and the dialog
    // stays open (Cancel leaves the settings as they are).
    bool accept() override;

    LabelField text;
    CheckField moveFolders;

private:
    std::filesystem::path earlier_;
    std::filesystem::path current_;
};

} // namespace vx::dialogs
