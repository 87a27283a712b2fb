#pragma once
// The lines of the log as the list shows them, and the filter in front of
// them: a lowest level and a search text.
#include <QAbstractListModel>
#include <QSortFilterProxyModel>
#include <QString>
#include <vector>

#include "journal_lines.h"

namespace vx::journal {

class JournalModel : public QAbstractListModel {
    Q_OBJECT
public:
    using QAbstractListModel::QAbstractListModel;
    static constexpr int filterLevelRole = Qt::UserRole + 1;

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;

    // Lines in Windows-1251, as they stand in the file.
    void append(const std::vector<std::string>& lines);
    void clear();

private:
    struct Entry {
        LineKind kind;
        QString text;
    };
    std::vector<Entry> entries_;
};

class JournalFilter : public QSortFilterProxyModel {
    Q_OBJECT
public:
    using QSortFilterProxyModel::QSortFilterProxyModel;
    void setLowestLevel(int level);
    void setSearchText(const QString& text);

protected:
    bool filterAcceptsRow(int row, const QModelIndex& parent) const override;

private:
    int lowestLevel_ = 0;
    QString search_;
};

} // namespace vx::journal
