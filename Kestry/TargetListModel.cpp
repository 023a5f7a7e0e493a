#include "TargetListModel.h"

#include <algorithm>

namespace Kestry {

int TargetListModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

QVariant TargetListModel::data(const QModelIndex& index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const TargetRow& row = rows_[static_cast<std::size_t>(index.row())];
    switch (role) {
    case RecordIDRole:
        return row.recordID;
    case Qt::DisplayRole:
    case NameRole:
        return row.name;
    case ColorRole:
        return row.color;
    case IsChosenRole:
        return row.isChosen;
    default:
        return {};
    }
}

QHash<int, QByteArray> TargetListModel::roleNames() const
{
    return {{RecordIDRole, "recordID"}, {NameRole, "name"}, {ColorRole, "color"},
        {IsChosenRole, "isChosen"}};
}

void TargetListModel::setRows(std::vector<TargetRow> rows)
{
    if (rows == rows_) {
        return;
    }
    if (!std::ranges::equal(rows, rows_, {}, &TargetRow::recordID, &TargetRow::recordID)) {
        beginResetModel();
        rows_ = std::move(rows);
        endResetModel();
        return;
    }
    rows_ = std::move(rows);
    emit dataChanged(index(0), index(rowCount() - 1));
}

} // namespace Kestry
