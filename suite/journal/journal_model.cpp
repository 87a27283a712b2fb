#include "journal_model.h"

#include <QBrush>
#include <QColor>
#include <QFont>

#include "config/text_codec.h"

namespace vx::journal {

namespace {

QColor textColour(LineKind kind)
{
    switch (kind) {
    case kindTrace: return QColor(0x8a, 0x8a, 0x8a);
    case kindDebug: return QColor(0x4f, 0x6d, 0x8f);
    case kindInfo: return QColor(0x20, 0x20, 0x20);
    case kindWarning: return QColor(0xa8, 0x5c, 0x00);
    case kindError: return QColor(0xc0, 0x10, 0x10);
    case kindCritical: return QColor(0xff, 0xff, 0xff);
    case kindPlain: return QColor(0x1b, 0x6e, 0x2a);
    case kindStandardError: return QColor(0x9c, 0x1c, 0x8c);
    default: return QColor(0x50, 0x50, 0x50);
    }
}

} // namespace

int JournalModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(entries_.size());
}

QVariant JournalModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || index.row() >= static_cast<int>(entries_.size()))
        return {};
    const Entry& e = entries_[static_cast<std::size_t>(index.row())];
    switch (role) {
    case Qt::DisplayRole:
        return e.text;
    case Qt::ForegroundRole:
        return QBrush(textColour(e.kind));
    case Qt::BackgroundRole:
        if (e.kind == kindCritical)
            return QBrush(QColor(0xb0, 0x10, 0x10));
        if (e.kind == kindError || e.kind == kindStandardError)
            return QBrush(QColor(0xfd, 0xec, 0xec));
        if (e.kind == kindWarning)
            return QBrush(QColor(0xff, 0xf6, 0xe0));
        return {};
    case Qt::FontRole:
        if (e.kind == kindError || e.kind == kindCritical) {
            QFont bold;
            bold.setBold(true);
            return bold;
        }
        return {};
    case filterLevelRole:
        return filterLevelOf(e.kind);
    default:
        return {};
    }
}

void JournalModel::append(const std::vector<std::string>& lines)
{
    if (lines.empty())
        return;
    const int first = static_cast<int>(entries_.size());
    beginInsertRows({}, first, first + static_cast<int>(lines.size()) - 1);
    for (const std::string& line : lines)
        entries_.push_back({kindOfLine(line), QString::fromStdU16String(config::cp1251ToUtf16(line))});
    endInsertRows();
}

void JournalModel::clear()
{
    beginResetModel();
    entries_.clear();
    endResetModel();
}

void JournalFilter::setLowestLevel(int level)
{
    lowestLevel_ = level;
    invalidateFilter();
}

void JournalFilter::setSearchText(const QString& text)
{
    search_ = text;
    invalidateFilter();
}

bool JournalFilter::filterAcceptsRow(int row, const QModelIndex& parent) const
{
    const QModelIndex index = sourceModel()->index(row, 0, parent);
    if (index.data(JournalModel::filterLevelRole).toInt() < lowestLevel_)
        return false;
    return search_.isEmpty() || index.data(Qt::DisplayRole).toString().contains(search_, Qt::CaseInsensitive);
}

} // namespace vx::journal
