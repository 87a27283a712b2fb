#pragma once
// "Добавить номер": adds or edits one row of a plain or one-time list. The
// manager hands it the list, the list's kind and the row ID (-1 adds).
#include <cstdint>

#include "config/white_list.h"
#include "dialogs/form.h"
#include "dialogs/form_fields.h"
#include "dialogs/picker_text.h"

namespace vx::dialogs {

class ListEntryForm : public Form {
public:
    ListEntryForm(config::WhiteListTable& table, std::int32_t listIndex, std::int32_t listKind,
                  std::int32_t rowId, Messages& messages, Clock clock = localNow);

    // The pickers show the current moment (disabled for a plain list); an
    // existing row fills the texts and, in a one-time list, the times.
    void fill() override;
    // The row as the fields give it: the number upper-cased, each time
    // joined from its date and time pickers. The ID is the one edited.
    config::WhiteListEntry readBack() const;
    // Replaces the row by ID, or adds it with a new ID unless the number
    // exists already.
    bool accept() override;

    std::int32_t rowId() const { return rowId_; }

    TextField num;     // "Автомобильный номер (обязательно к заполнению)"
    TextField car;     // "Марка автомобиля (информационное поле)"
    TextField add;     // "Дополнительная информация (информационное поле)"
    DateField date1;   // "Начальная дата и время"
    TimeField time1;
    DateField date2;   // "Конечная дата и время"
    TimeField time2;

private:
    config::WhiteListTable& table_;
    std::int32_t listIndex_;
    std::int32_t listKind_;
    std::int32_t rowId_;
    Clock clock_;
};

} // namespace vx::dialogs
