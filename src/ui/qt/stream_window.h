#pragma once
// The window of the stream dialog: lays out its widgets and binds them to
// the form.
#include "state/app_state.h"
#include "dialogs/stream_form.h"
#include "ui/qt/form_window.h"

class QCheckBox;
class QLineEdit;
class QPushButton;

namespace vx::ui {

class StreamWindow : public FormWindow {
public:
    StreamWindow(dialogs::StreamForm& form, QWidget* parent);

    QLineEdit* videoPath = nullptr;
    QPushButton* findCamera = nullptr;
    QLineEdit* videoName = nullptr;
    QLineEdit* width = nullptr;
    QLineEdit* height = nullptr;
    QLineEdit* fps = nullptr;
    QCheckBox* reconnect = nullptr;
    QLineEdit* secondsToReconnect = nullptr;
    QLineEdit* attempts = nullptr;
    QCheckBox* unShowVideo = nullptr;
    QCheckBox* showConsole = nullptr;
    QCheckBox* aspect = nullptr;
    QCheckBox* onlyVideoStream = nullptr;
    QCheckBox* writeVideo = nullptr;
    QCheckBox* writeOnlyNumObj = nullptr;
    QCheckBox* writeTransport = nullptr;
    QCheckBox* writePerson = nullptr;
    QLineEdit* videoChunk = nullptr;
    QLineEdit* widthWrite = nullptr;
    QLineEdit* heightWrite = nullptr;
    QCheckBox* tcp = nullptr;
    QCheckBox* decodeNvidia = nullptr;
    QCheckBox* decodeDirectX = nullptr;
    QPushButton* ok = nullptr;       // "Готово"
    QPushButton* cancel = nullptr;
};

// The stream dialog over `parent` on the scratch set's Common section;
// "Найти ONVIF камеру" runs the camera discovery with the tool beside the
// manager. True when it closed with OK.
bool runStreamDialog(QWidget* parent, core::AppState& state);

} // namespace vx::ui
