#pragma once

#include <QAbstractListModel>
#include <QtQml/qqmlregistration.h>

#include <algorithm>
#include <utility>
#include <vector>

#include "ListChanges.h"

namespace Kestry {

/// A list model that goes from one list to another in steps, so that views keep their place.
class SteppedListModel : public QAbstractListModel {
    Q_OBJECT
    QML_ANONYMOUS
protected:
    using QAbstractListModel::QAbstractListModel;

    /// Makes `rows` into the rows of `after`, and tells the views of each step. The steps are those
    /// from the one to the other. A row that is in both stays as it was in `rows`.
    template <class Row>
    void carryOut(
        const std::vector<ListStep>& steps, std::vector<Row>& rows, const std::vector<Row>& after);

private:
    template <class Row>
    void carryOut(const ListStep& step, std::vector<Row>& rows, const std::vector<Row>& after);
};

template <class Row>
void SteppedListModel::carryOut(
    const std::vector<ListStep>& steps, std::vector<Row>& rows, const std::vector<Row>& after)
{
    for (const ListStep& step : steps) {
        carryOut(step, rows, after);
    }
}

template <class Row>
void SteppedListModel::carryOut(
    const ListStep& step, std::vector<Row>& rows, const std::vector<Row>& after)
{
    const auto row = rows.begin() + step.row;
    const int last = step.row + step.count - 1;
    switch (step.kind) {
    case ListStep::Kind::remove:
        beginRemoveRows({}, step.row, last);
        rows.erase(row, row + step.count);
        endRemoveRows();
        break;
    case ListStep::Kind::move: {
        // The toolkit counts the row before which the moved one goes, while that is still there.
        beginMoveRows({}, step.row, last, {}, step.to > step.row ? step.to + 1 : step.to);
        const auto place = rows.begin() + step.to;
        if (step.to > step.row) {
            std::rotate(row, row + 1, place + 1);
        } else {
            std::rotate(place, row, row + 1);
        }
        endMoveRows();
        break;
    }
    case ListStep::Kind::insert:
        beginInsertRows({}, step.row, last);
        rows.insert(row, after.begin() + step.row, after.begin() + last + 1);
        endInsertRows();
        break;
    }
}

} // namespace Kestry
