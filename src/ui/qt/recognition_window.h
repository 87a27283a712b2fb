#pragma once
// The window of the recognition dialog: lays out its widgets and binds them
// to the form.
#include "state/app_state.h"
#include "dialogs/recognition_form.h"
#include "ui/qt/form_window.h"

class QCheckBox;
class QComboBox;
class QLineEdit;
class QPushButton;

namespace vx::ui {

class RecognitionWindow : public FormWindow {
public:
    RecognitionWindow(dialogs::RecognitionForm& form, QWidget* parent);

    QCheckBox* unShowResultVideo = nullptr;
    QCheckBox* debugModeRecog = nullptr;
    QCheckBox* drawOptionsButtons = nullptr;
    QComboBox* method = nullptr;
    QLineEdit* delaySendSame = nullptr;
    QComboBox* trajTypeSpeed = nullptr;
    QLineEdit* tLimitTime = nullptr;
    QLineEdit* tLimitFrames = nullptr;
    QLineEdit* minConf = nullptr;
    QCheckBox* square = nullptr;
    QLineEdit* minSquare = nullptr;
    QLineEdit* maxSquare = nullptr;
    QCheckBox* useZone = nullptr;
    QLineEdit* x = nullptr;
    QLineEdit* y = nullptr;
    QLineEdit* width = nullptr;
    QLineEdit* height = nullptr;
    QLineEdit* linesY = nullptr;
    QLineEdit* lineAlfa = nullptr;
    QLineEdit* lineDist = nullptr;
    QCheckBox* invert = nullptr;
    QCheckBox* deleteBorderNumbers = nullptr;
    QCheckBox* deleteNumbersWidthoutTemplate = nullptr;
    QCheckBox* noDeleteWithChina = nullptr;
    QPushButton* ok = nullptr;
    QPushButton* cancel = nullptr;
};

// The recognition dialog over `parent` on the scratch set's recognition
// section and common part; true when it closed with OK.
bool runRecognitionDialog(QWidget* parent, core::AppState& state);

} // namespace vx::ui
