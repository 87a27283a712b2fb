#include "dialogs/settings_form.h"

#include <filesystem>
#include <system_error>

#include "config/text_codec.h"
#include "dialogs/form_numbers.h"

namespace vx::dialogs {

bool folderExists(const std::string& path)
{
    if (path.empty())
        return false;
    std::error_code ec;
    return std::filesystem::is_directory(std::filesystem::path(config::cp1251ToUtf8(path)), ec);
}

SettingsForm::SettingsForm(config::MainConfig& record, FolderChooser chooseFolder, Messages& messages)
    : Form(messages), record_(record), chooseFolder_(std::move(chooseFolder))
{
    systemLevel.items = {"Trace", "Debug", "Info", "Warning", "Error", "Critical"};
    sizeImage.items = {config::utf8ToCp1251("Полное"), "1/2", "1/4", "1/8", "1/16"};
    divideLogRecog.items = {config::utf8ToCp1251("Каждый день"), config::utf8ToCp1251("Каждый час")};
    for (ButtonField* button : {&systemLogBrowse, &recogLogBrowse, &reportsBrowse, &videoBrowse})
        button->caption = "...";
    systemLogBrowse.onPress = [this] { browse(systemLogPath, &config::MainConfig::systemLogPath); };
    recogLogBrowse.onPress = [this] { browse(recogLogPath, &config::MainConfig::recogLogPath); };
    reportsBrowse.onPress = [this] { browse(reportsPath, &config::MainConfig::reportsPath); };
    videoBrowse.onPress = [this] { browse(videoPath, &config::MainConfig::videoPath); };
}

void SettingsForm::browse(TextField& field, std::string config::MainConfig::*path)
{
    if (!chooseFolder_)
        return;
    const std::optional<std::string> picked = chooseFolder_(record_.*path);
    if (!picked)
        return;
    field.set(*picked);
    record_.*path = *picked;
}

void SettingsForm::fill()
{
    const config::MainConfig& r = record_;
    systemLogPath.set(r.systemLogPath);
    systemLevel.selected = clampIndex(r.systemLevel, 6);
    recogLogPath.set(r.recogLogPath);
    recogFormat.set(r.recogFormat);
    saveImage.checked = r.saveImage;
    sizeImage.selected = clampIndex(r.sizeImage, 5);
    divideLogRecog.selected = clampIndex(r.divideLogRecog, 2);
    timeLife.set(r.timeLife);
    autoRunManager.checked = r.autoRunManager;
    reportsPath.set(r.reportsPath);
    videoPath.set(r.videoPath);
    videoChunk.set(r.videoChunk);
    maxSizeVideo.set(r.maxSizeVideoDirectoryMb);
}

config::MainConfig SettingsForm::readBack() const
{
    config::MainConfig r;
    r.startStatus = record_.startStatus;
    r.globalRestart = record_.globalRestart;
    r.systemLogPath = systemLogPath.text;
    r.systemLevel = systemLevel.selected >= 0 ? systemLevel.selected : 3;
    r.recogLogPath = recogLogPath.text;
    r.recogFormat = recogFormat.text;
    r.saveImage = saveImage.checked;
    r.sizeImage = sizeImage.selected >= 0 ? sizeImage.selected : 0;
    r.divideLogRecog = divideLogRecog.selected >= 0 ? divideLogRecog.selected : 0;
    r.timeLife = readInt32(timeLife, 0);
    r.autoRunManager = autoRunManager.checked;
    r.reportsPath = reportsPath.text;
    r.videoPath = videoPath.text;
    r.videoChunk = readInt32(videoChunk, 300);
    r.maxSizeVideoDirectoryMb = readUint32(maxSizeVideo, 100);
    return r;
}

bool SettingsForm::accept()
{
    config::MainConfig r = readBack();
    FormChecks checks;
    checks.test(folderExists(r.systemLogPath), config::utf8ToCp1251("Несуществующая директория для системного журнала!"));
    checks.test(folderExists(r.recogLogPath), config::utf8ToCp1251("Несуществующая директория для журнала распознавания!"));
    // The main config writes the folders with their backslashes doubled and
    // the plate log's form as it stands.
    checks.pathText(r.systemLogPath, "Папка системного журнала");
    checks.pathText(r.recogLogPath, "Папка журнала распознавания");
    checks.plainText(r.recogFormat, "Формат журнала номеров");
    checks.pathText(r.reportsPath, "Папка для отчетов");
    checks.pathText(r.videoPath, "Папка для видео-выхода");
    if (!checks.report(messages()))
        return false;
    // What the form doesn't hold returns to its default: the window's place,
    // dataTimeFormat, display and perfLog.
    record_ = std::move(r);
    return true;
}

ProcessControlForm::ProcessControlForm(config::MainConfig& record, Messages& messages)
    : Form(messages), record_(record)
{
}

void ProcessControlForm::fill()
{
    globalRestart.checked = record_.globalRestart;
}

bool ProcessControlForm::accept()
{
    record_.globalRestart = globalRestart.checked;
    return true;
}

} // namespace vx::dialogs
