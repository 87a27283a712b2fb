#include "dialogs/settings_migration_form.h"

#include "config/text_codec.h"
#include "maintenance/settings_migration.h"

namespace vx::dialogs {

SettingsMigrationForm::SettingsMigrationForm(std::filesystem::path earlier, std::filesystem::path current,
                                             Messages& messages)
    : Form(messages), earlier_(std::move(earlier)), current_(std::move(current))
{
}

void SettingsMigrationForm::fill()
{
    text.text = config::utf8ToCp1251("Найдены настройки программы, запущенной в прошлый раз из папки\n" +
                                     earlier_.string() +
                                     "\nНажмите OK, чтобы перенести их в эту папку программы. "
                                     "Её текущие настройки будут заменены.");
    moveFolders.checked = true;
}

bool SettingsMigrationForm::readBack() const
{
    return moveFolders.checked;
}

bool SettingsMigrationForm::accept()
{
    std::string error;
    if (maintenance::copyEarlierConfigs(earlier_, current_, error))
        return true;
    showError(messages(), config::utf8ToCp1251("Настройки не удалось перенести: " + error));
    return false;
}

} // namespace vx::dialogs
