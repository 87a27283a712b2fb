#pragma once
// The journal viewer's window: one log file of the log folder, followed as it
// grows, with a lowest level, a search text and a copy of the chosen lines.
// The controls come from the dialog resource IDD_JOURNAL; what they show
// comes from JournalLines.
#include <windows.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "journal_filter.h"
#include "journal_lines.h"

namespace vx::journal {

class JournalWindow {
public:
    // `logFolder`: the manager's systemLogPath; the system log is shown first.
    explicit JournalWindow(std::filesystem::path logFolder);
    ~JournalWindow();
    JournalWindow(const JournalWindow&) = delete;
    JournalWindow& operator=(const JournalWindow&) = delete;

    // Creates the window and shows it; false when the resource can't be had.
    bool open(HINSTANCE instance, int show);
    HWND window() const { return window_; }

private:
    static INT_PTR CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    INT_PTR handle(UINT message, WPARAM wParam, LPARAM lParam);
    void initialise();
    LRESULT notify(const NMHDR& header, LPARAM lParam);
    void command(int id, int code);
    void layOut();

    void openFile(std::size_t index);
    // Reads what was added to the file since the last look.
    void refresh();
    void applyFilter(LineFilter filter);
    void showRows(bool toEnd);
    void fitColumn();
    void updateCounts();
    std::vector<std::size_t> selectedEntries() const;
    void copySelection();
    void selectAll();
    void showMenu(LPARAM at);

    std::filesystem::path folder_;
    std::vector<std::filesystem::path> names_;
    std::unique_ptr<LogFollower> follower_;
    JournalLines lines_;
    std::size_t longest_ = 0;   // the longest line so far, in characters
    HWND window_ = nullptr;
    HWND list_ = nullptr;
    HWND counts_ = nullptr;
    HFONT font_ = nullptr;
    HFONT boldFont_ = nullptr;
    int charWidth_ = 1;   // the fixed font's widest average, in pixels
    std::wstring shownText_;   // the text the list asked for last
};

} // namespace vx::journal
