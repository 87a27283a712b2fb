#pragma once
// "Настройки": the manager's own settings in the main config, and its small
// companion "Контроль за запущенными процессами" with the one switch
// globalRestart. Neither restarts anything; the command that opened them
// saves.
#include <functional>
#include <optional>
#include <string>

#include "config/main_config.h"
#include "dialogs/form.h"
#include "dialogs/form_fields.h"

namespace vx::dialogs {

// The system's folder picker, started at `start`; the absolute path picked,
// or nothing when the operator cancelled. Text is 1251.
using FolderChooser = std::function<std::optional<std::string>(const std::string& start)>;

class SettingsForm : public Form {
public:
    SettingsForm(config::MainConfig& record, FolderChooser chooseFolder, Messages& messages);

    // The record into the fields; each list's value is put within its items.
    void fill() override;
    // A fresh MainConfig of defaults with the fields on it, startStatus and
    // globalRestart carried over. The three numbers take working defaults
    // when they won't parse: lifetime 0, chunk 300, folder size 100.
    config::MainConfig readBack() const;
    // Both log folders must exist; the recognition log's message wins.
    bool accept() override;

    // group "Системный журнал"
    TextField systemLogPath;     // "Папка системного журнала "
    ButtonField systemLogBrowse; // "..."
    ListField systemLevel;       // "Уровень сообщений журнала": Trace .. Critical
    // group "Журнал распознавания"
    TextField recogLogPath;      // "Папка журнала распознавания"
    ButtonField recogLogBrowse;
    TextField recogFormat;       // "Формат журнала номеров"
    CheckField saveImage;        // "Сохранять изображение с номером"
    ListField sizeImage;         // "Размер изображения"
    ListField divideLogRecog;    // "Разделять файл журнала"
    IntegerField timeLife;       // "Время жизни журнала (в днях 0 - бесконечно)"
    CheckField autoRunManager;   // "Автозапуск"
    // group "Отчеты"
    TextField reportsPath;       // "Папка для отчетов"
    ButtonField reportsBrowse;
    // group "Запись видео"
    TextField videoPath;         // "Папка для видео-выхода"
    ButtonField videoBrowse;
    IntegerField videoChunk;     // "Размер чанка в секундах по умолчанию"
    IntegerField maxSizeVideo;   // "Максимальный размер папки в Mb"

private:
    // "...": the picker starts at the record's path (not at what was typed);
    // a pick goes into the field and at once into the record, for good.
    void browse(TextField& field, std::string config::MainConfig::*path);

    config::MainConfig& record_;
    FolderChooser chooseFolder_;
};

class ProcessControlForm : public Form {
public:
    ProcessControlForm(config::MainConfig& record, Messages& messages);
    void fill() override;
    bool accept() override;   // stores the check

    CheckField globalRestart;   // "Включить контроль*"

private:
    config::MainConfig& record_;
};

// Whether a 1251 path names an existing folder (a file doesn't).
bool folderExists(const std::string& path);

} // namespace vx::dialogs
