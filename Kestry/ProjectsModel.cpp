#include "ProjectsModel.h"

#include <utility>

namespace Kestry {

namespace {

// More than people change at once. What arrives from other devices may be more.
constexpr std::size_t mostProjectSteps = 64;

std::vector<KestryCore::Uuid> projectIdentifiers(const std::vector<ProjectRow>& rows)
{
    std::vector<KestryCore::Uuid> result;
    result.reserve(rows.size());
    for (const ProjectRow& row : rows) {
        result.push_back(row.id);
    }
    return result;
}

} // namespace

void ProjectsModel::show(std::vector<ProjectRow> rows)
{
    const auto steps =
        listSteps(projectIdentifiers(rows_), projectIdentifiers(rows), mostProjectSteps);
    if (!steps) {
        beginResetModel();
        rows_ = std::move(rows);
        endResetModel();
        return;
    }
    carryOut(*steps, rows_, rows);
    for (std::size_t row = 0; row < rows.size(); ++row) {
        if (rows_[row] != rows[row]) {
            rows_[row] = std::move(rows[row]);
            const QModelIndex changed = index(static_cast<int>(row));
            emit dataChanged(changed, changed);
        }
    }
}

int ProjectsModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

QVariant ProjectsModel::data(const QModelIndex& index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const ProjectRow& row = rows_[static_cast<std::size_t>(index.row())];
    switch (role) {
    case RecordIDRole:
        return QString::fromStdString(row.id.text());
    case Qt::DisplayRole:
    case NameRole:
        return row.name;
    case CountRole:
        return row.count;
    case RateRole:
        return row.rate;
    case SpokenRole:
        return row.spoken;
    default:
        return {};
    }
}

QHash<int, QByteArray> ProjectsModel::roleNames() const
{
    return {{RecordIDRole, "recordID"}, {NameRole, "name"}, {CountRole, "count"},
        {RateRole, "rate"}, {SpokenRole, "spoken"}};
}

} // namespace Kestry
