#include "dialogs/control_service_form.h"

#include "config/text_codec.h"
#include "dialogs/form_numbers.h"

namespace vx::dialogs {

ControlServiceForm::ControlServiceForm(config::ControlSrvConfig& record, Messages& messages)
    : Form(messages), record_(record)
{
    port.minimum = 1000;
    port.maximum = 65535;
    modeDB.count = 3;
}

void ControlServiceForm::fill()
{
    port.set(record_.port);
    httpLogger.checked = record_.httpLogger;
    modeDB.chosen = record_.modeDB >= 0 && record_.modeDB <= 2 ? record_.modeDB : -1;
    equalLatinCyr.checked = record_.equalLatinCyr;
    notReturnServSymb.checked = record_.notReturnServSymb;
    autoUpdateListsInControl.checked = record_.autoUpdateListsInControl;
}

config::ControlSrvConfig ControlServiceForm::readBack() const
{
    config::ControlSrvConfig r;
    r.port = readInt32(port, -1);
    r.httpLogger = httpLogger.checked;
    r.modeDB = modeDB.chosen == 1 ? 1 : 2;
    r.equalLatinCyr = equalLatinCyr.checked;
    r.notReturnServSymb = notReturnServSymb.checked;
    r.autoUpdateListsInControl = autoUpdateListsInControl.checked;
    return r;
}

bool ControlServiceForm::accept()
{
    const config::ControlSrvConfig r = readBack();
    if (!port.inRange()) {
        showError(messages(), config::utf8ToCp1251("Неправильно задан порт [1000 - 65535]!"));
        return false;
    }
    if (!askYesNo(messages(), config::utf8ToCp1251("После этого действия система управления будет перезагружена! Продолжить?")))
        return false;
    record_ = r;
    return true;
}

} // namespace vx::dialogs
