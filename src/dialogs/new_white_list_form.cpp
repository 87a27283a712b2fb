#include "dialogs/new_white_list_form.h"

#include "config/text_codec.h"
#include "config/white_list_registry.h"

namespace vx::dialogs {

NewWhiteListForm::NewWhiteListForm(config::WhiteListTable& table, std::string configDirectory,
                                   Messages& messages)
    : Form(messages), table_(table), configDirectory_(std::move(configDirectory))
{
    name.maxLength = 255;
    kind.count = 3;
}

void NewWhiteListForm::fill()
{
    name.set(std::string());
    kind.chosen = config::plainListKind;
}

NewWhiteListRecord NewWhiteListForm::readBack() const
{
    return {name.text, kind.chosen < 0 ? config::plainListKind : kind.chosen};
}

bool NewWhiteListForm::accept()
{
    // The name is not tested for being empty: an empty name passes while no
    // list bears it.
    const NewWhiteListRecord record = readBack();
    switch (config::addWhiteList(table_, configDirectory_, record.name, record.kind)) {
    case config::whiteListAdded:
        return true;
    case config::tooManyWhiteLists:
        showError(messages(), config::utf8ToCp1251("Слишком много списков!"));
        return false;
    case config::whiteListNameExists:
        showError(messages(), config::utf8ToCp1251("Такое имя белого списка уже существует!"));
        return false;
    default:
        showError(messages(), config::utf8ToCp1251("Имя файла белого списка уже занято!"));
        return false;
    }
}

} // namespace vx::dialogs
