#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "Ledger.h"

namespace KestryCore {

// The border between numbers and text: amounts are held as fractional US cents and lengths as
// seconds, and nothing is rounded before it crosses here.

/// What stands in rows and cards instead of the money that comes of no known rate, which is never
/// shown as nothing.
inline constexpr const char* rateNotSet = "Rate not set";
/// The same below a client's name.
inline constexpr const char* hourlyRateNotSet = "Hourly rate not set";

/// Money and rates in the words of one locale, always in US dollars. Copies share what they have
/// loaded; make one and keep it, for making one is slow.
class MoneyText {
public:
    /// `locale` is a name such as "de_DE".
    explicit MoneyText(const std::string& locale);

    /// With two decimals: "$1,234.50". Halves are rounded away from zero.
    [[nodiscard]] std::string money(double cents) const;
    /// Without decimals: "$1,235".
    [[nodiscard]] std::string wholeMoney(double cents) const;
    /// "$150.00 / hour"
    [[nodiscard]] std::string rateLong(Cents cents) const;
    /// "$150.00 / hr"
    [[nodiscard]] std::string rateShort(Cents cents) const;
    /// "$150/hr", "$150.50/hr": decimals only where there are cents.
    [[nodiscard]] std::string rateCompact(Cents cents) const;

private:
    struct Formats;
    std::shared_ptr<const Formats> formats_;
};

/// "07:04:09", "123:00:05": whole seconds, cut off; a negative length counts as 0, and what is
/// not finite or beyond counting is an em dash.
[[nodiscard]] std::string clockText(double seconds);

/// "12h 5m": whole minutes, cut off; otherwise as `clockText`.
[[nodiscard]] std::string durationText(double seconds);

// Text for edit fields: the same everywhere, with a decimal point.

/// "150.00"
[[nodiscard]] std::string editRateText(Cents cents);
/// The whole hours: "7".
[[nodiscard]] std::string editHoursText(double seconds);
/// The minutes beyond the whole hours, rounded down to hundredths: "4.15".
[[nodiscard]] std::string editMinutesText(double seconds);

/// Reads an hourly rate in dollars; none for a blank text, which says that no rate is known. Fails
/// with a `LedgerError` that tells the form.
[[nodiscard]] std::optional<Cents> readRate(std::string_view text);

/// Reads the two fields of a session's length; seconds. Fails with a `LedgerError` that tells the
/// form.
[[nodiscard]] double readHoursAndMinutes(std::string_view hours, std::string_view minutes);

/// The same for fields that were opened with the texts of a stored length: where both still hold
/// these, it is the stored length exactly, which the texts tell only in part.
[[nodiscard]] double readHoursAndMinutes(
    std::string_view hours, std::string_view minutes, double openedWithSeconds);

} // namespace KestryCore
