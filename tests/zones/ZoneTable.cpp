// Tells what the calendar of a time zone makes of days and moments, to be compared with another
// program's reading of the same zone files. A request is a line: the zone's name and the number of
// moments asked about, which follow as bytes. The answer is a line with the number of bytes, and
// the bytes: numbers of eight bytes, then the texts of the moments, one in each line.

#include <algorithm>
#include <cstdint>
#include <iostream>
#include <optional>
#include <string>
#include <vector>

#include "Instants.h"
#include "ZoneCalendar.h"

namespace {

using KestryCore::CalendarDay;
using KestryCore::Date;
using KestryCore::ZoneCalendar;

constexpr int firstYear = 1970;
constexpr int endYear = 2200;

/// In whole seconds since 1970, which every moment here has.
std::int64_t unixSeconds(Date date)
{
    return static_cast<std::int64_t>(date.seconds + KestryCore::referenceDateSecondsSince1970);
}

Date dateOf(std::int64_t seconds)
{
    return Date{static_cast<double>(seconds) - KestryCore::referenceDateSecondsSince1970};
}

class Answer {
public:
    explicit Answer(const std::string& zone) : calendar_(zone, "en_US") { }

    /// The first moment of every day, what the clocks show then, and the moment of its noon.
    void tellDays()
    {
        for (CalendarDay day{firstYear, 1, 1}; day.year < endYear; day = daysAfter(day, 1)) {
            const Date start = calendar_.startOfDay(day);
            put(start);
            put(dateInUtc(calendar_.wallTime(start)));
            put(calendar_.date({day, 12, 0, 0.0}));
        }
    }

    /// The days as they follow one another.
    void tellDayList()
    {
        std::vector<Date> starts{calendar_.startOfDay(CalendarDay{firstYear, 1, 1})};
        const Date end = calendar_.startOfDay(CalendarDay{endYear, 1, 1});
        while (starts.back() < end) {
            starts.push_back(calendar_.startOfNextDay(starts.back()).value());
        }
        numbers_.push_back(static_cast<std::int64_t>(starts.size()));
        std::ranges::for_each(starts, [this](Date start) { put(start); });
    }

    void tellMoments(const std::vector<std::int64_t>& moments)
    {
        for (const std::int64_t moment : moments) {
            const Date date = dateOf(moment);
            put(calendar_.startOfDay(date));
            put(calendar_.startOfNextDay(date).value());
            // The moment at which the clocks show what those in UTC show now.
            put(calendar_.date(utc_.wallTime(date)));
            texts_ += Kestry::instantText(date, calendar_) + "\n";
        }
    }

    void write(std::ostream& output) const
    {
        const std::size_t size = numbers_.size() * sizeof(std::int64_t);
        output << size + texts_.size() << "\n";
        output.write(
            reinterpret_cast<const char*>(numbers_.data()), static_cast<std::streamsize>(size));
        output << texts_ << std::flush;
    }

private:
    static constexpr std::int64_t never = INT64_MIN;

    void put(std::optional<Date> date) { numbers_.push_back(date ? unixSeconds(*date) : never); }

    ZoneCalendar calendar_;
    ZoneCalendar utc_{"UTC", "en_US"};
    std::vector<std::int64_t> numbers_;
    std::string texts_;
};

} // namespace

int main()
{
    std::string zone;
    std::size_t count = 0;
    while (std::cin >> zone >> count) {
        std::cin.get();
        std::vector<std::int64_t> moments(count);
        std::cin.read(reinterpret_cast<char*>(moments.data()),
            static_cast<std::streamsize>(count * sizeof(std::int64_t)));
        Answer answer(zone);
        answer.tellDays();
        answer.tellDayList();
        answer.tellMoments(moments);
        answer.write(std::cout);
    }
}
