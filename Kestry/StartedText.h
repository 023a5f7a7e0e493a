#pragma once

#include <QLocale>
#include <QString>

#include <optional>

#include "Date.h"
#include "ZoneCalendar.h"

namespace Kestry {

/// The start of a session as a text that people read and type, in the user's locale.
class StartedText {
public:
    explicit StartedText(QLocale locale);

    /// Date and time to the minute, the year in four digits: "3/14/2026, 9:26 AM".
    [[nodiscard]] QString text(
        KestryCore::Date date, const KestryCore::ZoneCalendar& calendar) const;

    /// Reads what `text` writes, and what people type: "3/14 9:26", "yesterday 14:30", "14:30"
    /// today, "-2h" before `now`, and all that kestryctl reads. The date has the order of the
    /// locale, or year, month, day. A year of two digits, or without a year, is the latest that is
    /// not in the future. A time that the clocks show twice is the first of the two, or the second
    /// where `beside` is in the same second hour. Throws LedgerError with an example for anything
    /// else, and for a time that the clocks skip.
    [[nodiscard]] KestryCore::Date read(const QString& text, KestryCore::Date now,
        const KestryCore::ZoneCalendar& calendar,
        const std::optional<KestryCore::Date>& beside = std::nullopt) const;

private:
    [[nodiscard]] std::optional<KestryCore::CalendarDay> readDay(
        const QString& words, const KestryCore::CalendarDay& today) const;
    /// A text of the locale in a form that kestryctl reads as well.
    [[nodiscard]] QString commonForm(
        const QString& words, const KestryCore::CalendarDay& today) const;
    [[nodiscard]] QString commonTime(const QString& words) const;

    QLocale locale_;
    QString dateFormat_;
    QString timeFormat_;
    QString order_; ///< "d", "M" and "y" in the order of the locale.
};

} // namespace Kestry
