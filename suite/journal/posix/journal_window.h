#pragma once
// The journal viewer's window: one log file of the log folder, followed as it
// grows, with a lowest level, a search text and a copy of the chosen lines.
#include <QMainWindow>
#include <filesystem>
#include <memory>
#include <vector>

#include "journal_lines.h"

class QComboBox;
class QLabel;
class QLineEdit;
class QListView;
class QTimer;

namespace vx::journal {

class JournalModel;
class JournalFilter;

class JournalWindow : public QMainWindow {
    Q_OBJECT
public:
    // `logFolder`: the manager's systemLogPath; the system log is shown first.
    explicit JournalWindow(const QString& logFolder, QWidget* parent = nullptr);
    ~JournalWindow() override;

    // Reads what was added to the file since the last look.
    void refresh();
    // What a copy of the chosen lines puts on the clipboard.
    QString selectedText() const;
    QListView* view() const { return view_; }

private:
    void openFile(int index);
    void fillFileList();
    void copySelection();
    void updateCounts();

    QString folder_;
    std::vector<std::filesystem::path> names_;
    std::unique_ptr<LogFollower> follower_;
    JournalModel* model_ = nullptr;
    JournalFilter* filter_ = nullptr;
    QListView* view_ = nullptr;
    QComboBox* files_ = nullptr;
    QComboBox* level_ = nullptr;
    QLineEdit* search_ = nullptr;
    QLabel* counts_ = nullptr;
    QTimer* timer_ = nullptr;
};

} // namespace vx::journal
