#include "StartedText.h"

#include <QDate>
#include <QRegularExpression>
#include <QTime>

#include <cmath>
#include <utility>

#include "Instants.h"
#include "LedgerError.h"
#include "UsageError.h"

namespace Kestry {

using KestryCore::CalendarDay;
using KestryCore::Date;
using KestryCore::WallTime;
using KestryCore::ZoneCalendar;

namespace {

/// Digits of all scripts become 0 to 9, all blanks a plain one; marks of direction go.
QString plain(const QString& text)
{
    QString result;
    for (const char32_t each : text.trimmed().toUcs4()) {
        if (QChar::digitValue(each) >= 0) {
            result += QString::number(QChar::digitValue(each));
        } else if (QChar::isSpace(each)) {
            result += ' ';
        } else if (QChar::category(each) != QChar::Other_Format) {
            result += QStringView(QChar::fromUcs4(each));
        }
    }
    return result;
}

/// Where the day ends and the time begins: at the last comma or blank before the time.
QRegularExpressionMatch dayAndTime(const QString& words)
{
    static const QRegularExpression form(
        QStringLiteral("^(.*?[^\\s,،]),?،?\\s+(\\d{1,2}[:.]\\d{2}(?!\\d).*|\\d{1,2}\\s*\\D+)$"));
    return form.match(words);
}

/// Whether a text means the same on all clocks: "-2h", or a time with its zone.
bool namesOneMoment(const QString& words)
{
    static const QRegularExpression form("^-|[Zz]$|\\d[+-]\\d{2}(:?\\d{2})?$");
    return form.match(words).hasMatch();
}

/// The moment at which the clocks show the same again as at `first`, if `beside` is in the same
/// second hour; `first` if not.
Date showingBeside(Date beside, Date first, const ZoneCalendar& calendar)
{
    const Date before = calendar.date(calendar.wallTime(beside)).value_or(beside);
    const double hour = std::round(beside - before);
    const Date second = first + hour;
    const bool isSame =
        std::abs(second - beside) < hour && calendar.wallTime(second) == calendar.wallTime(first);
    return isSame ? second : first;
}

} // namespace

StartedText::StartedText(QLocale locale)
    : locale_(std::move(locale)), dateFormat_(plain(locale_.dateFormat(QLocale::ShortFormat))),
      timeFormat_(locale_.timeFormat(QLocale::ShortFormat))
{
    // Only forms that `read` understands are written.
    static const QRegularExpression dateForm(
        "^(?:dd?|MM?|y+)(?:[./ -]{1,3}(?:dd?|MM?|y+)){2}[.]?$");
    static const QRegularExpression timeForm("^[hH]{1,2}[:.]mm(\\s?[aA][pP]?)?$");
    if (!dateForm.match(dateFormat_).hasMatch()) {
        dateFormat_ = "yyyy-MM-dd";
    }
    if (!timeForm.match(timeFormat_).hasMatch()) {
        timeFormat_ = "HH:mm";
    }
    dateFormat_.replace(QRegularExpression("y+"), "yyyy");
    for (const QChar each : std::as_const(dateFormat_)) {
        if (each.isLetter() && !order_.contains(each)) {
            order_ += each;
        }
    }
}

QString StartedText::text(Date date, const ZoneCalendar& calendar) const
{
    const WallTime time = calendar.wallTime(date);
    const QDate day(time.day.year, time.day.month, time.day.day);
    return locale_.toString(day, dateFormat_) + ", "
        + locale_.toString(QTime(time.hour, time.minute), timeFormat_);
}

std::optional<CalendarDay> StartedText::readDay(
    const QString& words, const CalendarDay& today) const
{
    static const QRegularExpression form(
        "^(\\d{1,4})[^\\d\\w]{1,3}(\\d{1,2})(?:[^\\d\\w]{1,3}(\\d{1,4}))?[.]?$");
    const auto match = form.match(words);
    if (!match.hasMatch()) {
        return std::nullopt;
    }
    const bool hasYear = match.hasCaptured(3);
    QString order = match.capturedLength(1) > 2 ? "yMd" : order_;
    if (!hasYear) {
        order.remove('y');
    }
    const auto part = [&](char name) {
        return match.captured(static_cast<int>(order.indexOf(name)) + 1);
    };
    const int month = part('M').toInt();
    const int day = part('d').toInt();
    if (hasYear && part('y').size() > 2) {
        return CalendarDay{part('y').toInt(), month, day};
    }
    // The latest that is not in the future.
    constexpr int century = 100;
    const int step = hasYear ? century : 1;
    int year = hasYear ? today.year - today.year % century + part('y').toInt() : today.year;
    if (CalendarDay{year, month, day} > today) {
        year -= step;
    }
    constexpr int leapDay = 29;
    while (!hasYear && month == 2 && day == leapDay
        && !KestryCore::isCalendarDay({year, month, day})) {
        --year;
    }
    return CalendarDay{year, month, day};
}

QString StartedText::commonTime(const QString& words) const
{
    static const QRegularExpression form("^(\\d{1,2})(?:[:.](\\d{2}))?\\s*(\\D*)$");
    const auto match = form.match(words);
    if (!match.hasMatch()) {
        return words;
    }
    const QString minutes = match.hasCaptured(2) ? ":" + match.captured(2) : QString();
    const QString half = match.captured(3).trimmed();
    const auto is = [&](const QString& name) {
        return !half.isEmpty() && half.compare(plain(name), Qt::CaseInsensitive) == 0;
    };
    return match.captured(1) + minutes
        + (is(locale_.amText())        ? "am"
                : is(locale_.pmText()) ? "pm"
                                       : half);
}

QString StartedText::commonForm(const QString& words, const CalendarDay& today) const
{
    const auto parts = dayAndTime(words);
    if (!parts.hasMatch()) {
        return commonTime(words);
    }
    const auto day = readDay(parts.captured(1), today);
    const QString dayText = day
        ? QString::asprintf("%04d-%02d-%02d", day->year, day->month, day->day)
        : parts.captured(1);
    return dayText + " " + commonTime(parts.captured(2));
}

Date StartedText::read(const QString& text, Date now, const ZoneCalendar& calendar,
    const std::optional<Date>& beside) const
{
    const QString words = plain(text);
    try {
        for (const QString& each : {words, commonForm(words, calendar.day(now))}) {
            if (const auto instant = instantIn(each.toStdString(), now, calendar)) {
                const bool isRepeated = beside && !namesOneMoment(words);
                return isRepeated ? showingBeside(*beside, *instant, calendar) : *instant;
            }
        }
    } catch (const UsageError&) {
        throw KestryCore::LedgerError(
            "The clocks skip that time on that day. Enter a time before or after it.");
    }
    throw KestryCore::LedgerError("Enter a date and time, as in "
        + this->text(now, calendar).toStdString() + ", yesterday 14:30 or -2h.");
}

} // namespace Kestry
