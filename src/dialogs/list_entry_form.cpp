#include "dialogs/list_entry_form.h"

#include <stdexcept>

#include "config/text_codec.h"
#include "config/white_list_entries.h"
#include "dialogs/plate_case.h"

namespace vx::dialogs {

namespace {

// A stored time that won't parse leaves the pickers as they are; the file's
// text is not ours to trust.
void showStoredTime(const std::string& text, DateField& date, TimeField& time)
{
    config::DateTime value{};
    try {
        if (!config::parseDateTime(text, value))
            return;
    } catch (const std::logic_error&) {
        return;
    }
    date.value = value;
    time.value = value;
}

// A list file is plain CSV with no quoting: a comma or a line break in a
// field would split the row.
const char* refusedFieldText(const config::WhiteListEntry& row)
{
    for (const std::string* field : {&row.num, &row.car, &row.add}) {
        if (field->find(',') != std::string::npos)
            return "Поле не может содержать запятую!";
        if (field->find_first_of("\r\n") != std::string::npos)
            return "Поле не может содержать перевод строки!";
    }
    return nullptr;
}

} // namespace

ListEntryForm::ListEntryForm(config::WhiteListTable& table, std::int32_t listIndex, std::int32_t listKind,
                             std::int32_t rowId, Messages& messages, Clock clock)
    : Form(messages), table_(table), listIndex_(listIndex), listKind_(listKind), rowId_(rowId),
      clock_(std::move(clock))
{
    num.maxLength = car.maxLength = add.maxLength = 255;
}

void ListEntryForm::fill()
{
    const config::DateTime now = clock_();
    date1.value = time1.value = date2.value = time2.value = now;
    const bool withTimes = listKind_ != config::plainListKind;
    date1.enabled = time1.enabled = date2.enabled = time2.enabled = withTimes;
    if (rowId_ == -1)
        return;
    if (listIndex_ < 0 || static_cast<std::size_t>(listIndex_) >= table_.lists.size())
        return;
    const config::WhiteListEntry* row = config::findListRow(table_.lists[listIndex_], rowId_);
    if (!row)
        return;
    num.set(row->num);
    car.set(row->car);
    add.set(row->add);
    if (listKind_ == config::oneTimeListKind) {
        showStoredTime(row->time1, date1, time1);
        showStoredTime(row->time2, date2, time2);
    }
}

config::WhiteListEntry ListEntryForm::readBack() const
{
    config::WhiteListEntry row;
    row.ID = rowId_;
    row.num = upperCasePlate(num.text);
    row.car = car.text;
    row.add = add.text;
    // Start and end aren't compared. A plain list gets the times as well;
    // its file leaves them out.
    row.time1Parsed = joinDateTime(date1.value, time1.value);
    row.time2Parsed = joinDateTime(date2.value, time2.value);
    row.time1 = dateTimeText(row.time1Parsed);
    row.time2 = dateTimeText(row.time2Parsed);
    return row;
}

bool ListEntryForm::accept()
{
    const config::WhiteListEntry row = readBack();
    if (row.num.empty()) {
        showError(messages(), config::utf8ToCp1251("Номер не может быть пустым!"));
        return false;
    }
    if (const char* refused = refusedFieldText(row)) {
        showError(messages(), config::utf8ToCp1251(refused));
        return false;
    }
    if (rowId_ != -1) {
        // No test for a repeated number here; the edit makes the list dirty.
        if (!config::replaceListRow(table_, listIndex_, rowId_, row)) {
            showError(messages(), config::utf8ToCp1251("Проблема с редактированием элемента списка"));
            return false;
        }
        return true;
    }
    if (config::addListRow(table_, listIndex_, row) == config::listRowNumberExists) {
        showError(messages(), config::utf8ToCp1251("Такой номер уже существует!"));
        return false;
    }
    return true;
}

} // namespace vx::dialogs
