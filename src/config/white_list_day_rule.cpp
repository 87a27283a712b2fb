#include "config/white_list_day_rule.h"

#include <vector>

#include "config/comma_split.h"
#include "config/white_list.h"

namespace vx::config {
namespace {

bool isDigit(char c) { return c >= '0' && c <= '9'; }

std::string stripBlanks(const std::string& token) {
    const std::size_t first = token.find_first_not_of(" \t");
    if (first == std::string::npos) return {};
    const std::size_t last = token.find_last_not_of(" \t");
    return token.substr(first, last - first + 1);
}

// The week days of a list like "1, 3,5", or false when a token is bad.
bool parseWeekDays(const std::string& text, std::array<bool, 7>& days) {
    const std::vector<std::string> tokens = splitAtCommas(text);
    if (tokens.empty()) return false;
    std::array<bool, 7> collected{};
    for (const std::string& raw : tokens) {
        const std::string token = stripBlanks(raw);
        if (token.empty()) return false;
        int value = 0;
        for (char c : token) {
            if (c < '0' || c > '6') return false;
            value = value * 10 + (c - '0');
            // "16" is made of allowed digits but names no day: it would set a
            // flag past the seventh, so it counts as a bad token.
            if (value > 6) return false;
        }
        collected[value] = true;
    }
    days = collected;
    return true;
}

int digitsValue(const std::string& text, std::size_t position, std::size_t length) {
    int value = 0;
    for (std::size_t i = position; i < position + length; ++i) value = value * 10 + (text[i] - '0');
    return value;
}

bool parseDate(const std::string& text, DateTime& date) {
    if (text.size() != 10) return false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (i == 4 || i == 7) {
            if (text[i] != '-') return false;
        } else if (!isDigit(text[i])) {
            return false;
        }
    }
    const int year = digitsValue(text, 0, 4);
    const int month = digitsValue(text, 5, 2);
    const int day = digitsValue(text, 8, 2);
    if (year < 1601 || year > 30827 || month < 1 || month > 12 || day < 1 || day > 31) return false;
    date = DateTime{};
    date.year = static_cast<std::uint16_t>(year);
    date.month = static_cast<std::uint16_t>(month);
    date.day = static_cast<std::uint16_t>(day);
    return true;
}

} // namespace

DayRule parseDayRule(const std::string& text) {
    DayRule rule;
    if (text == "all_days") return rule;
    if (parseWeekDays(text, rule.days)) {
        rule.kind = weekDays;
        return rule;
    }
    if (parseDate(text, rule.date)) {
        rule.kind = oneDate;
        return rule;
    }
    return rule;
}

std::string dayListText(const std::array<bool, 7>& days) {
    std::string text;
    for (int day = 0; day < 7; ++day) {
        if (!days[day]) continue;
        if (!text.empty()) text += ',';
        text += static_cast<char>('0' + day);
    }
    return text;
}

} // namespace vx::config
