#include "SessionColumn.h"

namespace Kestry {

using KestryCore::SessionSort;
using KestryCore::SessionSortField;

namespace {

QString nameOf(SessionSortField field)
{
    switch (field) {
    case SessionSortField::title:
        return "Session";
    case SessionSortField::date:
        return "Date";
    case SessionSortField::duration:
        return "Duration";
    case SessionSortField::value:
        break;
    }
    return "Value";
}

QString direction(bool ascending)
{
    return ascending ? "ascending" : "descending";
}

} // namespace

SessionColumn sessionColumn(SessionSortField field, const SessionSort& sort)
{
    SessionSort pressed = sort;
    pressed.select(field);
    SessionColumn column;
    column.field = static_cast<int>(field);
    column.name = nameOf(field);
    column.isActive = field == sort.field;
    column.label = "Sort by " + column.name;
    column.hint = "Activate to sort " + direction(pressed.ascending);
    if (column.isActive) {
        column.symbol = sort.ascending ? "chevron.up" : "chevron.down";
        column.value = "Sorted " + direction(sort.ascending);
    } else {
        column.symbol = "arrow.up.arrow.down";
        column.value = "Not sorted";
    }
    return column;
}

} // namespace Kestry
