#pragma once
// The lines of the log as the list shows them (JournalLines), and the filter
// in front of them: which lines pass and how each kind looks are the
// journal library's.
#include <QAbstractListModel>
#include <QSortFilterProxyModel>
#include <QString>
#include <vector>

#include "journal_filter.h"

namespace vx::journal {

class JournalModel : public QAbstractListModel {
    Q_OBJECT
public:
    using QAbstractListModel::QAbstractListModel;

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;

    // Lines in Windows-1251, as they stand in the file.
    void append(const std::vector<std::string>& lines);
    void clear();
    JournalLines& lines() { return lines_; }
    const JournalLines& lines() const { return lines_; }

private:
    JournalLines lines_;
};

class JournalFilter : public QSortFilterProxyModel {
    Q_OBJECT
public:
    explicit JournalFilter(JournalModel* model, QObject* parent = nullptr);
    void setLowestLevel(int level);
    void setSearchText(const QString& text);

protected:
    bool filterAcceptsRow(int row, const QModelIndex& parent) const override;

private:
    JournalModel* model_;
};

// A Windows-1251 text of the journal library, for the toolkit.
QString qtText(const std::string& cp1251);

} // namespace vx::journal
