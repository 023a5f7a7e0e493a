#include "StartedText.h"

#include <QDate>
#include <QRegularExpression>
#include <QTime>

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

std::optional<CalendarDay> validDay(int year, int month, int day)
{
    const CalendarDay found{year, month, day};
    return KestryCore::isCalendarDay(found) ? std::optional(found) : std::nullopt;
}

/// Where the day ends and the time begins: at the last comma or blank before the time.
QRegularExpressionMatch dayAndTime(const QString& words)
{
    static const QRegularExpression form(
        QStringLiteral("^(.*?[^\\s,،]),?،?\\s+(\\d{1,2}[:.]\\d{2}(?!\\d).*|\\d{1,2}\\s*\\D+)$"));
    return form.match(words);
}

std::optional<Date> instantOf(const QString& words, Date now, const ZoneCalendar& calendar)
{
    try {
        return readInstant(words.toStdString(), now, calendar);
    } catch (const UsageError&) {
        return std::nullopt; // another form may fit
    }
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
    if (words.compare("today", Qt::CaseInsensitive) == 0) {
        return today;
    }
    if (words.compare("yesterday", Qt::CaseInsensitive) == 0) {
        return KestryCore::daysAfter(today, -1);
    }
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
        return validDay(part('y').toInt(), month, day);
    }
    // The latest that is not in the future.
    constexpr int century = 100;
    const int step = hasYear ? century : 1;
    int year = hasYear ? today.year - today.year % century + part('y').toInt() : today.year;
    if (CalendarDay{year, month, day} > today) {
        year -= step;
    }
    return validDay(year, month, day);
}

std::optional<QTime> StartedText::readTime(const QString& words) const
{
    static const QRegularExpression form("^(\\d{1,2})(?:[:.](\\d{2}))?\\s*(\\D*)$");
    const auto match = form.match(words);
    if (!match.hasMatch()) {
        return std::nullopt;
    }
    int hour = match.captured(1).toInt();
    const int minute = match.captured(2).toInt();
    const QString half = match.captured(3).trimmed();
    const auto is = [&](const QString& name) {
        return half.compare(plain(name), Qt::CaseInsensitive) == 0;
    };
    if (half.isEmpty()) {
        return match.hasCaptured(2) && hour < 24 ? std::optional(QTime(hour, minute))
                                                 : std::nullopt;
    }
    const bool isAfternoon = is("pm") || is("p.m.") || is("p") || is(locale_.pmText());
    const bool isMorning = is("am") || is("a.m.") || is("a") || is(locale_.amText());
    constexpr int halfDay = 12;
    if (hour < 1 || hour > halfDay || !(isAfternoon || isMorning)) {
        return std::nullopt;
    }
    hour = hour % halfDay + (isAfternoon ? halfDay : 0);
    return QTime(hour, minute);
}

Date StartedText::read(const QString& text, Date now, const ZoneCalendar& calendar) const
{
    const QString words = plain(text);
    if (const auto instant = instantOf(words, now, calendar)) {
        return *instant;
    }
    const CalendarDay today = calendar.day(now);
    const auto parts = dayAndTime(words);
    const auto day = parts.hasMatch() ? readDay(parts.captured(1), today) : today;
    const auto time = readTime(parts.hasMatch() ? parts.captured(2) : words);
    if (!day || !time || !time->isValid()) {
        throw KestryCore::LedgerError("Enter a date and time, as in "
            + this->text(now, calendar).toStdString() + ", yesterday 14:30 or -2h.");
    }
    const auto date = calendar.date({*day, time->hour(), time->minute(), 0.0});
    if (!date) {
        throw KestryCore::LedgerError(
            "The clocks skip that time on that day. Enter a time before or after it.");
    }
    return *date;
}

} // namespace Kestry
