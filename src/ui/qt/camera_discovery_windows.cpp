#include "ui/qt/camera_discovery_windows.h"

#include <thread>

#include <QApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPointer>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

#include "core/discovery_tool.h"
#include "dialogs/camera_discovery_flow.h"
#include "ui/qt/message_boxes.h"
#include "ui/qt/qt_text.h"
#include "ui/qt/title_fit.h"

namespace vx::ui {

namespace {

// Runs `work` on a thread of its own and hands its result to `done` on the
// interface thread, unless `window` has gone by then.
template <class Work, class Done>
void onThread(QObject* window, Work work, Done done)
{
    QPointer<QObject> guard(window);
    std::thread([guard, work = std::move(work), done = std::move(done)]() mutable {
        auto result = work();
        QMetaObject::invokeMethod(
            qApp,
            [guard, done = std::move(done), result = std::move(result)]() mutable {
                if (guard)
                    done(result);
            },
            Qt::QueuedConnection);
    }).detach();
}

void setMoving(QProgressBar* bar, bool moving)
{
    // A range of 0..0 is Qt's moving bar; a still bar stands empty.
    bar->setRange(0, moving ? 0 : 100);
    bar->setValue(0);
}

} // namespace

CameraScanWindow::CameraScanWindow(dialogs::ToolCall call, QWidget* parent) : QDialog(parent), call_(std::move(call))
{
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    setWindowTitle(literal("Сканирование камер в локальной сети"));
    auto* layout = new QVBoxLayout(this);
    bar = new QProgressBar(this);
    bar->setTextVisible(false);
    bar->setMinimumWidth(360);
    setMoving(bar, true);
    layout->addWidget(bar);
    auto* row = new QHBoxLayout;
    row->addStretch();
    cancel = new QPushButton(literal("Отмена"), this);
    connect(cancel, &QPushButton::clicked, this, &CameraScanWindow::reject);
    row->addWidget(cancel);
    layout->addLayout(row);
}

void CameraScanWindow::start()
{
    if (started_)
        return;
    started_ = true;
    onThread(
        this, [call = call_, flag = form_.cancelFlag()] { return dialogs::runScanCall(call, *flag); },
        [this](const dialogs::ScanOutcome& outcome) { finish(outcome); });
    fitTitle(*this);
    show();
}

std::string CameraScanWindow::run()
{
    start();
    exec();
    return form_.output();
}

void CameraScanWindow::reject()
{
    form_.pressCancel();
    QDialog::reject();
}

void CameraScanWindow::finish(const dialogs::ScanOutcome& outcome)
{
    form_.finish(outcome);
    if (form_.end() == dialogs::DiscoveryEnd::ok)
        done(QDialog::Accepted);
    else
        done(QDialog::Rejected);
}

CameraLinkWindow::CameraLinkWindow(dialogs::CameraLinkForm& form, dialogs::ToolCall call, QWidget* parent)
    : FormWindow(form, parent), form_(form), call_(std::move(call))
{
    setWindowTitle(literal("Получение rtsp ссылки камеры"));
    auto* layout = new QVBoxLayout(this);
    cameras = new QListWidget(this);
    cameras->setMinimumSize(420, 160);
    layout->addWidget(cameras, 1);
    auto* prompt = new QLabel(toQString(form.prompt.text), this);
    prompt->setWordWrap(true);
    layout->addWidget(prompt);
    auto* fields = new QHBoxLayout;
    fields->addWidget(new QLabel(literal("Логин:"), this));
    login = new QLineEdit(this);
    fields->addWidget(login, 1);
    fields->addWidget(new QLabel(literal("Пароль:"), this));
    password = new QLineEdit(this);
    password->setEchoMode(QLineEdit::Password);
    fields->addWidget(password, 1);
    layout->addLayout(fields);
    bar = new QProgressBar(this);
    bar->setTextVisible(false);
    layout->addWidget(bar);
    auto* row = new QHBoxLayout;
    row->addStretch();
    ok = new QPushButton(literal("OK"), this);
    cancel = new QPushButton(literal("Отмена"), this);
    ok->setDefault(true);
    cancel->setAutoDefault(false);
    connect(ok, &QPushButton::clicked, this, &FormWindow::accept);
    connect(cancel, &QPushButton::clicked, this, &CameraLinkWindow::reject);
    row->addWidget(ok);
    row->addWidget(cancel);
    layout->addLayout(row);

    FormBinding& b = binding();
    b.bindText(login, form.login);
    b.bindText(password, form.password);
    b.bindButton(ok, form.ok);
    b.bindButton(cancel, form.cancelButton);
    connect(cameras, &QListWidget::currentRowChanged, this, [this](int row) {
        if (row >= 0)
            form_.cameras.select(row);
    });
    // The list and the bar follow the form after each pull of the binding:
    // OK pulls once its accept returned.
    connect(ok, &QPushButton::clicked, this, &CameraLinkWindow::refresh);
    form.startCall = [this](const dialogs::LinkRequest& request) {
        onThread(
            this,
            [call = call_, request, flag = form_.cancelFlag()] { return dialogs::runLinkCall(request, call, *flag); },
            [this](const dialogs::LinkOutcome& outcome) { finish(outcome); });
    };
}

void CameraLinkWindow::refresh()
{
    if (cameras->count() != static_cast<int>(form_.cameras.items.size())) {
        cameras->clear();
        for (const std::string& item : form_.cameras.items)
            cameras->addItem(toQString(item));
    }
    if (form_.cameras.selected >= 0 && cameras->currentRow() != form_.cameras.selected)
        cameras->setCurrentRow(form_.cameras.selected);
    cameras->setEnabled(form_.ok.enabled);
    setMoving(bar, form_.barMoving);
}

void CameraLinkWindow::reject()
{
    if (form_.cancel())
        QDialog::reject();
}

void CameraLinkWindow::finish(const dialogs::LinkOutcome& outcome)
{
    form_.finish(outcome);
    binding().pull();
    refresh();
    if (form_.end() == dialogs::DiscoveryEnd::ok)
        done(QDialog::Accepted);
    else if (form_.end() == dialogs::DiscoveryEnd::cancel)
        done(QDialog::Rejected);
}

std::optional<std::string> runCameraDiscovery(QWidget* parent, const dialogs::ToolCall& call,
                                              dialogs::Messages& messages)
{
    dialogs::DiscoveryDialogs dialogs;
    dialogs.scan = [&] {
        CameraScanWindow window(call, parent);
        return window.run();
    };
    dialogs.link = [&](const std::vector<dialogs::FoundCamera>& cameras) -> std::optional<std::string> {
        dialogs::CameraLinkForm form(cameras, messages);
        CameraLinkWindow window(form, call, parent);
        form.fill();
        window.binding().pull();
        window.refresh();
        if (window.exec() != QDialog::Accepted)
            return std::nullopt;
        return form.link();
    };
    return dialogs::findCameraLink(dialogs, messages);
}

std::optional<std::string> runCameraDiscovery(QWidget* parent, const std::filesystem::path& toolFolder)
{
    QtMessages messages(parent);
    return runCameraDiscovery(parent, core::discoveryToolCall(toolFolder), messages);
}

} // namespace vx::ui
