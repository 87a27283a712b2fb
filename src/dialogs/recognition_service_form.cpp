#include "dialogs/recognition_service_form.h"

#include "config/number_format.h"
#include "config/text_codec.h"
#include "dialogs/form_numbers.h"

namespace vx::dialogs {

const std::array<const char*, 10> countryNames = {"Россия",    "Азербайджан", "Армения",    "Беларусь",
                                                  "Казахстан", "Кыргызстан",  "Таджикистан", "Узбекистан",
                                                  "Абхазия",   "Южная Осетия"};

RecognitionServiceForm::RecognitionServiceForm(config::RecognitionSrvConfig& record, Messages& messages)
    : Form(messages), record_(record)
{
    port.minimum = 1000;
    port.maximum = 65535;
    minSymbols.minimum = 0;
    minSymbols.maximum = 20;
    maxSymbols.minimum = 1;
    maxSymbols.maximum = 40;
    minHeight.minimum = 8;
    minHeight.maximum = 1000;
    minWidth.minimum = 20;
    minWidth.maximum = 2000;
    gpuObjects.minimum = 1;
    gpuObjects.maximum = 8;
    models.items = {"Max", "small", "micro", "nano"};
    unlock.caption = config::utf8ToCp1251("Блок");
    unlock.onPress = [this] {
        const std::string question = config::utf8ToCp1251(
            "ОСТОРОЖНО! \nДля работы на центральном процессоре с малым количеством ядер количество объектов "
            "больше 1 не приведет к увеличению производительности, а может даже снизить ее! Меняйте этот "
            "параметр с оторожностью! Разблокировать?");
        if (askYesNo(this->messages(), question))
            gpuObjects.enabled = true;
    };
}

void RecognitionServiceForm::fill()
{
    const config::RecognitionSrvConfig& r = record_;
    for (std::size_t i = 0; i < countries.size(); ++i)
        countries[i].checked = r.templates[i];
    bigSymbolModel.checked = r.bigSymbolModel;
    port.set(r.port);
    minSymbols.set(r.minSymbolsPlate);
    maxSymbols.set(r.maxSymbolsPlate);
    minHeight.set(r.minPlateHeight);
    minWidth.set(r.minPlateWidth);
    // A stored size outside the items selects nothing.
    models.selected = r.modeConfig >= 0 && r.modeConfig < 4 ? r.modeConfig : -1;
    debugConsole.checked = r.mode == 1;
    gpuObjects.set(r.gpuObjects);
    gpuObjects.enabled = false;
    turn.checked = r.turn;
    gpu.checked = r.gpu;
    confThresh.text = config::formatReal(r.detectConfThresh);
    confPerson.text = config::formatReal(r.detectConfPerson);
    confVehicle.text = config::formatReal(r.detectConfVehicle);
}

config::RecognitionSrvConfig RecognitionServiceForm::readBack() const
{
    config::RecognitionSrvConfig r;
    for (std::size_t i = 0; i < countries.size(); ++i)
        r.templates[i] = countries[i].checked;
    r.bigSymbolModel = bigSymbolModel.checked;
    r.port = readInt32(port, -1);
    r.minSymbolsPlate = readInt32(minSymbols, -1);
    r.maxSymbolsPlate = readInt32(maxSymbols, -1);
    r.minPlateHeight = readInt32(minHeight, -1);
    r.minPlateWidth = readInt32(minWidth, -1);
    if (models.selected >= 0)
        r.modeConfig = models.selected;
    r.mode = debugConsole.checked ? 1 : 0;
    // Read whether the field is locked or not.
    r.gpuObjects = readInt32(gpuObjects, -1);
    r.turn = turn.checked;
    r.gpu = gpu.checked;
    r.detectConfThresh = static_cast<float>(readReal(confThresh, -1.0));
    r.detectConfPerson = static_cast<float>(readReal(confPerson, -1.0));
    r.detectConfVehicle = static_cast<float>(readReal(confVehicle, -1.0));
    return r;
}

bool RecognitionServiceForm::accept()
{
    const config::RecognitionSrvConfig r = readBack();
    auto confidenceOk = [](float value) { return value >= 0.0f && value <= 1.0f; };
    // The text says an open interval; 0 and 1 pass all the same.
    if (!confidenceOk(r.detectConfThresh) || !confidenceOk(r.detectConfPerson) ||
        !confidenceOk(r.detectConfVehicle)) {
        showError(messages(), config::utf8ToCp1251("Настройки достоверности во всех случаях должны быть в интервале (0,1)!"));
        return false;
    }
    // The minimum is not compared with the maximum.
    FormChecks checks;
    checks.test(port.inRange(), config::utf8ToCp1251("Неправильно задан порт [1000 - 65535]!"));
    checks.test(minSymbols.inRange(),
                config::utf8ToCp1251("Неправильно задано значение минимального количества символов [0 - 20]!"));
    checks.test(maxSymbols.inRange(),
                config::utf8ToCp1251("Неправильно задано значение максимального количества символов [1 - 40]!"));
    checks.test(minHeight.inRange(),
                config::utf8ToCp1251("Неправильно задано значение минимальной высоты номера в пикселях [8 - 1000]!"));
    checks.test(minWidth.inRange(),
                config::utf8ToCp1251("Неправильно задано значение минимальной ширины номера в пикселях [20 - 2000]!"));
    checks.test(gpuObjects.inRange(),
                config::utf8ToCp1251("Количество объектов для распознавания может быть только в диапазоне от 1 до 8!"));
    if (!checks.report(messages()))
        return false;
    if (!askYesNo(messages(), config::utf8ToCp1251("После этого действия система распознавания будет перезагружена! Продолжить?")))
        return false;
    record_ = r;
    return true;
}

} // namespace vx::dialogs
