#pragma once
// The two waiting dialogs of camera discovery and the flow behind
// "Найти ONVIF камеру". Each call of the tool runs on a thread of its own;
// its end comes back to the interface thread as a queued call, and a
// dialog that has closed meanwhile is left alone.
#include <filesystem>
#include <optional>
#include <string>

#include <QDialog>

#include "dialogs/camera_discovery.h"
#include "dialogs/camera_link_form.h"
#include "dialogs/camera_scan_form.h"
#include "ui/qt/form_window.h"

class QListWidget;
class QLineEdit;
class QProgressBar;
class QPushButton;

namespace vx::ui {

class CameraScanWindow : public QDialog {
public:
    CameraScanWindow(dialogs::ToolCall call, QWidget* parent);

    // Starts the scan call and shows the window without waiting (tests).
    void start();
    // start, then modal until closed; the text the scan left.
    std::string run();
    void reject() override;   // "Отмена", Escape, the close box

    dialogs::CameraScanForm& form() { return form_; }
    QProgressBar* bar = nullptr;
    QPushButton* cancel = nullptr;

private:
    void finish(const dialogs::ScanOutcome& outcome);

    dialogs::ToolCall call_;
    dialogs::CameraScanForm form_;
    bool started_ = false;
};

class CameraLinkWindow : public FormWindow {
public:
    CameraLinkWindow(dialogs::CameraLinkForm& form, dialogs::ToolCall call, QWidget* parent);

    void reject() override;   // "Отмена" while the buttons are enabled
    // Sets the widgets the binding doesn't carry: list, bar.
    void refresh();

    QListWidget* cameras = nullptr;
    QLineEdit* login = nullptr;
    QLineEdit* password = nullptr;
    QProgressBar* bar = nullptr;
    QPushButton* ok = nullptr;
    QPushButton* cancel = nullptr;

private:
    void finish(const dialogs::LinkOutcome& outcome);

    dialogs::CameraLinkForm& form_;
    dialogs::ToolCall call_;
};

// "Найти ONVIF камеру": scan, choose, ask for the link. The text for the
// stream dialog's link field, or nothing when it keeps its content.
std::optional<std::string> runCameraDiscovery(QWidget* parent, const dialogs::ToolCall& call,
                                              dialogs::Messages& messages);
std::optional<std::string> runCameraDiscovery(QWidget* parent, const std::filesystem::path& toolFolder);

} // namespace vx::ui
