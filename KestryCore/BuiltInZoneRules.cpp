#include <unicode/basictz.h>
#include <unicode/timezone.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <utility>

#include "ZoneRules.h"

namespace KestryCore {

namespace {

constexpr double millisecondsPerSecond = 1000.0;

/// Milliseconds since 1970, as the library counts them, to whole ones downwards: it cuts towards
/// zero by itself, which would move an instant before 1970 over a boundary.
UDate milliseconds(Date date)
{
    return std::floor((date.seconds + referenceDateSecondsSince1970) * millisecondsPerSecond);
}

Date dateOf(const icu::TimeZoneTransition& transition)
{
    return Date{transition.getTime() / millisecondsPerSecond - referenceDateSecondsSince1970};
}

class BuiltInRules final : public ZoneRules {
public:
    explicit BuiltInRules(std::unique_ptr<icu::BasicTimeZone> zone) : zone_(std::move(zone)) { }

    [[nodiscard]] ZoneStretch stretchAround(Date date) const override
    {
        constexpr double infinity = std::numeric_limits<double>::infinity();
        ZoneStretch stretch{Date{-infinity}, Date{infinity}, offsetAt(date)};
        icu::TimeZoneTransition transition;
        if (zone_->getPreviousTransition(milliseconds(date), true, transition)) {
            stretch.start = dateOf(transition);
        }
        if (zone_->getNextTransition(milliseconds(date), false, transition)) {
            stretch.end = dateOf(transition);
        }
        return stretch;
    }

private:
    [[nodiscard]] double offsetAt(Date date) const
    {
        std::int32_t raw = 0;
        std::int32_t saving = 0;
        UErrorCode status = U_ZERO_ERROR;
        zone_->getOffset(milliseconds(date), false, raw, saving, status);
        return (raw + saving) / millisecondsPerSecond;
    }

    std::unique_ptr<icu::BasicTimeZone> zone_;
};

} // namespace

std::unique_ptr<const ZoneRules> builtInZoneRules(const std::string& name)
{
    std::unique_ptr<icu::TimeZone> zone(
        icu::TimeZone::createTimeZone(icu::UnicodeString::fromUTF8(name)));
    // Every zone that the library makes is a basic one; its common type merely doesn't say so.
    auto* basic = dynamic_cast<icu::BasicTimeZone*>(zone.get());
    if (basic == nullptr || *zone == icu::TimeZone::getUnknown()) {
        return nullptr;
    }
    (void)zone.release();
    return std::make_unique<BuiltInRules>(std::unique_ptr<icu::BasicTimeZone>(basic));
}

} // namespace KestryCore
