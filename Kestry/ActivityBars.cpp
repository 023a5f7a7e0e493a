#include "ActivityBars.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace Kestry {

using KestryCore::ActivityBar;
using KestryCore::ActivityLook;
using KestryCore::Date;

namespace {

ActivityBars::Look lookOf(const ActivityBar& bar, Date today)
{
    switch (bar.look(today)) {
    case ActivityLook::later:
        return ActivityBars::Later;
    case ActivityLook::today:
        return ActivityBars::Today;
    case ActivityLook::busy:
        return ActivityBars::Busy;
    case ActivityLook::idle:
        break;
    }
    return ActivityBars::Idle;
}

/// Whether two bars of one day look the same.
bool looksSame(const ActivityBar& left, const ActivityBar& right)
{
    const auto minutes = [](const ActivityBar& bar) { return std::floor(bar.day.seconds / 60.0); };
    return left.maximumHours == right.maximumHours && minutes(left) == minutes(right)
        && (left.day.seconds > 0.0) == (right.day.seconds > 0.0);
}

} // namespace

bool ActivityBars::isSameMonth(const std::vector<ActivityBar>& bars) const
{
    return std::ranges::equal(
        bars_, bars, {}, [](const ActivityBar& bar) { return bar.day.date; },
        [](const ActivityBar& bar) { return bar.day.date; });
}

void ActivityBars::show(std::vector<ActivityBar> bars, Date today, const KestryCore::DayText& days)
{
    const bool hasSameWords = days_ == days;
    days_ = days;
    if (!isSameMonth(bars)) {
        beginResetModel();
        bars_ = std::move(bars);
        today_ = today;
        endResetModel();
        return;
    }
    const std::vector<ActivityBar> before = std::exchange(bars_, std::move(bars));
    const Date todayBefore = std::exchange(today_, today);
    for (std::size_t row = 0; row < bars_.size(); ++row) {
        if (!hasSameWords || !looksSame(before[row], bars_[row])
            || lookOf(before[row], todayBefore) != lookOf(bars_[row], today)) {
            const QModelIndex changed = index(static_cast<int>(row));
            emit dataChanged(changed, changed);
        }
    }
}

int ActivityBars::firstRow() const
{
    const auto found = std::ranges::find_if(
        bars_, [this](const ActivityBar& bar) { return bar.day.date == today_; });
    if (found != bars_.end()) {
        return static_cast<int>(found - bars_.begin());
    }
    return bars_.empty() ? -1 : 0;
}

int ActivityBars::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(bars_.size());
}

QVariant ActivityBars::data(const QModelIndex& index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const ActivityBar& bar = bars_[static_cast<std::size_t>(index.row())];
    switch (role) {
    case BarHeightRole:
        return bar.height();
    case LookRole:
        return lookOf(bar, today_);
    case Qt::DisplayRole:
    case LabelRole:
        return QString::fromStdString(bar.text(*days_));
    default:
        return {};
    }
}

QHash<int, QByteArray> ActivityBars::roleNames() const
{
    return {{BarHeightRole, "barHeight"}, {LookRole, "look"}, {LabelRole, "label"}};
}

} // namespace Kestry
