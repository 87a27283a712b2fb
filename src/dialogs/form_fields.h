#pragma once
// The fields of a dialog as the operator sees them, without any window: a
// form owns its fields, fills them, and reads them back; a test types into
// them and clicks them the way the operator would; the window layer binds one
// widget to each field and does nothing else.
//
// Text is Windows-1251, as everywhere in memory. The operator's actions
// (`type`, `click`, `choose`, `select`...) do nothing on a disabled field, as a
// disabled control takes no input; the form itself sets fields directly.
// A field's `on...` hook is the form's reaction to the operator's action.
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "config/date_time.h"

namespace vx::dialogs {

// One line of text, cut to its maximum length as the edit control limits it.
struct TextField {
    std::string text;
    std::size_t maxLength = 255;
    bool enabled = true;
    bool visible = true;   // a hidden field keeps its text

    void set(const std::string& value);   // the form fills it
    void type(const std::string& value);  // the operator replaces the text
};

// A static text the form changes, such as a label naming what is on show.
struct LabelField {
    std::string text;
    bool visible = true;
};

// The decimal conversion of every numeric field: leading blanks and a sign,
// then the number, which stops at the first character that can't continue it
// ("25 fps" is 25, "500 Mb" is 500). False when no number leads the text, or
// when it is too large. A real number takes a decimal comma as the point
// ("0,7" is 0.7) and an exponent.
bool readLeadingInteger(const std::string& text, std::int64_t& value);
bool readLeadingReal(const std::string& text, double& value);

// An edit that takes digits; what was typed stays as text until the form
// reads it through `readLeadingInteger`.
struct IntegerField {
    std::string text;
    std::int64_t minimum = 0;
    std::int64_t maximum = 0;
    bool enabled = true;
    bool visible = true;

    void set(std::int64_t value);
    void type(const std::string& value);
    bool read(std::int64_t& value) const;
    bool inRange() const;   // read and within minimum..maximum
};

// An edit for a real number, read through `readLeadingReal`.
struct RealField {
    std::string text;
    bool enabled = true;

    void set(double value, int decimals);
    // At most `digits` significant digits, no trailing zeros ("%g").
    void setSignificant(double value, int digits);
    void type(const std::string& value);
    bool read(double& value) const;
};

struct CheckField {
    bool checked = false;
    bool enabled = true;
    std::function<void()> onClick;

    void click();
};

// A group of choices of which one is chosen (-1: none).
struct ChoiceField {
    std::int32_t chosen = -1;
    std::int32_t count = 0;
    bool enabled = true;
    std::function<void()> onChoose;

    void choose(std::int32_t index);
};

// A drop-down list; `selected` is -1 with nothing selected.
struct ListField {
    std::vector<std::string> items;
    std::int32_t selected = -1;
    bool enabled = true;
    std::function<void()> onSelect;

    void clear();
    void select(std::int32_t index);   // the operator picks an item
};

// A date picker and a time picker each hold a whole date and time; the date
// picker shows the year, month and day, the time picker the time of day.
struct DateField {
    config::DateTime value{};
    bool enabled = true;
    void pick(const config::DateTime& date);   // year, month and day of `date`
};

struct TimeField {
    config::DateTime value{};
    bool enabled = true;
    void pick(const config::DateTime& time);   // hour, minute and second of `time`
};

struct ButtonField {
    std::string caption;
    bool enabled = true;
    bool marked = false;   // drawn white on green, as a slot that is switched on
    std::function<void()> onPress;

    void press();
};

// A report view: columns, rows of texts, one selected row (-1: none).
struct TableColumn {
    std::string title;
    double share = 0.0;     // of the view's client width; the last column takes the rest
    bool centred = false;
};

struct TableField {
    std::vector<TableColumn> columns;
    std::vector<std::vector<std::string>> rows;
    std::int32_t selectedRow = -1;
    bool enabled = true;
    std::function<void(std::int32_t column)> onHeaderClick;
    std::function<void(std::int32_t row)> onDoubleClick;

    void clearRows();
    void select(std::int32_t row);
    void clickHeader(std::int32_t column);
    void doubleClick(std::int32_t row);   // selects the row, then the hook
    // Widths of the columns for a client width: each column but the last
    // its share, the last what remains (never below zero).
    std::vector<int> widths(int clientWidth) const;
};

} // namespace vx::dialogs
