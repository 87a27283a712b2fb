#include "journal_filter.h"

#include <algorithm>
#include <array>

#include "config/text_codec.h"
#include "platform/text_mode.h"

namespace vx::journal {

namespace {

std::string cp1251(const char* utf8)
{
    return config::utf8ToCp1251(utf8);
}

// Windows-1251 to its small letters: Latin, Russian, and the other Cyrillic
// letters of the code page.
const std::array<unsigned char, 256>& smallLetters()
{
    static const std::array<unsigned char, 256> table = [] {
        std::array<unsigned char, 256> t{};
        for (int c = 0; c < 256; ++c)
            t[static_cast<std::size_t>(c)] = static_cast<unsigned char>(c);
        for (int c = 'A'; c <= 'Z'; ++c)
            t[static_cast<std::size_t>(c)] = static_cast<unsigned char>(c + 0x20);
        for (int c = 0xc0; c <= 0xdf; ++c)
            t[static_cast<std::size_t>(c)] = static_cast<unsigned char>(c + 0x20);
        const unsigned char pairs[][2] = {{0x80, 0x90}, {0x81, 0x83}, {0x8a, 0x9a}, {0x8c, 0x9c}, {0x8d, 0x9d},
                                          {0x8e, 0x9e}, {0x8f, 0x9f}, {0xa1, 0xa2}, {0xa3, 0xbc}, {0xa5, 0xb4},
                                          {0xa8, 0xb8}, {0xaa, 0xba}, {0xaf, 0xbf}, {0xb2, 0xb3}, {0xbd, 0xbe}};
        for (const auto& pair : pairs)
            t[pair[0]] = pair[1];
        return t;
    }();
    return table;
}

} // namespace

LineLook lookOf(LineKind kind)
{
    switch (kind) {
    case kindTrace: return {{0x8a, 0x8a, 0x8a}, {}, false};
    case kindDebug: return {{0x4f, 0x6d, 0x8f}, {}, false};
    case kindInfo: return {{0x20, 0x20, 0x20}, {}, false};
    case kindWarning: return {{0xa8, 0x5c, 0x00}, Colour{0xff, 0xf6, 0xe0}, false};
    case kindError: return {{0xc0, 0x10, 0x10}, Colour{0xfd, 0xec, 0xec}, true};
    case kindCritical: return {{0xff, 0xff, 0xff}, Colour{0xb0, 0x10, 0x10}, true};
    case kindPlain: return {{0x1b, 0x6e, 0x2a}, {}, false};
    case kindStandardError: return {{0x9c, 0x1c, 0x8c}, Colour{0xfd, 0xec, 0xec}, false};
    default: return {{0x50, 0x50, 0x50}, {}, false};
    }
}

const JournalCaptions& captions()
{
    static const JournalCaptions texts{cp1251("Журнал Vexlane"), cp1251("Журнал"),      cp1251(" Файл: "),
                                       cp1251("  Уровень: "),    cp1251("Поиск по тексту…"), cp1251("Копировать"),
                                       cp1251("Выделить всё")};
    return texts;
}

std::string windowTitle(const std::string& fileText)
{
    return captions().title + " - " + fileText;
}

std::string countsText(std::size_t shown, std::size_t total)
{
    return cp1251("Показано строк: ") + std::to_string(shown) + cp1251(" из ") + std::to_string(total);
}

const std::vector<LevelChoice>& levelChoices()
{
    static const std::vector<LevelChoice> choices{
        {cp1251("Все записи"), 0},     {cp1251("DEBUG и выше"), 1},   {cp1251("INFO и выше"), 2},
        {cp1251("WARNING и выше"), 3}, {cp1251("ERROR и выше"), 4}, {cp1251("Только CRITICAL"), 5},
    };
    return choices;
}

std::vector<std::filesystem::path> logFileNames(const std::filesystem::path& folder)
{
    std::vector<std::filesystem::path> names;
    std::error_code ec;
    for (std::filesystem::directory_iterator it(folder, ec), end; !ec && it != end; it.increment(ec)) {
        const std::filesystem::path name = it->path().filename();
        std::error_code kindError;
        if (name.extension() == ".txt" && name != systemLogName && it->is_regular_file(kindError))
            names.push_back(name);
    }
    std::sort(names.begin(), names.end());
    names.insert(names.begin(), systemLogName);
    return names;
}

bool containsIgnoringCase(const std::string& text, const std::string& search)
{
    if (search.empty())
        return true;
    const auto& small = smallLetters();
    const auto same = [&small](char a, char b) {
        return small[static_cast<unsigned char>(a)] == small[static_cast<unsigned char>(b)];
    };
    return std::search(text.begin(), text.end(), search.begin(), search.end(), same) != text.end();
}

bool passes(const LineFilter& filter, LineKind kind, const std::string& line)
{
    return filterLevelOf(kind) >= filter.lowestLevel && containsIgnoringCase(line, filter.search);
}

std::size_t JournalLines::append(const std::vector<std::string>& lines)
{
    const std::size_t shownBefore = shown_.size();
    for (const std::string& line : lines) {
        entries_.push_back({kindOfLine(line), line});
        if (accepts(entries_.size() - 1))
            shown_.push_back(entries_.size() - 1);
    }
    return shown_.size() - shownBefore;
}

void JournalLines::clear()
{
    entries_.clear();
    shown_.clear();
}

void JournalLines::setFilter(LineFilter filter)
{
    filter_ = std::move(filter);
    shown_.clear();
    for (std::size_t i = 0; i < entries_.size(); ++i)
        if (accepts(i))
            shown_.push_back(i);
}

bool JournalLines::accepts(std::size_t index) const
{
    const Entry& e = entries_[index];
    return passes(filter_, e.kind, e.text);
}

std::optional<std::size_t> JournalLines::rowOfEntry(std::size_t index) const
{
    const auto it = std::lower_bound(shown_.begin(), shown_.end(), index);
    if (it == shown_.end() || *it != index)
        return std::nullopt;
    return static_cast<std::size_t>(it - shown_.begin());
}

std::string JournalLines::copyText(std::vector<std::size_t> entries) const
{
    std::sort(entries.begin(), entries.end());
    std::string text;
    for (const std::size_t index : entries)
        if (index < entries_.size())
            text += entries_[index].text + platform::textLineEnd;
    return text;
}

} // namespace vx::journal
