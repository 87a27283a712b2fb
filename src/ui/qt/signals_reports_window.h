#pragma once
// The window of the signals and reports dialog: lays out its widgets and
// binds them to the form.
#include <array>

#include "state/app_state.h"
#include "dialogs/signals_reports_form.h"
#include "ui/qt/form_window.h"

class QCheckBox;
class QComboBox;
class QDateEdit;
class QLineEdit;
class QPushButton;
class QTimeEdit;

namespace vx::ui {

class SignalsReportsWindow : public FormWindow {
public:
    SignalsReportsWindow(dialogs::SignalsReportsForm& form, QWidget* parent);

    std::array<QCheckBox*, 4> signalOn{};
    std::array<QLineEdit*, 4> signalName{};
    std::array<QPushButton*, 4> editSignal{};
    QLineEdit* timeMinBetweenSimilarCar = nullptr;
    QLineEdit* timeMinStop = nullptr;
    QCheckBox* notDelMoveGroup = nullptr;
    QLineEdit* notDelMoveGroupQualThresh = nullptr;
    QCheckBox* onlyOneNumber = nullptr;
    QCheckBox* whiteLists = nullptr;
    QCheckBox* dailyReport = nullptr;
    QTimeEdit* timeDailyReport = nullptr;
    QDateEdit* startDate = nullptr;
    QTimeEdit* startTime = nullptr;
    QDateEdit* endDate = nullptr;
    QTimeEdit* endTime = nullptr;
    QPushButton* generateReport = nullptr;
    QCheckBox* buttonOpen = nullptr;
    QComboBox* buttonOpenSignal = nullptr;
    QCheckBox* buttonClose = nullptr;
    QComboBox* buttonCloseSignal = nullptr;
    QPushButton* ok = nullptr;
    QPushButton* cancel = nullptr;
};

// The signals and reports dialog over `parent` on the scratch set's control
// section; "Редактировать" opens the signal dialog over it, "Генерация" sets
// `reportRequested`. True when it closed with OK.
bool runSignalsReportsDialog(QWidget* parent, core::AppState& state);

} // namespace vx::ui
