#include "dialogs/form_fields.h"

#include <charconv>
#include <cmath>
#include <cstdio>

namespace vx::dialogs {

void TextField::set(const std::string& value)
{
    text = value.substr(0, maxLength);
}

void TextField::type(const std::string& value)
{
    if (enabled)
        set(value);
}

void IntegerField::set(std::int64_t value)
{
    text = std::to_string(value);
}

void IntegerField::type(const std::string& value)
{
    if (enabled)
        text = value;
}

bool IntegerField::read(std::int64_t& value) const
{
    std::size_t begin = 0;
    while (begin < text.size() && (text[begin] == ' ' || text[begin] == '\t'))
        ++begin;
    std::size_t end = text.size();
    while (end > begin && (text[end - 1] == ' ' || text[end - 1] == '\t'))
        --end;
    if (begin == end)
        return false;
    std::int64_t parsed = 0;
    const char* first = text.data() + begin;
    const char* last = text.data() + end;
    const auto result = std::from_chars(first, last, parsed);
    if (result.ec != std::errc() || result.ptr != last)
        return false;
    value = parsed;
    return true;
}

bool IntegerField::inRange() const
{
    std::int64_t value = 0;
    return read(value) && value >= minimum && value <= maximum;
}

void RealField::set(double value, int decimals)
{
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, "%.*f", decimals, value);
    text = buffer;
}

void RealField::setSignificant(double value, int digits)
{
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, "%.*g", digits, value);
    text = buffer;
}

void RealField::type(const std::string& value)
{
    if (enabled)
        text = value;
}

bool RealField::read(double& value) const
{
    std::string normal = text;
    for (char& c : normal)
        if (c == ',')
            c = '.';
    std::size_t begin = normal.find_first_not_of(" \t");
    if (begin == std::string::npos)
        return false;
    std::size_t end = normal.find_last_not_of(" \t") + 1;
    double parsed = 0;
    const char* first = normal.data() + begin;
    const char* last = normal.data() + end;
    const auto result = std::from_chars(first, last, parsed);
    if (result.ec != std::errc() || result.ptr != last || !std::isfinite(parsed))
        return false;
    value = parsed;
    return true;
}

void CheckField::click()
{
    if (!enabled)
        return;
    checked = !checked;
    if (onClick)
        onClick();
}

void ChoiceField::choose(std::int32_t index)
{
    if (!enabled || index < 0 || index >= count)
        return;
    chosen = index;
    if (onChoose)
        onChoose();
}

void ListField::clear()
{
    items.clear();
    selected = -1;
}

void ListField::select(std::int32_t index)
{
    if (!enabled || index < 0 || static_cast<std::size_t>(index) >= items.size())
        return;
    selected = index;
    if (onSelect)
        onSelect();
}

void DateField::pick(const config::DateTime& date)
{
    if (!enabled)
        return;
    value.year = date.year;
    value.month = date.month;
    value.day = date.day;
}

void TimeField::pick(const config::DateTime& time)
{
    if (!enabled)
        return;
    value.hour = time.hour;
    value.minute = time.minute;
    value.second = time.second;
}

void ButtonField::press()
{
    if (enabled && onPress)
        onPress();
}

void TableField::clearRows()
{
    rows.clear();
    selectedRow = -1;
}

void TableField::select(std::int32_t row)
{
    selectedRow = row >= 0 && static_cast<std::size_t>(row) < rows.size() ? row : -1;
}

void TableField::clickHeader(std::int32_t column)
{
    if (enabled && onHeaderClick && column >= 0 && static_cast<std::size_t>(column) < columns.size())
        onHeaderClick(column);
}

void TableField::doubleClick(std::int32_t row)
{
    if (!enabled)
        return;
    select(row);
    if (onDoubleClick)
        onDoubleClick(selectedRow);
}

std::vector<int> TableField::widths(int clientWidth) const
{
    std::vector<int> result;
    int used = 0;
    for (std::size_t i = 0; i < columns.size(); ++i) {
        if (i + 1 == columns.size()) {
            result.push_back(clientWidth > used ? clientWidth - used : 0);
            break;
        }
        const int width = static_cast<int>(clientWidth * columns[i].share);
        result.push_back(width);
        used += width;
    }
    return result;
}

} // namespace vx::dialogs
