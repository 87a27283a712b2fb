#pragma once
// "Добавление нового белого списка": the name and kind of a new list. On OK
// the list is added, written to its new file and entered in the registry; a
// refused add shows its message and the dialog stays open.
#include <string>

#include "config/white_list.h"
#include "dialogs/form.h"
#include "dialogs/form_fields.h"

namespace vx::dialogs {

struct NewWhiteListRecord {
    std::string name;
    std::int32_t kind = 0;   // plain, one-time, extended
};

class NewWhiteListForm : public Form {
public:
    NewWhiteListForm(config::WhiteListTable& table, std::string configDirectory, Messages& messages);

    void fill() override;                  // empty name, plain chosen
    NewWhiteListRecord readBack() const;
    bool accept() override;

    TextField name;      // up to 255 characters, takes the focus
    ChoiceField kind;    // "Обычный список", "Список для разовых пропусков", "Расширенный список ..."

private:
    config::WhiteListTable& table_;
    std::string configDirectory_;
};

} // namespace vx::dialogs
