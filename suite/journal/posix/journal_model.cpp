#include "journal_model.h"

#include <QBrush>
#include <QColor>
#include <QFont>

#include "config/text_codec.h"

namespace vx::journal {

namespace {

QColor qtColour(const Colour& c)
{
    return QColor(c.red, c.green, c.blue);
}

} // namespace

QString qtText(const std::string& cp1251)
{
    return QString::fromStdU16String(config::cp1251ToUtf16(cp1251));
}

int JournalModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(lines_.totalCount());
}

QVariant JournalModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || index.row() >= static_cast<int>(lines_.totalCount()))
        return {};
    const JournalLines::Entry& e = lines_.entry(static_cast<std::size_t>(index.row()));
    const LineLook look = lookOf(e.kind);
    switch (role) {
    case Qt::DisplayRole:
        return qtText(e.text);
    case Qt::ForegroundRole:
        return QBrush(qtColour(look.text));
    case Qt::BackgroundRole:
        if (look.background)
            return QBrush(qtColour(*look.background));
        return {};
    case Qt::FontRole:
        if (look.bold) {
            QFont bold;
            bold.setBold(true);
            return bold;
        }
        return {};
    default:
        return {};
    }
}

void JournalModel::append(const std::vector<std::string>& lines)
{
    if (lines.empty())
        return;
    const int first = static_cast<int>(lines_.totalCount());
    beginInsertRows({}, first, first + static_cast<int>(lines.size()) - 1);
    lines_.append(lines);
    endInsertRows();
}

void JournalModel::clear()
{
    beginResetModel();
    lines_.clear();
    endResetModel();
}

JournalFilter::JournalFilter(JournalModel* model, QObject* parent) : QSortFilterProxyModel(parent), model_(model)
{
    setSourceModel(model);
}

void JournalFilter::setLowestLevel(int level)
{
    LineFilter filter = model_->lines().filter();
    filter.lowestLevel = level;
    model_->lines().setFilter(std::move(filter));
    invalidateFilter();
}

void JournalFilter::setSearchText(const QString& text)
{
    LineFilter filter = model_->lines().filter();
    filter.search = config::utf16ToCp1251(text.toStdU16String());
    model_->lines().setFilter(std::move(filter));
    invalidateFilter();
}

bool JournalFilter::filterAcceptsRow(int row, const QModelIndex& parent) const
{
    return !parent.isValid() && model_->lines().accepts(static_cast<std::size_t>(row));
}

} // namespace vx::journal
