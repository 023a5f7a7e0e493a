#include "DayPicker.h"

#include <QDate>

#include <algorithm>
#include <cmath>
#include <utility>

namespace Kestry {

using KestryCore::CalendarDay;
using KestryCore::daysAfter;

namespace {

constexpr int daysInWeek = 7;
constexpr int weeksOnPage = 6;
constexpr int monthsInYear = 12;

/// Days since 2001-01-01, a Monday.
int dayNumber(const CalendarDay& day)
{
    constexpr double secondsInDay = 86400.0;
    return static_cast<int>(
        std::floor(KestryCore::dateInUtc({day, 0, 0, 0.0}).seconds / secondsInDay));
}

/// The number of days by which a day comes after the last `first`, a weekday as Qt counts them:
/// Monday is 1.
int daysIntoWeek(const CalendarDay& day, int first)
{
    const int daysPastMonday = dayNumber(day) % daysInWeek + daysInWeek;
    return (daysPastMonday - (first - 1) + daysInWeek) % daysInWeek;
}

/// The same day of another month, or that month's last.
CalendarDay monthsAfter(const CalendarDay& day, int months)
{
    const int count = day.year * monthsInYear + day.month - 1 + months;
    CalendarDay result{count / monthsInYear, count % monthsInYear + 1, day.day};
    while (!KestryCore::isCalendarDay(result)) {
        --result.day;
    }
    return result;
}

} // namespace

DayPicker::DayPicker(QLocale locale, const CalendarDay& first)
    : locale_(std::move(locale)), first_(first), today_(first), chosen_(first), current_(first),
      pageStart_(first)
{
    locale_.setNumberOptions(QLocale::OmitGroupSeparator);
}

void DayPicker::open(const CalendarDay& chosen, const CalendarDay& today)
{
    today_ = today;
    chosen_ = chosen;
    setCurrent(chosen);
    isOpen_ = true;
    emit openChanged();
}

void DayPicker::close()
{
    if (isOpen_) {
        isOpen_ = false;
        emit openChanged();
    }
}

QString DayPicker::month() const
{
    return locale_.standaloneMonthName(current_.month) + " " + locale_.toString(current_.year);
}

QStringList DayPicker::weekdays() const
{
    QStringList names;
    for (int day = 0; day < daysInWeek; ++day) {
        const int weekday = (locale_.firstDayOfWeek() - 1 + day) % daysInWeek + 1;
        names << locale_.standaloneDayName(weekday, QLocale::ShortFormat);
    }
    return names;
}

int DayPicker::current() const
{
    return dayNumber(current_) - dayNumber(pageStart_);
}

CalendarDay DayPicker::dayOf(int row) const
{
    return daysAfter(pageStart_, row);
}

QString DayPicker::nameOf(const CalendarDay& day) const
{
    return locale_.toString(QDate(day.year, day.month, day.day), QLocale::LongFormat);
}

void DayPicker::setCurrent(const CalendarDay& day)
{
    current_ = std::clamp(day, first_, std::max(first_, today_));
    const CalendarDay monthStart{current_.year, current_.month, 1};
    pageStart_ = daysAfter(monthStart, -daysIntoWeek(monthStart, locale_.firstDayOfWeek()));
    emit dataChanged(index(0), index(rowCount() - 1));
    emit currentChanged();
}

bool DayPicker::press(int key, int modifiers)
{
    const int inWeek = daysIntoWeek(current_, locale_.firstDayOfWeek());
    const int page = (modifiers & Qt::ShiftModifier) != 0 ? monthsInYear : 1;
    switch (key) {
    case Qt::Key_Left:
        setCurrent(daysAfter(current_, -1));
        return true;
    case Qt::Key_Right:
        setCurrent(daysAfter(current_, 1));
        return true;
    case Qt::Key_Up:
        setCurrent(daysAfter(current_, -daysInWeek));
        return true;
    case Qt::Key_Down:
        setCurrent(daysAfter(current_, daysInWeek));
        return true;
    case Qt::Key_Home:
        setCurrent(daysAfter(current_, -inWeek));
        return true;
    case Qt::Key_End:
        setCurrent(daysAfter(current_, daysInWeek - 1 - inWeek));
        return true;
    case Qt::Key_PageUp:
        turn(-page);
        return true;
    case Qt::Key_PageDown:
        turn(page);
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
        choose(current());
        return true;
    case Qt::Key_Escape:
        close();
        return true;
    default:
        return false;
    }
}

void DayPicker::turn(int months)
{
    setCurrent(monthsAfter(current_, months));
}

void DayPicker::choose(int row)
{
    if (!isOpen_ || row < 0 || row >= rowCount() || !isAllowed(dayOf(row))) {
        return;
    }
    const CalendarDay day = dayOf(row);
    close();
    emit chosen(day);
}

int DayPicker::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : weeksOnPage * daysInWeek;
}

QVariant DayPicker::data(const QModelIndex& index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const CalendarDay day = dayOf(index.row());
    switch (role) {
    case Qt::DisplayRole:
    case NumberRole:
        return locale_.toString(day.day);
    case NameRole:
        return nameOf(day);
    case IsInMonthRole:
        return day.month == current_.month && day.year == current_.year;
    case IsAllowedRole:
        return isAllowed(day);
    case IsChosenRole:
        return day == chosen_;
    case IsTodayRole:
        return day == today_;
    default:
        return {};
    }
}

QHash<int, QByteArray> DayPicker::roleNames() const
{
    return {{NumberRole, "number"}, {NameRole, "name"}, {IsInMonthRole, "isInMonth"},
        {IsAllowedRole, "isAllowed"}, {IsChosenRole, "isChosen"}, {IsTodayRole, "isToday"}};
}

} // namespace Kestry
