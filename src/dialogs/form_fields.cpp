#include "dialogs/form_fields.h"

#include <charconv>
#include <cmath>
#include <cstdio>

namespace vx::dialogs {

namespace {

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

bool isBlank(char c)
{
    return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\f' || c == '\v';
}

// Where the number starts: after leading blanks and one '+' (from_chars takes
// a '-' but no '+').
std::size_t numberStart(const std::string& text)
{
    std::size_t begin = 0;
    while (begin < text.size() && isBlank(text[begin]))
        ++begin;
    if (begin < text.size() && text[begin] == '+' && begin + 1 < text.size() && text[begin + 1] != '-')
        ++begin;
    return begin;
}

} // namespace

bool readLeadingInteger(const std::string& text, std::int64_t& value)
{
    const std::size_t begin = numberStart(text);
    std::int64_t parsed = 0;
    const auto result = std::from_chars(text.data() + begin, text.data() + text.size(), parsed);
    if (result.ec != std::errc())
        return false;
    value = parsed;
    return true;
}

bool readLeadingReal(const std::string& text, double& value)
{
    std::string normal = text.substr(numberStart(text));
    // The decimal comma of the operator's locale counts as the point; only
    // the first separator belongs to the number.
    for (char& c : normal)
        if (c == ',')
            c = '.';
    // Digits must come first (after a sign): from_chars would also take
    // "inf" and "nan".
    const std::size_t at = !normal.empty() && normal[0] == '-' ? 1 : 0;
    const bool digitFirst = at < normal.size() && isDigit(normal[at]);
    const bool pointFirst = at + 1 < normal.size() && normal[at] == '.' && isDigit(normal[at + 1]);
    if (!digitFirst && !pointFirst)
        return false;
    double parsed = 0;
    const auto result =
        std::from_chars(normal.data(), normal.data() + normal.size(), parsed, std::chars_format::general);
    if (result.ec != std::errc() || !std::isfinite(parsed))
        return false;
    value = parsed;
    return true;
}

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
    return readLeadingInteger(text, value);
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
    return readLeadingReal(text, value);
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
