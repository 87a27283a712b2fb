#pragma once
// "Добавить список в расширенный список": adds or edits one nested list of an
// extended list, with its day rule and daily window. The manager hands it
// the list and the position (-1 adds).
#include <array>
#include <cstdint>
#include <vector>

#include "config/white_list.h"
#include "dialogs/form.h"
#include "dialogs/form_fields.h"
#include "dialogs/picker_text.h"

namespace vx::dialogs {

// The three choices of the day rule.
inline constexpr std::int32_t everyDayChoice = 0;
inline constexpr std::int32_t weekDaysChoice = 1;
inline constexpr std::int32_t oneDateChoice = 2;

class NestedListForm : public Form {
public:
    NestedListForm(config::WhiteListTable& table, std::int32_t listIndex, std::int32_t position,
                   Messages& messages, Clock clock = localNow);

    void fill() override;
    // The nested list as the fields give it, for the list chosen; false when
    // the chosen position is not one of the table's lists.
    bool readBack(config::NestedList& nested) const;
    bool accept() override;

    // The table index behind each position of the combo box.
    const std::vector<std::int32_t>& tableIndexes() const { return tableIndexes_; }

    ListField list;                    // "Выберите обычный список"
    ChoiceField dayRule;               // every day, chosen week days, one date
    std::array<CheckField, 7> days;    // "ПН" .. "ВС"
    DateField date;
    TimeField time1;                   // the daily window
    TimeField time2;

private:
    void applyChoice();

    config::WhiteListTable& table_;
    std::int32_t listIndex_;
    std::int32_t position_;
    Clock clock_;
    std::vector<std::int32_t> tableIndexes_;
};

} // namespace vx::dialogs
