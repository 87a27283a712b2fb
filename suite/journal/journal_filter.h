#pragma once
// What the journal viewer shows, whatever draws it: the lines read so far,
// the filter in front of them (a lowest level and a search text), the look
// of each kind of line, the text a copy puts on the clipboard, and the
// window's captions. Every text here is Windows-1251, as the log is.
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "journal_lines.h"

namespace vx::journal {

struct Colour {
    std::uint8_t red = 0;
    std::uint8_t green = 0;
    std::uint8_t blue = 0;
};

// How a line of a kind is drawn: the list's own background when none is given.
struct LineLook {
    Colour text;
    std::optional<Colour> background;
    bool bold = false;
};
LineLook lookOf(LineKind kind);

// The captions of the window.
struct JournalCaptions {
    std::string title;        // "Журнал Vexlane"
    std::string toolBar;      // "Журнал"
    std::string fileLabel;    // " Файл: "
    std::string levelLabel;   // "  Уровень: "
    std::string searchHint;   // "Поиск по тексту…"
    std::string copy;         // "Копировать"
    std::string selectAll;    // "Выделить всё"
};
const JournalCaptions& captions();

// The title once a file is open: the caption, " - ", the file's full name.
std::string windowTitle(const std::string& fileText);
// The status line: "Показано строк: <shown> из <total>".
std::string countsText(std::size_t shown, std::size_t total);

// The level filter's items, in their order: the caption and the lowest
// level a line needs to stay in view.
struct LevelChoice {
    std::string caption;
    int lowestLevel = 0;
};
const std::vector<LevelChoice>& levelChoices();

// The log the viewer opens first.
inline constexpr const char* systemLogName = "VexlaneLog.txt";
// The logs of the folder the viewer offers: the system log first, then the
// other ".txt" files (perf.txt, the streams' logs) by name.
std::vector<std::filesystem::path> logFileNames(const std::filesystem::path& folder);

struct LineFilter {
    int lowestLevel = 0;
    std::string search;   // empty: every line; otherwise found ignoring case
};

// True when `line` of `kind` passes the filter.
bool passes(const LineFilter& filter, LineKind kind, const std::string& line);
// True when `text` holds `search`, Latin and Cyrillic letters ignoring case.
bool containsIgnoringCase(const std::string& text, const std::string& search);

// The lines of one log as read so far, and those of them the filter lets
// through ("shown", in the order of the file).
class JournalLines {
public:
    struct Entry {
        LineKind kind = kindOther;
        std::string text;
    };

    // Lines as they stand in the file; returns how many of them are shown.
    std::size_t append(const std::vector<std::string>& lines);
    void clear();
    void setFilter(LineFilter filter);
    const LineFilter& filter() const { return filter_; }

    std::size_t totalCount() const { return entries_.size(); }
    const Entry& entry(std::size_t index) const { return entries_[index]; }
    bool accepts(std::size_t index) const;

    std::size_t shownCount() const { return shown_.size(); }
    // The entry behind a shown row, and the row of a shown entry.
    std::size_t entryOfRow(std::size_t row) const { return shown_[row]; }
    std::optional<std::size_t> rowOfEntry(std::size_t index) const;
    std::string countsText() const { return journal::countsText(shownCount(), totalCount()); }

    // What a copy of the chosen entries puts on the clipboard: their texts
    // in the order of the file, each with the platform's line end.
    std::string copyText(std::vector<std::size_t> entries) const;

private:
    std::vector<Entry> entries_;
    std::vector<std::size_t> shown_;
    LineFilter filter_;
};

} // namespace vx::journal
