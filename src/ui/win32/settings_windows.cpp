#include "ui/win32/settings_windows.h"

#include "dialogs/control_service_form.h"
#include "dialogs/messenger_forms.h"
#include "dialogs/recognition_service_form.h"
#include "ui/win32/folder_chooser.h"
#include "ui/win32/form_dialog.h"
#include "ui/win32/message_boxes.h"
#include "ui/win32/resource_ids.h"
#include "ui/win32/settings_windows_ids.h"

namespace vx::ui::win32 {

namespace {

void bindSettingsForm(FormBinding& b, dialogs::SettingsForm& form)
{
    b.bindText(IDC_SETTINGS_SYSTEM_LOG_PATH, form.systemLogPath);
    b.bindButton(IDC_SETTINGS_SYSTEM_LOG_BROWSE, form.systemLogBrowse);
    b.bindList(IDC_SETTINGS_SYSTEM_LEVEL, form.systemLevel);
    b.bindText(IDC_SETTINGS_RECOG_LOG_PATH, form.recogLogPath);
    b.bindButton(IDC_SETTINGS_RECOG_LOG_BROWSE, form.recogLogBrowse);
    b.bindText(IDC_SETTINGS_RECOG_FORMAT, form.recogFormat);
    b.bindCheck(IDC_SETTINGS_SAVE_IMAGE, form.saveImage);
    b.bindList(IDC_SETTINGS_SIZE_IMAGE, form.sizeImage);
    b.bindList(IDC_SETTINGS_DIVIDE_LOG, form.divideLogRecog);
    b.bindInteger(IDC_SETTINGS_TIME_LIFE, form.timeLife);
    b.bindCheck(IDC_SETTINGS_AUTORUN, form.autoRunManager);
    b.bindText(IDC_SETTINGS_REPORTS_PATH, form.reportsPath);
    b.bindButton(IDC_SETTINGS_REPORTS_BROWSE, form.reportsBrowse);
    b.bindText(IDC_SETTINGS_VIDEO_PATH, form.videoPath);
    b.bindButton(IDC_SETTINGS_VIDEO_BROWSE, form.videoBrowse);
    b.bindInteger(IDC_SETTINGS_VIDEO_CHUNK, form.videoChunk);
    b.bindInteger(IDC_SETTINGS_MAX_SIZE_VIDEO, form.maxSizeVideo);
}

void bindRecognitionServiceForm(FormBinding& b, dialogs::RecognitionServiceForm& form)
{
    for (std::size_t i = 0; i < form.countries.size(); ++i)
        b.bindCheck(IDC_RECOG_SRV_COUNTRY_FIRST + static_cast<int>(i), form.countries[i]);
    b.bindCheck(IDC_RECOG_SRV_BIG_SYMBOLS, form.bigSymbolModel);
    b.bindInteger(IDC_RECOG_SRV_PORT, form.port);
    b.bindInteger(IDC_RECOG_SRV_MIN_SYMBOLS, form.minSymbols);
    b.bindInteger(IDC_RECOG_SRV_MAX_SYMBOLS, form.maxSymbols);
    b.bindInteger(IDC_RECOG_SRV_MIN_HEIGHT, form.minHeight);
    b.bindInteger(IDC_RECOG_SRV_MIN_WIDTH, form.minWidth);
    b.bindList(IDC_RECOG_SRV_MODELS, form.models);
    b.bindCheck(IDC_RECOG_SRV_DEBUG_CONSOLE, form.debugConsole);
    b.bindInteger(IDC_RECOG_SRV_GPU_OBJECTS, form.gpuObjects);
    b.bindButton(IDC_RECOG_SRV_UNLOCK, form.unlock);
    b.bindCheck(IDC_RECOG_SRV_TURN, form.turn);
    b.bindCheck(IDC_RECOG_SRV_GPU, form.gpu);
    b.bindReal(IDC_RECOG_SRV_CONF_THRESH, form.confThresh);
    b.bindReal(IDC_RECOG_SRV_CONF_PERSON, form.confPerson);
    b.bindReal(IDC_RECOG_SRV_CONF_VEHICLE, form.confVehicle);
}

void bindControlServiceForm(FormBinding& b, dialogs::ControlServiceForm& form)
{
    b.bindInteger(IDC_CONTROL_SRV_PORT, form.port);
    b.bindCheck(IDC_CONTROL_SRV_HTTP_LOGGER, form.httpLogger);
    b.bindChoice({IDC_CONTROL_SRV_DB_NONE, IDC_CONTROL_SRV_DB_SINGLE, IDC_CONTROL_SRV_DB_MONTHLY}, form.modeDB);
    b.bindCheck(IDC_CONTROL_SRV_EQUAL_LATIN_CYR, form.equalLatinCyr);
    b.bindCheck(IDC_CONTROL_SRV_NO_SERVICE_SYMBOLS, form.notReturnServSymb);
    b.bindCheck(IDC_CONTROL_SRV_AUTO_UPDATE_LISTS, form.autoUpdateListsInControl);
}

void bindMessengerServiceForm(FormBinding& b, dialogs::MessengerServiceForm& form)
{
    b.bindInteger(IDC_MESSENGERS_PORT, form.port);
    b.bindCheck(IDC_MESSENGERS_ON, form.on);
    for (std::size_t i = 0; i < form.slotButtons.size(); ++i)
        b.bindButton(IDC_MESSENGERS_SLOT_FIRST + static_cast<int>(i), form.slotButtons[i]);
}

void bindMessengerChannelForm(FormBinding& b, dialogs::MessengerChannelForm& form)
{
    b.bindText(IDC_CHANNEL_NAME, form.name);
    b.bindCheck(IDC_CHANNEL_ON, form.on);
    b.bindList(IDC_CHANNEL_TYPE, form.typeMessenger);
    b.bindLabel(IDC_CHANNEL_TOKEN_LABEL, form.tokenLabel);
    b.bindText(IDC_CHANNEL_TOKEN, form.token);
    b.bindLabel(IDC_CHANNEL_CHAT_ID_LABEL, form.chatIDLabel);
    b.bindText(IDC_CHANNEL_CHAT_ID, form.chatID);
    b.bindCheck(IDC_CHANNEL_DELAY_SAME, form.delaySame);
    b.bindInteger(IDC_CHANNEL_DELAY_SAME_MS, form.delaySameMS);
    b.bindCheck(IDC_CHANNEL_DELAY_ANY, form.delayAny);
    b.bindInteger(IDC_CHANNEL_DELAY_ANY_MS, form.delayAnyMS);
    b.bindList(IDC_CHANNEL_IMAGE, form.image);
    b.bindLabel(IDC_CHANNEL_SERVER_LABEL, form.serverLabel);
    b.bindText(IDC_CHANNEL_SERVER, form.server);
    b.bindLabel(IDC_CHANNEL_PORT_LABEL, form.portLabel);
    b.bindInteger(IDC_CHANNEL_PORT, form.port);
    b.bindLabel(IDC_CHANNEL_SENDER_LABEL, form.senderLabel);
    b.bindText(IDC_CHANNEL_SENDER, form.sender);
    b.bindLabel(IDC_CHANNEL_RECEIVER_LABEL, form.receiverLabel);
    b.bindText(IDC_CHANNEL_RECEIVER, form.receiver);
}

// The messenger service; each slot opens its channel's dialog over it.
bool runMessengers(HWND owner, config::MessengersConfig& working, bool& channelsChanged)
{
    Win32Messages messages(owner);
    HWND service = owner;
    auto openChannel = [&working, &messages, &service](int slot) {
        dialogs::MessengerChannelForm channel(working.channels[static_cast<std::size_t>(slot)], slot, messages);
        return runBoundDialog(service, channel, IDD_MESSENGER_CHANNEL, bindMessengerChannelForm, channel.title());
    };
    dialogs::MessengerServiceForm form(working, openChannel, messages);
    FormDialog dialog;
    dialog.resource = IDD_MESSENGERS;
    dialog.bind = [&form, &service](FormBinding& b) {
        service = b.dialog();
        bindMessengerServiceForm(b, form);
    };
    const bool ok = runFormDialog(owner, form, dialog) == IDOK;
    channelsChanged = form.channelsChanged;
    return ok;
}

} // namespace

core::SettingsDialogs settingsDialogs(HWND owner)
{
    return settingsDialogs(owner, systemFolderChooser(owner));
}

core::SettingsDialogs settingsDialogs(HWND owner, dialogs::FolderChooser chooseFolder)
{
    core::SettingsDialogs dialogs;
    dialogs.settings = [owner, chooseFolder](config::MainConfig& record) {
        Win32Messages messages(owner);
        dialogs::SettingsForm form(record, chooseFolder, messages);
        return runBoundDialog(owner, form, IDD_SETTINGS, bindSettingsForm);
    };
    dialogs.processControl = [owner](config::MainConfig& record) {
        Win32Messages messages(owner);
        dialogs::ProcessControlForm form(record, messages);
        return runBoundDialog(owner, form, IDD_PROCESS_CONTROL, +[](FormBinding& b, dialogs::ProcessControlForm& f) {
            b.bindCheck(IDC_PROCESS_CONTROL_ON, f.globalRestart);
        });
    };
    dialogs.recognition = [owner](config::RecognitionSrvConfig& working) {
        Win32Messages messages(owner);
        dialogs::RecognitionServiceForm form(working, messages);
        return runBoundDialog(owner, form, IDD_RECOGNITION_SERVICE, bindRecognitionServiceForm);
    };
    dialogs.control = [owner](config::ControlSrvConfig& working) {
        Win32Messages messages(owner);
        dialogs::ControlServiceForm form(working, messages);
        return runBoundDialog(owner, form, IDD_CONTROL_SERVICE, bindControlServiceForm);
    };
    dialogs.messengers = [owner](config::MessengersConfig& working, bool& channelsChanged) {
        return runMessengers(owner, working, channelsChanged);
    };
    return dialogs;
}

} // namespace vx::ui::win32
