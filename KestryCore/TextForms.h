#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "Ledger.h"

namespace KestryCore {

// Conversion between numbers and text: amounts are fractional US cents and lengths are seconds, and
// nothing is rounded before it is converted here.

/// Shown in rows and cards in place of money at an unknown rate, which is never shown as zero.
inline constexpr const char* rateNotSet = "Rate not set";
/// The same below the name of a client.
inline constexpr const char* hourlyRateNotSet = "Hourly rate not set";

/// Money and rates in the language of one locale, always in US dollars. Construction is slow: make
/// one and keep it. Copies share what they have loaded.
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

/// "07:04:09", "123:00:05": whole seconds, rounded down. A negative length counts as 0; an em dash
/// for one that is not finite or too large.
[[nodiscard]] std::string clockText(double seconds);

/// "12h 5m": whole minutes, rounded down; otherwise as `clockText`.
[[nodiscard]] std::string durationText(double seconds);

// Text for edit fields: the same everywhere, with a decimal point.

/// "150.00"
[[nodiscard]] std::string editRateText(Cents cents);
/// The whole hours: "7".
[[nodiscard]] std::string editHoursText(double seconds);
/// The minutes beyond the whole hours, rounded down to hundredths: "4.15".
[[nodiscard]] std::string editMinutesText(double seconds);

/// Reads an hourly rate in dollars; nullopt for a blank text, which means that no rate is known.
/// Throws LedgerError with the expected form.
[[nodiscard]] std::optional<Cents> readRate(std::string_view text);

/// Reads the two fields of a session's length; returns seconds. Throws LedgerError with the
/// expected form.
[[nodiscard]] double readHoursAndMinutes(std::string_view hours, std::string_view minutes);

/// The same for fields that were opened with the texts of a stored length. When both fields are
/// unchanged, returns exactly the stored length, of which the texts show only a part.
[[nodiscard]] double readHoursAndMinutes(
    std::string_view hours, std::string_view minutes, double openedWithSeconds);

} // namespace KestryCore
