#include "ui/qt/stream_window.h"

#include <QCheckBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPalette>
#include <QPushButton>
#include <QVBoxLayout>

#include "ui/qt/camera_discovery_windows.h"
#include "ui/qt/dialog_rows.h"
#include "ui/qt/message_boxes.h"
#include "ui/qt/qt_text.h"

namespace vx::ui {

namespace {

QLineEdit* numberEdit(QWidget* parent, bool digits)
{
    QLineEdit* edit = digits ? digitsEdit(parent) : new QLineEdit(parent);
    edit->setMaximumWidth(90);
    return edit;
}

} // namespace

StreamWindow::StreamWindow(dialogs::StreamForm& form, QWidget* parent) : FormWindow(form, parent)
{
    setWindowTitle(toQString(form.title()));
    auto* layout = new QVBoxLayout(this);

    layout->addWidget(new QLabel(literal("Ссылка на видеопоток, например: rtsp://192.168.1.1:554"), this));
    auto* linkRow = new QHBoxLayout;
    videoPath = new QLineEdit(this);
    videoPath->setMinimumWidth(420);
    findCamera = new QPushButton(toQString(form.findCamera.caption), this);
    findCamera->setAutoDefault(false);
    linkRow->addWidget(videoPath, 1);
    linkRow->addWidget(findCamera);
    layout->addLayout(linkRow);
    layout->addWidget(new QLabel(literal("Название видеопотока, например: Камера на входе"), this));
    videoName = new QLineEdit(this);
    layout->addWidget(videoName);

    auto* frame = new QFormLayout;
    width = numberEdit(this, true);
    frame->addRow(literal("Ширина кадра (0 - auto)"), width);
    height = numberEdit(this, true);
    frame->addRow(literal("Высота кадра (0 - auto)"), height);
    fps = numberEdit(this, false);
    frame->addRow(literal("Частота кадров (0 - по готовности)"), fps);
    reconnect = new QCheckBox(literal("Переподключаться при разрыве соединения"), this);
    frame->addRow(reconnect);
    secondsToReconnect = numberEdit(this, true);
    frame->addRow(literal("Секунд до переподключения (минимум 1)"), secondsToReconnect);
    attempts = numberEdit(this, true);
    frame->addRow(literal("Попыток переподключения (0 - бесконечно)"), attempts);
    layout->addLayout(frame);

    unShowVideo = new QCheckBox(literal("Не показывать окно с видео"), this);
    showConsole = new QCheckBox(literal("Показывать отладочную консоль процесса видеопотока"), this);
    aspect = new QCheckBox(literal("Сохранять соотношения сторон видео"), this);
    onlyVideoStream = new QCheckBox(literal("Только Трансляция (ВНИМАНИЕ! Установка этого флага приведет к тому, "
                                            "что распознавание не будет работать)"),
                                    this);
    QPalette warning = onlyVideoStream->palette();
    warning.setColor(QPalette::WindowText, Qt::blue);
    onlyVideoStream->setPalette(warning);
    for (QCheckBox* check : {unShowVideo, showConsole, aspect, onlyVideoStream})
        layout->addWidget(check);

    auto* recording = new QGroupBox(literal("Настройки видеозаписи"), this);
    auto* recordingLayout = new QVBoxLayout(recording);
    writeVideo = new QCheckBox(literal("Записывать видео с видеопотока"), recording);
    recordingLayout->addWidget(writeVideo);
    auto* objectsRow = new QHBoxLayout;
    writeOnlyNumObj = new QCheckBox(literal("Записывать только при наличии номера или объектов ("), recording);
    writeTransport = new QCheckBox(literal("Транспорт"), recording);
    writePerson = new QCheckBox(literal("Человек )"), recording);
    objectsRow->addWidget(writeOnlyNumObj);
    objectsRow->addWidget(writeTransport);
    objectsRow->addWidget(writePerson);
    objectsRow->addStretch();
    recordingLayout->addLayout(objectsRow);
    auto* sizes = new QFormLayout;
    videoChunk = numberEdit(recording, true);
    sizes->addRow(literal("Размер чанка в секундах"), videoChunk);
    widthWrite = numberEdit(recording, true);
    sizes->addRow(literal("Ширина кадра (0 - как на входе)"), widthWrite);
    heightWrite = numberEdit(recording, true);
    sizes->addRow(literal("Высота кадра (0 - как на входе)"), heightWrite);
    recordingLayout->addLayout(sizes);
    layout->addWidget(recording);

    auto* rtsp = new QGroupBox(literal("Дополнительные настройки для rtsp потока "), this);
    auto* rtspLayout = new QVBoxLayout(rtsp);
    tcp = new QCheckBox(literal("TCP протокол"), rtsp);
    decodeNvidia = new QCheckBox(literal("Аппаратное декодирование на NVIDIA видеокарте"), rtsp);
    decodeDirectX = new QCheckBox(literal("Декодирование DirectX 11 "), rtsp);
    for (QCheckBox* check : {tcp, decodeNvidia, decodeDirectX})
        rtspLayout->addWidget(check);
    layout->addWidget(rtsp);

    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    ok = new QPushButton(literal("Готово"), this);
    cancel = new QPushButton(literal("Отмена"), this);
    ok->setDefault(true);
    ok->setAutoDefault(true);
    cancel->setAutoDefault(false);
    QObject::connect(ok, &QPushButton::clicked, this, &FormWindow::accept);
    QObject::connect(cancel, &QPushButton::clicked, this, &FormWindow::reject);
    buttons->addWidget(ok);
    buttons->addWidget(cancel);
    layout->addLayout(buttons);

    FormBinding& b = binding();
    b.bindText(videoPath, form.videoPath);
    b.bindButton(findCamera, form.findCamera);
    b.bindText(videoName, form.videoName);
    b.bindInteger(width, form.width);
    b.bindInteger(height, form.height);
    b.bindReal(fps, form.fps);
    b.bindCheck(reconnect, form.reconnect);
    b.bindInteger(secondsToReconnect, form.secondsToReconnect);
    b.bindInteger(attempts, form.attempts);
    b.bindCheck(unShowVideo, form.unShowVideo);
    b.bindCheck(showConsole, form.showConsole);
    b.bindCheck(aspect, form.aspect);
    b.bindCheck(onlyVideoStream, form.onlyVideoStream);
    b.bindCheck(writeVideo, form.writeVideo);
    b.bindCheck(writeOnlyNumObj, form.writeOnlyNumObj);
    b.bindCheck(writeTransport, form.writeTransport);
    b.bindCheck(writePerson, form.writePerson);
    b.bindInteger(videoChunk, form.videoChunk);
    b.bindInteger(widthWrite, form.widthWrite);
    b.bindInteger(heightWrite, form.heightWrite);
    b.bindCheck(tcp, form.tcp);
    b.bindCheck(decodeNvidia, form.decodeNvidia);
    b.bindCheck(decodeDirectX, form.decodeDirectX);
}

bool runStreamDialog(QWidget* parent, core::AppState& state)
{
    QtMessages messages(parent);
    dialogs::StreamForm form(state.scratchConfig, state.scratchConfig.isNew, messages);
    StreamWindow window(form, parent);
    const std::filesystem::path toolFolder = state.baseDirectory;
    QWidget* owner = &window;
    form.findLink = [owner, toolFolder] { return runCameraDiscovery(owner, toolFolder); };
    return window.run() == QDialog::Accepted;
}

} // namespace vx::ui
