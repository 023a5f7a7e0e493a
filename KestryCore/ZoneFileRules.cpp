#include <absl/time/civil_time.h>
#include <absl/time/internal/cctz/include/cctz/zone_info_source.h>
#include <absl/time/time.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <functional>
#include <limits>
#include <optional>
#include <utility>

#include "ZoneRules.h"

namespace KestryCore {

namespace {

using absl::time_internal::cctz::ZoneInfoSource;

/// Reads a zone file out of its name. The library loads each zone once and keeps it under its
/// name for as long as the process lives; a zone that is named by its content is never out of
/// date, and never that of a file that happens to have the name.
class ContentSource final : public ZoneInfoSource {
public:
    explicit ContentSource(std::string content) : content_(std::move(content)) { }

    std::size_t Read(void* target, std::size_t size) override
    {
        const std::size_t count = std::min(size, content_.size() - place_);
        std::memcpy(target, content_.data() + place_, count);
        place_ += count;
        return count;
    }

    int Skip(std::size_t offset) override
    {
        place_ += std::min(offset, content_.size() - place_);
        return 0;
    }

    static std::unique_ptr<ZoneInfoSource> make(const std::string& name,
        const std::function<std::unique_ptr<ZoneInfoSource>(const std::string&)>&)
    {
        return std::make_unique<ContentSource>(name);
    }

private:
    std::string content_;
    std::size_t place_ = 0;
};

absl::Time moment(Date date)
{
    return absl::FromUnixSeconds(
        static_cast<std::int64_t>(std::floor(date.seconds + referenceDateSecondsSince1970)));
}

/// The instant at which a clock in UTC shows this.
Date dateInUtc(const absl::CivilSecond& time)
{
    return Date{static_cast<double>(time - absl::CivilSecond(2001))};
}

class FileRules final : public ZoneRules {
public:
    explicit FileRules(const absl::TimeZone& zone) : zone_(zone), lastChange_(lastChange(zone)) { }

    [[nodiscard]] ZoneStretch stretchAround(Date date) const override
    {
        // The calendar repeats itself after 400 years, and with it what a rule says.
        constexpr double cycle = 146'097.0 * 86'400.0;
        double shift = 0.0;
        if (lastChange_ && !(date < *lastChange_)) {
            shift = (std::floor((date - *lastChange_) / cycle) + 1.0) * cycle;
        }
        ZoneStretch stretch = listedStretch(date + -shift);
        stretch.start = stretch.start + shift;
        stretch.end = stretch.end + shift;
        return stretch;
    }

private:
    /// The last change of the clocks that the library lists, which is one of 400 years of them,
    /// where they are set for ever.
    static std::optional<Date> lastChange(const absl::TimeZone& zone)
    {
        absl::TimeZone::CivilTransition change;
        const absl::Time end = absl::FromCivil(absl::CivilYear(5000), absl::UTCTimeZone());
        // No file foretells single changes so far.
        constexpr int endOfSingleChanges = 2300;
        if (!zone.PrevTransition(end, &change) || change.from.year() < endOfSingleChanges) {
            return std::nullopt;
        }
        return dateOf(change, zone);
    }

    static Date dateOf(const absl::TimeZone::CivilTransition& change, const absl::TimeZone& zone)
    {
        const absl::TimeZone::TimeInfo times = zone.At(change.to);
        return Date{
            static_cast<double>(absl::ToUnixSeconds(times.trans)) - referenceDateSecondsSince1970};
    }

    [[nodiscard]] ZoneStretch listedStretch(Date date) const
    {
        constexpr double infinity = std::numeric_limits<double>::infinity();
        const absl::Time time = moment(date);
        const double offset = zone_.At(time).offset;
        ZoneStretch stretch{Date{-infinity}, Date{infinity}, offset};
        absl::TimeZone::CivilTransition change;
        // One second later, because a change at this very moment begins the stretch.
        if (zone_.PrevTransition(time + absl::Seconds(1), &change)) {
            stretch.start = dateInUtc(change.to) + -offset;
        }
        if (zone_.NextTransition(time, &change)) {
            stretch.end = dateInUtc(change.from) + -offset;
        }
        return stretch;
    }

    absl::TimeZone zone_;
    std::optional<Date> lastChange_; // none when the clocks are not set any more some day
};

} // namespace

std::unique_ptr<const ZoneRules> zoneFileRules(const std::string& content)
{
    absl::TimeZone zone;
    // Any other text would be a name, of which the library knows some by itself.
    if (!content.starts_with("TZif") || !absl::LoadTimeZone(content, &zone)) {
        return nullptr;
    }
    return std::make_unique<FileRules>(zone);
}

} // namespace KestryCore

// Where the library looks for a program's own way to read zones.
namespace absl {
ABSL_NAMESPACE_BEGIN
namespace time_internal::cctz_extension {

// NOLINTNEXTLINE(readability-identifier-naming,cppcoreguidelines-avoid-non-const-global-variables)
ZoneInfoSourceFactory zone_info_source_factory = KestryCore::ContentSource::make;

} // namespace time_internal::cctz_extension
ABSL_NAMESPACE_END
} // namespace absl
