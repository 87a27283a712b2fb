#include "dialogs/nested_list_form.h"

#include <stdexcept>

#include "config/text_codec.h"
#include "config/white_list_day_rule.h"
#include "config/white_list_entries.h"
#include "dialogs/white_list_view.h"

namespace vx::dialogs {

namespace {

// A stored time is read with a date put in front; one that won't parse
// leaves the picker as it is.
void showStoredTime(const std::string& text, TimeField& time)
{
    config::DateTime value{};
    try {
        if (!config::parseDateTime("2000-01-01T" + text, value))
            return;
    } catch (const std::logic_error&) {
        return;
    }
    time.value = value;
}

bool isExtended(const config::WhiteListTable& table, std::int32_t index)
{
    return index >= 0 && static_cast<std::size_t>(index) < table.lists.size() && table.lists[index].extended;
}

} // namespace

NestedListForm::NestedListForm(config::WhiteListTable& table, std::int32_t listIndex, std::int32_t position,
                               Messages& messages, Clock clock)
    : Form(messages), table_(table), listIndex_(listIndex), position_(position), clock_(std::move(clock))
{
    dayRule.count = 3;
    dayRule.onChoose = [this] { applyChoice(); };
}

void NestedListForm::fill()
{
    config::NestedList record;
    bool existing = false;
    if (position_ != -1 && isExtended(table_, listIndex_)) {
        const auto& nested = table_.lists[listIndex_].lists;
        if (position_ >= 0 && static_cast<std::size_t>(position_) < nested.size()) {
            record = nested[position_];
            existing = true;
        }
    }

    list.clear();
    tableIndexes_.clear();
    for (std::size_t i = 0; i < table_.lists.size(); ++i) {
        if (table_.lists[i].extended)
            continue;
        list.items.push_back(shownListName(table_.lists[i].name));
        tableIndexes_.push_back(static_cast<std::int32_t>(i));
    }
    list.selected = list.items.empty() ? -1 : 0;
    if (!record.file.empty())
        for (std::size_t p = 0; p < tableIndexes_.size(); ++p)
            if (table_.lists[tableIndexes_[p]].file == record.file) {
                list.selected = static_cast<std::int32_t>(p);
                break;
            }

    const config::DayRule rule = config::parseDayRule(record.permitted_access_days);
    const std::int32_t kind = existing ? rule.kind : config::allDays;
    dayRule.chosen = kind == config::weekDays ? weekDaysChoice
                     : kind == config::oneDate ? oneDateChoice
                                               : everyDayChoice;

    for (std::size_t d = 0; d < days.size(); ++d) {
        days[d].enabled = kind == config::weekDays;
        days[d].checked = kind == config::weekDays && rule.days[d];
    }

    const config::DateTime today = clock_();
    date.value = today;
    date.enabled = kind == config::oneDate;
    if (kind == config::oneDate) {
        date.value.year = rule.date.year;
        date.value.month = rule.date.month;
        date.value.day = rule.date.day;
    }

    time1.value = today;
    time1.value.hour = time1.value.minute = time1.value.second = 0;
    time2.value = today;
    time2.value.hour = 23;
    time2.value.minute = time2.value.second = 59;
    if (existing) {
        showStoredTime(record.permitted_access_time1, time1);
        showStoredTime(record.permitted_access_time2, time2);
    }
}

void NestedListForm::applyChoice()
{
    // The checks keep their marks while disabled.
    for (CheckField& day : days)
        day.enabled = dayRule.chosen == weekDaysChoice;
    date.enabled = dayRule.chosen == oneDateChoice;
}

bool NestedListForm::readBack(config::NestedList& nested) const
{
    if (list.selected < 0 || static_cast<std::size_t>(list.selected) >= tableIndexes_.size())
        return false;
    const config::WhiteList& chosen = table_.lists[tableIndexes_[list.selected]];
    nested = config::NestedList{};
    nested.file = chosen.file;
    nested.name = chosen.name;
    if (dayRule.chosen == weekDaysChoice) {
        std::array<bool, 7> marks{};
        for (std::size_t d = 0; d < days.size(); ++d)
            marks[d] = days[d].checked;
        nested.permitted_access_days = config::dayListText(marks);
    } else if (dayRule.chosen == oneDateChoice) {
        nested.permitted_access_days = dateText(date.value);
    }
    nested.permitted_access_time1 = timeText(time1.value);
    nested.permitted_access_time2 = timeText(time2.value);
    const config::DayRule rule = config::parseDayRule(nested.permitted_access_days);
    nested.dayKind = rule.kind;
    nested.days = rule.days;
    nested.date = rule.date;
    nested.time1 = time1.value;
    nested.time2 = time2.value;
    return true;
}

bool NestedListForm::accept()
{
    FormChecks checks;
    // The test is on the position, not on the name.
    checks.test(list.selected != 0,
                config::utf8ToCp1251("Empty список не может быть использован в расширенном!"));
    if (dayRule.chosen == weekDaysChoice) {
        bool anyDay = false;
        for (const CheckField& day : days)
            anyDay = anyDay || day.checked;
        checks.test(anyDay, config::utf8ToCp1251("Должен быть выделен хотя бы один день недели!"));
    }
    if (!checks.report(messages()))
        return false;

    config::NestedList nested;
    if (!readBack(nested))
        return true;   // a position the map doesn't hold: OK with no change
    if (position_ == -1)
        config::addNestedList(table_, listIndex_, nested);
    else
        config::replaceNestedList(table_, listIndex_, position_, nested);
    return true;
}

} // namespace vx::dialogs
