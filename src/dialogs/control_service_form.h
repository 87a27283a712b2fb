#pragma once
// "Настройки сервиса управления": the control service's settings. Like the
// recognition service's dialog, accepting restarts the service, so accept
// asks first.
#include "config/control_config.h"
#include "dialogs/form.h"
#include "dialogs/form_fields.h"

namespace vx::dialogs {

class ControlServiceForm : public Form {
public:
    ControlServiceForm(config::ControlSrvConfig& record, Messages& messages);

    // A stored modeDB other than 0, 1 or 2 leaves all three choices clear.
    void fill() override;
    // The database choice reads back as 1 for "Единственный файл" and 2 for
    // anything else: a stored 0 is shown but written as 2, on purpose.
    config::ControlSrvConfig readBack() const;
    bool accept() override;

    IntegerField port;                 // "Порт:"
    CheckField httpLogger;             // "Выводить отладочную консоль"
    ChoiceField modeDB;                // "Не использовать", "Единственный файл", "На каждый месяц ..."
    CheckField equalLatinCyr;          // group "Белые списки"
    CheckField notReturnServSymb;
    CheckField autoUpdateListsInControl;

private:
    config::ControlSrvConfig& record_;
};

} // namespace vx::dialogs
