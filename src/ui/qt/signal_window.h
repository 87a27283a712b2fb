#pragma once
// The window of the signal dialog: lays out its widgets and binds them to
// the form.
#include <vector>

#include "config/camera_config.h"
#include "state/app_state.h"
#include "dialogs/signal_form.h"
#include "ui/qt/form_window.h"

class QCheckBox;
class QComboBox;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;
class QRadioButton;

namespace vx::ui {

class SignalWindow : public FormWindow {
public:
    SignalWindow(dialogs::SignalForm& form, QWidget* parent);

    QLineEdit* name = nullptr;
    std::vector<QRadioButton*> policy;
    QComboBox* whiteList = nullptr;
    QPushButton* changeWhiteLists = nullptr;
    std::vector<QRadioButton*> signalType;
    QLineEdit* timeOutClose = nullptr;
    QCheckBox* notSendClose = nullptr;
    QComboBox* receivers = nullptr;
    QPushButton* applyReceiver = nullptr;
    QComboBox* requestType = nullptr;
    QLineEdit* url = nullptr;
    QPlainTextEdit* body = nullptr;
    QComboBox* contentType = nullptr;
    QCheckBox* image = nullptr;
    QCheckBox* smallImage = nullptr;
    QCheckBox* plateImage = nullptr;
    QCheckBox* carImage = nullptr;
    QLineEdit* timeOutSend = nullptr;
    QComboBox* bodyEncoding = nullptr;
    QLineEdit* minTimeOutBWSignals = nullptr;
    QComboBox* conditions = nullptr;
    QCheckBox* allSignals = nullptr;
    QPushButton* ok = nullptr;
    QPushButton* cancel = nullptr;
};

// The signal dialog over `parent` on `working`, with the receiver templates
// and white lists of the process; "Изменить" runs the white list manager.
// True when it closed with OK.
bool runSignalDialog(QWidget* parent, core::AppState& state, config::SignalConfig& working);

} // namespace vx::ui
