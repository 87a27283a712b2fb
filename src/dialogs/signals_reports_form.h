#pragma once
// "Настройка сигналов видеопотока <name>": the four signals of a stream, its
// daily report, a report on demand over a period, and the two manual
// buttons of its tile.
#include <array>
#include <cstdint>
#include <functional>
#include <string>

#include "config/camera_config.h"
#include "dialogs/form.h"
#include "dialogs/form_fields.h"
#include "dialogs/picker_text.h"

namespace vx::dialogs {

// The validity test of the control settings: 0 when they pass, otherwise
// the code of the message (reportSettingsMessage). The period is measured in
// seconds of local calendar time.
std::int32_t checkReportSettings(const config::CameraControl& control);
std::string reportSettingsMessage(std::int32_t code);

// Opens the signal dialog on `working` (its number already set, from 1);
// true when it closed with OK.
using SignalEditor = std::function<bool(config::SignalConfig& working)>;

class SignalsReportsForm : public Form {
public:
    // Edits `control` in place; `reportRequested` is set by "Генерация".
    SignalsReportsForm(config::CameraControl& control, std::string streamName, bool& reportRequested,
                       Messages& messages, SignalEditor editor, Clock clock = localNow);

    std::string title() const;

    void fill() override;
    // `control` with the form's values; the signals as they stand there.
    config::CameraControl readBack() const;
    // "ОК".
    bool accept() override;
    // "Генерация": the same test; on success a report is requested too.
    // True when the dialog closes with OK.
    bool generate();

    // The window closes itself with OK when "Генерация" passes.
    std::function<void()> closeWithOk;

    std::array<CheckField, 4> signalOn;      // "Включить отправку сигнала N"
    std::array<TextField, 4> signalName;     // "Имя:", read-only
    std::array<ButtonField, 4> editSignal;   // "Редактировать"
    IntegerField timeMinBetweenSimilarCar;
    IntegerField timeMinStop;
    CheckField notDelMoveGroup;        // "Исключить для движущихся с достоверностью:"
    RealField notDelMoveGroupQualThresh;
    CheckField onlyOneNumber;
    CheckField whiteLists;             // "Учет белых списков"
    CheckField dailyReport;            // "Ежедневный отчет за  сутки"
    TimeField timeDailyReport;
    DateField startDate;               // "Начало"
    TimeField startTime;
    DateField endDate;                 // "Конец"
    TimeField endTime;
    ButtonField generateReport;        // "Генерация"
    CheckField buttonOpen;             // "Включить и выбрать сигнал"
    ListField buttonOpenSignal;
    CheckField buttonClose;
    ListField buttonCloseSignal;

private:
    void enableByChecks();
    void editSlot(std::size_t slot);
    bool store(bool requestReport);

    config::CameraControl& control_;
    std::string streamName_;
    bool& reportRequested_;
    SignalEditor editSignal_;
    Clock clock_;
};

} // namespace vx::dialogs
