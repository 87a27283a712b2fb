#include "dialogs/signals_reports_form.h"

#include <ctime>

#include "config/text_codec.h"
#include "dialogs/form_numbers.h"

namespace vx::dialogs {

using config::utf8ToCp1251;

namespace {

constexpr double fortyDays = 3456000.0;

// Seconds of calendar time of a local date and time.
std::time_t localSeconds(const config::DateTime& value)
{
    std::tm broken{};
    broken.tm_year = value.year - 1900;
    broken.tm_mon = value.month - 1;
    broken.tm_mday = value.day;
    broken.tm_hour = value.hour;
    broken.tm_min = value.minute;
    broken.tm_sec = value.second;
    broken.tm_isdst = -1;
    return std::mktime(&broken);
}

std::vector<std::string> signalItems()
{
    std::vector<std::string> items;
    for (int n = 1; n <= 4; ++n)
        items.push_back(utf8ToCp1251("Сигнал ") + std::to_string(n));
    return items;
}

std::int32_t shownSignal(std::int32_t value)
{
    return value >= 0 && value < 4 ? value : -1;
}

} // namespace

std::int32_t checkReportSettings(const config::CameraControl& c)
{
    std::int32_t code = 0;
    if (c.timeMinBetweenSimilarCar < 1 || c.timeMinBetweenSimilarCar > 1500)
        code = 1;
    if (c.timeMinStop < 1 || c.timeMinStop > 36000)
        code = 2;
    const double period = std::difftime(localSeconds(c.timeReportEnd), localSeconds(c.timeReportStart));
    if (period > fortyDays)
        code = 3;
    if (period < 0)
        code = 5;
    const double confidence = c.notDelMoveGroupQualThresh;
    if (confidence < 0.3 || confidence > 1.0)
        code = 6;
    if (code == 0) {
        // Month numbers alone: December to January is one step.
        const int startMonth = c.timeReportStart.month;
        const int endMonth = c.timeReportEnd.month;
        if (endMonth - startMonth >= 2 || (endMonth < startMonth && endMonth - startMonth + 12 > 1))
            code = 4;
    }
    return code;
}

std::string reportSettingsMessage(std::int32_t code)
{
    switch (code) {
    case 1:
        return utf8ToCp1251("Минимальное время между повторами автомобиля должно быть в интервале от 1 до 1500 минут!");
    case 2:
        return utf8ToCp1251("Минимальное время стояния автомобиля должно быть в интервале от 1 до 36000 секунд!");
    case 3:
        return utf8ToCp1251("Период для генерации равен или превышает 40 дней! Установите меньший период!");
    case 4:
        return utf8ToCp1251("Период для генерации лежит больше, чем в двух месяцах! Установите меньший период!");
    case 5:
        return utf8ToCp1251("Дата начала больше дата окончания периода");
    case 6:
        return utf8ToCp1251("Достоверность движущегося номера должна быть в диапазоне от 0.3 до 1.0!");
    default:
        return {};
    }
}

SignalsReportsForm::SignalsReportsForm(config::CameraControl& control, std::string streamName,
                                       bool& reportRequested, Messages& messages, SignalEditor editor,
                                       Clock clock)
    : Form(messages), control_(control), streamName_(std::move(streamName)), reportRequested_(reportRequested),
      editSignal_(std::move(editor)), clock_(std::move(clock))
{
    for (std::size_t slot = 0; slot < editSignal.size(); ++slot) {
        editSignal[slot].caption = utf8ToCp1251("Редактировать");
        editSignal[slot].onPress = [this, slot] { editSlot(slot); };
    }
    generateReport.caption = utf8ToCp1251("Генерация");
    generateReport.onPress = [this] {
        if (generate() && closeWithOk)
            closeWithOk();
    };
    dailyReport.onClick = [this] { enableByChecks(); };
    notDelMoveGroup.onClick = [this] { enableByChecks(); };
}

std::string SignalsReportsForm::title() const
{
    return utf8ToCp1251("Настройка сигналов видеопотока ") + streamName_;
}

void SignalsReportsForm::fill()
{
    const config::CameraControl& c = control_;
    for (std::size_t slot = 0; slot < c.Control.size(); ++slot) {
        signalOn[slot].checked = c.Control[slot].on;
        signalName[slot].set(c.Control[slot].name);
    }
    // A time shows only when its year isn't zero; otherwise the picker keeps
    // the current time.
    const config::DateTime now = clock_ ? clock_() : config::DateTime{};
    auto shown = [&now](const config::DateTime& value) { return value.year != 0 ? value : now; };
    timeDailyReport.value = shown(c.timeDailyReport);
    startDate.value = shown(c.timeReportStart);
    startTime.value = startDate.value;
    endDate.value = shown(c.timeReportEnd);
    endTime.value = endDate.value;

    timeMinBetweenSimilarCar.set(c.timeMinBetweenSimilarCar);
    timeMinStop.set(c.timeMinStop);
    notDelMoveGroup.checked = c.notDelMoveGroup;
    notDelMoveGroupQualThresh.setSignificant(c.notDelMoveGroupQualThresh, 5);
    onlyOneNumber.checked = c.onlyOneNumber;
    whiteLists.checked = c.whiteLists;
    dailyReport.checked = c.dailyReport;
    buttonOpen.checked = c.buttonOpen;
    buttonClose.checked = c.buttonClose;
    buttonOpenSignal.items = signalItems();
    buttonCloseSignal.items = signalItems();
    buttonOpenSignal.selected = shownSignal(c.buttonOpenSignal);
    buttonCloseSignal.selected = shownSignal(c.buttonCloseSignal);
    enableByChecks();
}

config::CameraControl SignalsReportsForm::readBack() const
{
    config::CameraControl c = control_;
    for (std::size_t slot = 0; slot < c.Control.size(); ++slot)
        c.Control[slot].on = signalOn[slot].checked;
    c.timeMinBetweenSimilarCar = readInt32(timeMinBetweenSimilarCar, -1);
    c.timeMinStop = readInt32(timeMinStop, -1);
    c.notDelMoveGroup = notDelMoveGroup.checked;
    c.notDelMoveGroupQualThresh = static_cast<float>(readReal(notDelMoveGroupQualThresh, -1.0));
    c.onlyOneNumber = onlyOneNumber.checked;
    c.whiteLists = whiteLists.checked;
    c.dailyReport = dailyReport.checked;
    c.timeDailyReport = timeDailyReport.value;
    c.timeReportStart = joinDateTime(startDate.value, startTime.value);
    c.timeReportEnd = joinDateTime(endDate.value, endTime.value);
    c.buttonOpen = buttonOpen.checked;
    c.buttonClose = buttonClose.checked;
    c.buttonOpenSignal = buttonOpenSignal.selected >= 0 ? buttonOpenSignal.selected : 0;
    c.buttonCloseSignal = buttonCloseSignal.selected >= 0 ? buttonCloseSignal.selected : 0;
    return c;
}

bool SignalsReportsForm::accept()
{
    return store(false);
}

bool SignalsReportsForm::generate()
{
    return store(true);
}

bool SignalsReportsForm::store(bool requestReport)
{
    const config::CameraControl c = readBack();
    const std::int32_t code = checkReportSettings(c);
    if (code != 0) {
        showError(messages(), reportSettingsMessage(code));
        return false;
    }
    if (requestReport)
        reportRequested_ = true;
    control_ = c;
    return true;
}

void SignalsReportsForm::enableByChecks()
{
    timeDailyReport.enabled = dailyReport.checked;
    notDelMoveGroupQualThresh.enabled = notDelMoveGroup.checked;
}

void SignalsReportsForm::editSlot(std::size_t slot)
{
    config::SignalConfig working = control_.Control[slot];
    working.numSignal = static_cast<std::int32_t>(slot) + 1;
    if (!editSignal_ || !editSignal_(working))
        return;
    // The on flag is the stored one, not the check on the form.
    working.on = control_.Control[slot].on;
    control_.Control[slot] = working;
    signalName[slot].set(working.name);
}

} // namespace vx::dialogs
