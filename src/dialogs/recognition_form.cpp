#include "dialogs/recognition_form.h"

#include "config/text_codec.h"
#include "dialogs/form_numbers.h"

namespace vx::dialogs {

using config::utf8ToCp1251;

namespace {

constexpr std::int32_t longStanding = 3;
constexpr std::int32_t crossingLines = 4;
constexpr int shownDigits = 5;

float readFloat(const RealField& field, double failed)
{
    return static_cast<float>(readReal(field, failed));
}

} // namespace

RecognitionForm::RecognitionForm(config::CameraRecognition& recognition, config::CameraCommon& common,
                                 Messages& messages)
    : Form(messages), recognition_(recognition), common_(common)
{
    for (const char* item : {"Один кадр", "Два кадра подряд", "Три кадра из четырех",
                             "Траектория: длительное стояние", "Траектория: пересечение линий"})
        method.items.push_back(utf8ToCp1251(item));
    trajTypeSpeed.items = {utf8ToCp1251("По времени"), utf8ToCp1251("По кадрам")};
    method.onSelect = [this] { enableByMethod(); };
    trajTypeSpeed.onSelect = [this] { enableByMethod(); };
    unShowResultVideo.onClick = [this] { enableByChecks(); };
    square.onClick = [this] { enableByChecks(); };
    useZone.onClick = [this] { enableByChecks(); };
}

std::string RecognitionForm::title() const
{
    return utf8ToCp1251("Настройка распознавания видеопотока ") + common_.videoName;
}

void RecognitionForm::fill()
{
    const config::CameraRecognition& r = recognition_;
    unShowResultVideo.checked = r.unShowResultVideo;
    debugModeRecog.checked = r.debugModeRecog;
    drawOptionsButtons.checked = common_.drawOptionsButtons;
    method.selected = r.method >= 0 && r.method <= crossingLines ? r.method : -1;
    delaySendSame.set(r.delaySendSame);
    trajTypeSpeed.selected = clampIndex(r.trajTypeSpeed, 2);
    tLimitTime.set(r.tLimitTime);
    tLimitFrames.set(r.tLimitFrames);
    minConf.setSignificant(r.minConf, shownDigits);
    square.checked = r.Square;
    minSquare.setSignificant(r.minSquare, shownDigits);
    maxSquare.setSignificant(r.maxSquare, shownDigits);
    useZone.checked = r.useZone;
    x.setSignificant(r.x, shownDigits);
    y.setSignificant(r.y, shownDigits);
    width.setSignificant(r.width, shownDigits);
    height.setSignificant(r.height, shownDigits);
    linesY.setSignificant(r.linesY, shownDigits);
    lineAlfa.setSignificant(r.lineAlfa, shownDigits);
    lineDist.setSignificant(r.lineDist, shownDigits);
    invert.checked = r.invert;
    deleteBorderNumbers.checked = r.deleteBorderNumbers;
    deleteNumbersWidthoutTemplate.checked = r.deleteNumbersWidthoutTemplate;
    noDeleteWithChina.checked = r.noDeleteWithChina;
    enableByMethod();
    enableByChecks();
}

RecognitionValues RecognitionForm::readBack() const
{
    RecognitionValues values;
    config::CameraRecognition& r = values.recognition;
    r.unShowResultVideo = unShowResultVideo.checked;
    r.debugModeRecog = debugModeRecog.checked;
    values.drawOptionsButtons = drawOptionsButtons.checked;
    if (method.selected >= 0)
        r.method = method.selected;
    r.delaySendSame = readInt32(delaySendSame, -1);
    if (trajTypeSpeed.selected >= 0)
        r.trajTypeSpeed = trajTypeSpeed.selected;
    r.tLimitTime = readInt32(tLimitTime, -1);
    r.tLimitFrames = readInt32(tLimitFrames, -1);
    r.minConf = readFloat(minConf, -1.0);
    r.Square = square.checked;
    r.minSquare = readFloat(minSquare, -1.0);
    r.maxSquare = readFloat(maxSquare, -1.0);
    r.useZone = useZone.checked;
    r.x = readFloat(x, -1.0);
    r.y = readFloat(y, -1.0);
    r.width = readFloat(width, -1.0);
    r.height = readFloat(height, -1.0);
    r.linesY = readFloat(linesY, -1.0);
    r.lineAlfa = readFloat(lineAlfa, -100.0);
    r.lineDist = readFloat(lineDist, -1.0);
    r.invert = invert.checked;
    r.deleteBorderNumbers = deleteBorderNumbers.checked;
    r.deleteNumbersWidthoutTemplate = deleteNumbersWidthoutTemplate.checked;
    r.noDeleteWithChina = noDeleteWithChina.checked;
    return values;
}

bool RecognitionForm::accept()
{
    const RecognitionValues values = readBack();
    const config::CameraRecognition& r = values.recognition;
    FormChecks checks;
    // Every test runs over every field, enabled or not.
    checks.test(static_cast<std::uint32_t>(r.delaySendSame) <= 100000,
                utf8ToCp1251("Неправильно задана задержка при посылке такого же номера [0 - 100000]!"));
    checks.test(r.tLimitTime >= 1 && r.tLimitTime <= 1000 && r.tLimitFrames >= 1 && r.tLimitFrames <= 1000,
                utf8ToCp1251("Неправильно заданы время устаревания или кадры до устаревания [1-1000]!"));
    // The least area isn't tested for being below 0: an empty field passes.
    checks.test(!(r.maxSquare < 0 || r.maxSquare > 1 || r.minSquare > 1 || r.minSquare > r.maxSquare),
                utf8ToCp1251("Минимальная или максимальная площадь номера вне интерваоа (0 - 1) или "
                             "максимальная площадь меньше минимальной!"));
    checks.test(!(r.x < 0 || r.x + r.width > 1 || r.y < 0 || r.y + r.height > 1),
                utf8ToCp1251("Зона распознавания лежит вне границ кадра!"));
    checks.test(!(r.linesY < 0 || r.linesY > 1 || r.lineAlfa < -45 || r.lineAlfa > 45 || r.lineDist < 0 ||
                  r.lineDist > 1),
                utf8ToCp1251("Настройки линий пересечения лежат вне заданных пределах!"));
    const double confidence = r.minConf;
    checks.test(!(confidence < 0.1 || confidence > 0.9),
                utf8ToCp1251("Минимальная достоверность распознавания может быть только в пределах 0.1 - 0.9!"));
    // showTime is not on the form and stands at 1000 here: this never fails.
    checks.test(r.showTime >= 1 && r.showTime <= 100000,
                utf8ToCp1251("Неправильно задана длительность показывания номера в окне [1 - 100000]!"));
    if (!checks.report(messages()))
        return false;
    recognition_ = r;
    common_.drawOptionsButtons = values.drawOptionsButtons;
    return true;
}

void RecognitionForm::enableByMethod()
{
    const std::int32_t m = method.selected;
    const bool trajectory = m == longStanding || m == crossingLines;
    const bool byTime = trajTypeSpeed.selected == 0;
    delaySendSame.enabled = m != crossingLines;
    trajTypeSpeed.enabled = trajectory;
    tLimitTime.enabled = trajectory && byTime;
    tLimitFrames.enabled = trajectory && !byTime;
    for (RealField* line : {&linesY, &lineAlfa, &lineDist})
        line->enabled = m == crossingLines;
}

void RecognitionForm::enableByChecks()
{
    debugModeRecog.enabled = !unShowResultVideo.checked;
    minSquare.enabled = square.checked;
    maxSquare.enabled = square.checked;
    for (RealField* zone : {&x, &y, &width, &height})
        zone->enabled = useZone.checked;
}

} // namespace vx::dialogs
