#include "ui/qt/settings_windows.h"

#include "ui/qt/dialog_rows.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QFileDialog>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QRegularExpressionValidator>
#include <QVBoxLayout>

#include "ui/qt/message_boxes.h"
#include "ui/qt/qt_text.h"

namespace vx::ui {

namespace {


// An edit that takes digits only, as the number fields of these dialogs.
QLineEdit* digitEdit(QWidget* parent, int width = 90)
{
    QLineEdit* edit = digitsEdit(parent);
    edit->setMaximumWidth(width);
    return edit;
}

// The "Порт:" row at the top of a service dialog; returns its edit.
QLineEdit* addPortRow(QBoxLayout* layout, QWidget* parent)
{
    auto* row = new QHBoxLayout;
    row->addWidget(new QLabel(literal("Порт:"), parent));
    QLineEdit* edit = digitEdit(parent);
    row->addWidget(edit);
    row->addStretch();
    layout->addLayout(row);
    return edit;
}

QLabel* note(const char* utf8, QWidget* parent)
{
    auto* label = new QLabel(literal(utf8), parent);
    label->setWordWrap(false);
    return label;
}

QPushButton* browseButton(QWidget* parent)
{
    auto* button = new QPushButton(parent);
    button->setAutoDefault(false);
    button->setFixedWidth(36);
    return button;
}

} // namespace

RecognitionServiceWindow::RecognitionServiceWindow(dialogs::RecognitionServiceForm& form, QWidget* parent)
    : FormWindow(form, parent)
{
    setWindowTitle(literal("Глобальные настройки распознавания автомобильных номеров"));
    FormBinding& b = binding();
    auto* layout = new QVBoxLayout(this);

    auto* countriesGroup = new QGroupBox(literal("Включить шаблоны следующих стран *"), this);
    auto* grid = new QGridLayout(countriesGroup);
    for (std::size_t i = 0; i < countries.size(); ++i) {
        countries[i] = new QCheckBox(literal(dialogs::countryNames[i]), countriesGroup);
        grid->addWidget(countries[i], static_cast<int>(i % 5), static_cast<int>(i / 5));
        b.bindCheck(countries[i], form.countries[i]);
    }
    grid->addWidget(note("* Если шаблоны не выбраны, то распознавание всё равно", countriesGroup), 5, 0, 1, 2);
    grid->addWidget(note("будет работать, однако не будет соответствия шаблону.", countriesGroup), 6, 0, 1, 2);
    layout->addWidget(countriesGroup);

    bigSymbolModel = new QCheckBox(literal("Распознавание иероглифов китайских провинций"), this);
    layout->addWidget(bigSymbolModel);
    layout->addWidget(note("(Номера возвращаются без шаблонов)", this));

    auto* serviceGroup = new QGroupBox(literal("Настройки сервиса распознавания **"), this);
    auto* rows = new QGridLayout(serviceGroup);
    int row = 0;
    auto addNumber = [&](const char* label, QLineEdit*& edit, dialogs::IntegerField& field) {
        rows->addWidget(new QLabel(literal(label), serviceGroup), row, 0);
        edit = digitEdit(serviceGroup);
        rows->addWidget(edit, row++, 1);
        b.bindInteger(edit, field);
    };
    addNumber("Порт:", port, form.port);
    addNumber("Минимум символов в номере:", minSymbols, form.minSymbols);
    addNumber("Максимум символов в номере:", maxSymbols, form.maxSymbols);
    addNumber("Минимум высоты номера (pix):", minHeight, form.minHeight);
    addNumber("Минимум ширины номера (pix):", minWidth, form.minWidth);
    rows->addWidget(new QLabel(literal("Модели:"), serviceGroup), row, 0);
    models = new QComboBox(serviceGroup);
    rows->addWidget(models, row++, 1);
    debugConsole = new QCheckBox(literal("Выводить отладочную консоль"), serviceGroup);
    rows->addWidget(debugConsole, row++, 0, 1, 3);
    addNumber("Количество объектов (СНЯТЬ БЛОК):", gpuObjects, form.gpuObjects);
    unlock = new QPushButton(serviceGroup);
    unlock->setAutoDefault(false);
    rows->addWidget(unlock, row - 1, 2);
    turn = new QCheckBox(literal("Пытаться повернуть номер при распознавании"), serviceGroup);
    rows->addWidget(turn, row++, 0, 1, 3);
    gpu = new QCheckBox(literal("Включить GPU  (нужна NVIDIA видеокарта)"), serviceGroup);
    rows->addWidget(gpu, row++, 0, 1, 3);
    rows->addWidget(new QLabel(literal("Достоверность(Общ,Чел,Тр):"), serviceGroup), row, 0);
    auto* three = new QHBoxLayout;
    dialogs::RealField* realFields[3] = {&form.confThresh, &form.confPerson, &form.confVehicle};
    for (std::size_t i = 0; i < confidences.size(); ++i) {
        confidences[i] = new QLineEdit(serviceGroup);
        confidences[i]->setMaximumWidth(60);
        three->addWidget(confidences[i]);
        b.bindReal(confidences[i], *realFields[i]);
    }
    three->addStretch();
    rows->addLayout(three, row++, 1, 1, 2);
    rows->addWidget(note("** Изменять с осторожностью", serviceGroup), row++, 0, 1, 3);
    rows->setColumnStretch(2, 1);
    layout->addWidget(serviceGroup);
    layout->addLayout(okCancelButtons(this, ok, cancel, "Перезапуск сервиса"));

    b.bindCheck(bigSymbolModel, form.bigSymbolModel);
    b.bindList(models, form.models);
    b.bindCheck(debugConsole, form.debugConsole);
    b.bindButton(unlock, form.unlock);
    b.bindCheck(turn, form.turn);
    b.bindCheck(gpu, form.gpu);
}

ControlServiceWindow::ControlServiceWindow(dialogs::ControlServiceForm& form, QWidget* parent)
    : FormWindow(form, parent)
{
    setWindowTitle(literal("Настройки сервиса управления"));
    FormBinding& b = binding();
    auto* layout = new QVBoxLayout(this);
    port = addPortRow(layout, this);
    httpLogger = new QCheckBox(literal("Выводить отладочную консоль"), this);
    layout->addWidget(httpLogger);

    auto* dbGroup = new QGroupBox(literal("Использование базы данных"), this);
    auto* dbLayout = new QVBoxLayout(dbGroup);
    for (const char* caption : {"Не использовать", "Единственный файл", "На каждый месяц свой файл базы данных"}) {
        auto* button = new QRadioButton(literal(caption), dbGroup);
        modeDB.push_back(button);
        dbLayout->addWidget(button);
    }
    layout->addWidget(dbGroup);

    auto* listGroup = new QGroupBox(literal("Белые списки"), this);
    auto* listLayout = new QVBoxLayout(listGroup);
    equalLatinCyr = new QCheckBox(
        literal("Приравнивать между собой одинаковые латинские и кириллические символы"), listGroup);
    notReturnServSymb = new QCheckBox(literal("Не возвращать служебные символы в номере"), listGroup);
    autoUpdateLists = new QCheckBox(literal("Автоматический подхват изменений списков сервисом Управления"), listGroup);
    for (QCheckBox* check : {equalLatinCyr, notReturnServSymb, autoUpdateLists})
        listLayout->addWidget(check);
    layout->addWidget(listGroup);
    layout->addLayout(okCancelButtons(this, ok, cancel, "Перезапуск сервиса"));

    b.bindInteger(port, form.port);
    b.bindCheck(httpLogger, form.httpLogger);
    b.bindChoice(modeDB, form.modeDB);
    b.bindCheck(equalLatinCyr, form.equalLatinCyr);
    b.bindCheck(notReturnServSymb, form.notReturnServSymb);
    b.bindCheck(autoUpdateLists, form.autoUpdateListsInControl);
}

SettingsWindow::SettingsWindow(dialogs::SettingsForm& form, QWidget* parent) : FormWindow(form, parent)
{
    setWindowTitle(literal("Настройки"));
    FormBinding& b = binding();
    auto* layout = new QVBoxLayout(this);
    auto folderRow = [&](QGridLayout* grid, int row, const char* label, QLineEdit*& edit, QPushButton*& button,
                         QWidget* owner) {
        grid->addWidget(new QLabel(literal(label), owner), row, 0);
        edit = new QLineEdit(owner);
        edit->setMinimumWidth(320);
        grid->addWidget(edit, row, 1);
        button = browseButton(owner);
        grid->addWidget(button, row, 2);
    };
    auto labelled = [](QGridLayout* grid, int row, const char* label, QWidget* widget, QWidget* owner) {
        grid->addWidget(new QLabel(literal(label), owner), row, 0);
        grid->addWidget(widget, row, 1, 1, 2, Qt::AlignLeft);
    };

    auto* systemGroup = new QGroupBox(literal("Системный журнал"), this);
    auto* systemGrid = new QGridLayout(systemGroup);
    folderRow(systemGrid, 0, "Папка системного журнала ", systemLogPath, systemLogBrowse, systemGroup);
    systemLevel = new QComboBox(systemGroup);
    labelled(systemGrid, 1, "Уровень сообщений журнала", systemLevel, systemGroup);
    layout->addWidget(systemGroup);

    auto* recogGroup = new QGroupBox(literal("Журнал распознавания"), this);
    auto* recogGrid = new QGridLayout(recogGroup);
    folderRow(recogGrid, 0, "Папка журнала распознавания", recogLogPath, recogLogBrowse, recogGroup);
    recogGrid->addWidget(new QLabel(literal("Формат журнала номеров"), recogGroup), 1, 0);
    recogFormat = new QLineEdit(recogGroup);
    recogGrid->addWidget(recogFormat, 1, 1, 1, 2);
    saveImage = new QCheckBox(literal("Сохранять изображение с номером"), recogGroup);
    recogGrid->addWidget(saveImage, 2, 0, 1, 3);
    sizeImage = new QComboBox(recogGroup);
    labelled(recogGrid, 3, "Размер изображения", sizeImage, recogGroup);
    divideLogRecog = new QComboBox(recogGroup);
    labelled(recogGrid, 4, "Разделять файл журнала", divideLogRecog, recogGroup);
    timeLife = digitEdit(recogGroup);
    labelled(recogGrid, 5, "Время жизни журнала (в днях 0 - бесконечно)", timeLife, recogGroup);
    layout->addWidget(recogGroup);

    autoRunManager = new QCheckBox(literal("Автозапуск"), this);
    layout->addWidget(autoRunManager);

    auto* reportsGroup = new QGroupBox(literal("Отчеты"), this);
    auto* reportsGrid = new QGridLayout(reportsGroup);
    folderRow(reportsGrid, 0, "Папка для отчетов", reportsPath, reportsBrowse, reportsGroup);
    layout->addWidget(reportsGroup);

    auto* videoGroup = new QGroupBox(literal("Запись видео"), this);
    auto* videoGrid = new QGridLayout(videoGroup);
    folderRow(videoGrid, 0, "Папка для видео-выхода", videoPath, videoBrowse, videoGroup);
    // Plain text edits: what won't parse takes the working default.
    videoChunk = new QLineEdit(videoGroup);
    videoChunk->setMaximumWidth(90);
    labelled(videoGrid, 1, "Размер чанка в секундах по умолчанию", videoChunk, videoGroup);
    maxSizeVideo = new QLineEdit(videoGroup);
    maxSizeVideo->setMaximumWidth(90);
    labelled(videoGrid, 2, "Максимальный размер папки в Mb", maxSizeVideo, videoGroup);
    layout->addWidget(videoGroup);
    layout->addLayout(okCancelButtons(this, ok, cancel, "ОК"));

    b.bindText(systemLogPath, form.systemLogPath);
    b.bindButton(systemLogBrowse, form.systemLogBrowse);
    b.bindList(systemLevel, form.systemLevel);
    b.bindText(recogLogPath, form.recogLogPath);
    b.bindButton(recogLogBrowse, form.recogLogBrowse);
    b.bindText(recogFormat, form.recogFormat);
    b.bindCheck(saveImage, form.saveImage);
    b.bindList(sizeImage, form.sizeImage);
    b.bindList(divideLogRecog, form.divideLogRecog);
    b.bindInteger(timeLife, form.timeLife);
    b.bindCheck(autoRunManager, form.autoRunManager);
    b.bindText(reportsPath, form.reportsPath);
    b.bindButton(reportsBrowse, form.reportsBrowse);
    b.bindText(videoPath, form.videoPath);
    b.bindButton(videoBrowse, form.videoBrowse);
    b.bindInteger(videoChunk, form.videoChunk);
    b.bindInteger(maxSizeVideo, form.maxSizeVideo);
}

ProcessControlWindow::ProcessControlWindow(dialogs::ProcessControlForm& form, QWidget* parent)
    : FormWindow(form, parent)
{
    setWindowTitle(literal("Контроль за запущенными процессами"));
    auto* layout = new QVBoxLayout(this);
    globalRestart = new QCheckBox(literal("Включить контроль*"), this);
    layout->addWidget(globalRestart);
    layout->addWidget(note("* В режиме контроля сервисы и видеопотоки будут перезапускаться при закрытии", this));
    layout->addLayout(okCancelButtons(this, ok, cancel, "ОК"));
    binding().bindCheck(globalRestart, form.globalRestart);
}

MessengerServiceWindow::MessengerServiceWindow(dialogs::MessengerServiceForm& form, QWidget* parent)
    : FormWindow(form, parent)
{
    setWindowTitle(literal("Сервис мессенджеров"));
    FormBinding& b = binding();
    auto* layout = new QVBoxLayout(this);
    port = addPortRow(layout, this);
    on = new QCheckBox(literal("Включить сервис мессенджеров"), this);
    layout->addWidget(on);
    auto* grid = new QGridLayout;
    for (std::size_t i = 0; i < slotButtons.size(); ++i) {
        slotButtons[i] = new QPushButton(this);
        slotButtons[i]->setAutoDefault(false);
        grid->addWidget(slotButtons[i], static_cast<int>(i / 5), static_cast<int>(i % 5));
        b.bindButton(slotButtons[i], form.slotButtons[i]);
    }
    layout->addLayout(grid);
    layout->addWidget(note("OK запускает сервис мессенджеров, если установлена галочка", this));
    layout->addLayout(okCancelButtons(this, ok, cancel, "ОК"));
    b.bindInteger(port, form.port);
    b.bindCheck(on, form.on);
}

MessengerChannelWindow::MessengerChannelWindow(dialogs::MessengerChannelForm& form, QWidget* parent)
    : FormWindow(form, parent)
{
    setWindowTitle(toQString(form.title()));
    FormBinding& b = binding();
    auto* grid = new QGridLayout(this);
    int row = 0;
    auto addText = [&](const char* label, QLineEdit*& edit, dialogs::TextField& field) {
        grid->addWidget(new QLabel(literal(label), this), row, 0);
        edit = new QLineEdit(this);
        edit->setMinimumWidth(300);
        grid->addWidget(edit, row++, 1);
        b.bindText(edit, field);
    };
    // A label that the form shows or hides with its field.
    auto addShown = [&](dialogs::LabelField& label, QLineEdit*& edit) {
        auto* text = new QLabel(this);
        grid->addWidget(text, row, 0);
        b.bindLabel(text, label);
        edit = new QLineEdit(this);
        grid->addWidget(edit, row++, 1);
        return text;
    };
    addText("Имя канала (необязательно):", name, form.name);
    on = new QCheckBox(literal("Включить канал"), this);
    grid->addWidget(on, row++, 0, 1, 2);
    grid->addWidget(new QLabel(literal("Тип канала:"), this), row, 0);
    typeMessenger = new QComboBox(this);
    grid->addWidget(typeMessenger, row++, 1, Qt::AlignLeft);
    tokenLabel = addShown(form.tokenLabel, token);
    b.bindText(token, form.token);
    addShown(form.chatIDLabel, chatID);
    b.bindText(chatID, form.chatID);
    auto addDelay = [&](const char* label, QCheckBox*& check, QLineEdit*& edit) {
        check = new QCheckBox(literal(label), this);
        grid->addWidget(check, row, 0);
        edit = digitEdit(this);
        grid->addWidget(edit, row++, 1);
    };
    addDelay("Пропуск при отправке такого же номера (мс):", delaySame, delaySameMS);
    addDelay("Пропуск при отправке любого номера (мс):", delayAny, delayAnyMS);
    grid->addWidget(new QLabel(literal("Посылать ли изображение:"), this), row, 0);
    image = new QComboBox(this);
    grid->addWidget(image, row++, 1, Qt::AlignLeft);
    addShown(form.serverLabel, server);
    b.bindText(server, form.server);
    addShown(form.portLabel, mailPort);
    mailPort->setValidator(new QRegularExpressionValidator(QRegularExpression("[0-9]*"), mailPort));
    b.bindInteger(mailPort, form.port);
    addShown(form.senderLabel, sender);
    b.bindText(sender, form.sender);
    addShown(form.receiverLabel, receiver);
    b.bindText(receiver, form.receiver);
    grid->addLayout(okCancelButtons(this, ok, cancel, "ОК"), row, 0, 1, 2);

    b.bindCheck(on, form.on);
    b.bindList(typeMessenger, form.typeMessenger);
    b.bindCheck(delaySame, form.delaySame);
    b.bindInteger(delaySameMS, form.delaySameMS);
    b.bindCheck(delayAny, form.delayAny);
    b.bindInteger(delayAnyMS, form.delayAnyMS);
    b.bindList(image, form.image);
    grid->setSizeConstraint(QLayout::SetFixedSize);
}

dialogs::FolderChooser systemFolderChooser()
{
    return [](const std::string& start) -> std::optional<std::string> {
        const QString picked = QFileDialog::getExistingDirectory(QApplication::activeModalWidget(), QString(),
                                                                 toQString(start), QFileDialog::ShowDirsOnly);
        if (picked.isEmpty())
            return std::nullopt;
        return fromQString(QDir::toNativeSeparators(QDir(picked).absolutePath()));
    };
}

core::SettingsDialogs settingsDialogs(QWidget* parent, dialogs::FolderChooser chooseFolder)
{
    core::SettingsDialogs dialogs;
    dialogs.settings = [parent, chooseFolder](config::MainConfig& record) {
        QtMessages messages(parent);
        dialogs::SettingsForm form(record, chooseFolder, messages);
        SettingsWindow window(form, parent);
        return window.run() == QDialog::Accepted;
    };
    dialogs.processControl = [parent](config::MainConfig& record) {
        QtMessages messages(parent);
        dialogs::ProcessControlForm form(record, messages);
        ProcessControlWindow window(form, parent);
        return window.run() == QDialog::Accepted;
    };
    dialogs.recognition = [parent](config::RecognitionSrvConfig& working) {
        QtMessages messages(parent);
        dialogs::RecognitionServiceForm form(working, messages);
        RecognitionServiceWindow window(form, parent);
        return window.run() == QDialog::Accepted;
    };
    dialogs.control = [parent](config::ControlSrvConfig& working) {
        QtMessages messages(parent);
        dialogs::ControlServiceForm form(working, messages);
        ControlServiceWindow window(form, parent);
        return window.run() == QDialog::Accepted;
    };
    dialogs.messengers = [parent](config::MessengersConfig& working, bool& channelsChanged) {
        QtMessages messages(parent);
        auto openChannel = [&working, &messages](int slot) {
            dialogs::MessengerChannelForm channel(working.channels[static_cast<std::size_t>(slot)], slot, messages);
            MessengerChannelWindow window(channel, QApplication::activeModalWidget());
            return window.run() == QDialog::Accepted;
        };
        dialogs::MessengerServiceForm form(working, openChannel, messages);
        MessengerServiceWindow window(form, parent);
        const bool ok = window.run() == QDialog::Accepted;
        channelsChanged = form.channelsChanged;
        return ok;
    };
    return dialogs;
}

} // namespace vx::ui
