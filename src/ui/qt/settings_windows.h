#pragma once
// The windows of the service and settings dialogs: the recognition and
// control services, the manager's settings, the watch switch, and the
// messenger service with its channel slots. Each only lays out its widgets
// and binds them to its form.
#include <array>
#include <vector>

#include "core/settings_commands.h"
#include "dialogs/control_service_form.h"
#include "dialogs/messenger_forms.h"
#include "dialogs/recognition_service_form.h"
#include "dialogs/settings_form.h"
#include "ui/qt/form_window.h"

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;

namespace vx::ui {

class RecognitionServiceWindow : public FormWindow {
public:
    RecognitionServiceWindow(dialogs::RecognitionServiceForm& form, QWidget* parent);

    std::array<QCheckBox*, 10> countries{};
    QCheckBox* bigSymbolModel = nullptr;
    QLineEdit* port = nullptr;
    QLineEdit* minSymbols = nullptr;
    QLineEdit* maxSymbols = nullptr;
    QLineEdit* minHeight = nullptr;
    QLineEdit* minWidth = nullptr;
    QComboBox* models = nullptr;
    QCheckBox* debugConsole = nullptr;
    QLineEdit* gpuObjects = nullptr;
    QPushButton* unlock = nullptr;
    QCheckBox* turn = nullptr;
    QCheckBox* gpu = nullptr;
    std::array<QLineEdit*, 3> confidences{};
    QPushButton* ok = nullptr;   // "Перезапуск сервиса"
    QPushButton* cancel = nullptr;
};

class ControlServiceWindow : public FormWindow {
public:
    ControlServiceWindow(dialogs::ControlServiceForm& form, QWidget* parent);

    QLineEdit* port = nullptr;
    QCheckBox* httpLogger = nullptr;
    std::vector<QRadioButton*> modeDB;
    QCheckBox* equalLatinCyr = nullptr;
    QCheckBox* notReturnServSymb = nullptr;
    QCheckBox* autoUpdateLists = nullptr;
    QPushButton* ok = nullptr;
    QPushButton* cancel = nullptr;
};

class SettingsWindow : public FormWindow {
public:
    SettingsWindow(dialogs::SettingsForm& form, QWidget* parent);

    QLineEdit* systemLogPath = nullptr;
    QPushButton* systemLogBrowse = nullptr;
    QComboBox* systemLevel = nullptr;
    QLineEdit* recogLogPath = nullptr;
    QPushButton* recogLogBrowse = nullptr;
    QLineEdit* recogFormat = nullptr;
    QCheckBox* saveImage = nullptr;
    QComboBox* sizeImage = nullptr;
    QComboBox* divideLogRecog = nullptr;
    QLineEdit* timeLife = nullptr;
    QCheckBox* autoRunManager = nullptr;
    QLineEdit* reportsPath = nullptr;
    QPushButton* reportsBrowse = nullptr;
    QLineEdit* videoPath = nullptr;
    QPushButton* videoBrowse = nullptr;
    QLineEdit* videoChunk = nullptr;
    QLineEdit* maxSizeVideo = nullptr;
    QPushButton* ok = nullptr;
    QPushButton* cancel = nullptr;
};

class ProcessControlWindow : public FormWindow {
public:
    ProcessControlWindow(dialogs::ProcessControlForm& form, QWidget* parent);

    QCheckBox* globalRestart = nullptr;
    QPushButton* ok = nullptr;
    QPushButton* cancel = nullptr;
};

class MessengerServiceWindow : public FormWindow {
public:
    MessengerServiceWindow(dialogs::MessengerServiceForm& form, QWidget* parent);

    QLineEdit* port = nullptr;
    QCheckBox* on = nullptr;
    std::array<QPushButton*, 10> slotButtons{};
    QPushButton* ok = nullptr;
    QPushButton* cancel = nullptr;
};

class MessengerChannelWindow : public FormWindow {
public:
    MessengerChannelWindow(dialogs::MessengerChannelForm& form, QWidget* parent);

    QLineEdit* name = nullptr;
    QCheckBox* on = nullptr;
    QComboBox* typeMessenger = nullptr;
    QLabel* tokenLabel = nullptr;
    QLineEdit* token = nullptr;
    QLineEdit* chatID = nullptr;
    QCheckBox* delaySame = nullptr;
    QLineEdit* delaySameMS = nullptr;
    QCheckBox* delayAny = nullptr;
    QLineEdit* delayAnyMS = nullptr;
    QComboBox* image = nullptr;
    QLineEdit* server = nullptr;
    QLineEdit* mailPort = nullptr;
    QLineEdit* sender = nullptr;
    QLineEdit* receiver = nullptr;
    QPushButton* ok = nullptr;
    QPushButton* cancel = nullptr;
};

// The system's folder picker over the active dialog.
dialogs::FolderChooser systemFolderChooser();

// The five settings dialogs as windows over `parent`; the settings dialog
// picks folders with `chooseFolder`.
core::SettingsDialogs settingsDialogs(QWidget* parent, dialogs::FolderChooser chooseFolder = systemFolderChooser());

} // namespace vx::ui
