#include "EntryForm.h"

#include <algorithm>
#include <cmath>

#include "RecordValidation.h"

namespace Kestry {

using KestryCore::CalendarDay;
using KestryCore::Date;
using KestryCore::LedgerError;
using KestryCore::WallTime;

namespace {

constexpr double secondsInHour = 3600.0;
constexpr double secondsInMinute = 60.0;

QString wholeText(double number)
{
    return QString::number(static_cast<qint64>(number));
}

/// The moment at which the clocks show a time; where they skip it, the moment after the gap.
Date dateOrAfterGap(WallTime time, const KestryCore::ZoneCalendar& calendar)
{
    constexpr int hoursInDay = 24;
    constexpr int minutesInHour = 60;
    std::optional<Date> date = calendar.date(time);
    while (!date) {
        time.second = 0.0;
        time.minute = (time.minute + 1) % minutesInHour;
        time.hour = (time.hour + (time.minute == 0 ? 1 : 0)) % hoursInDay;
        const bool isNextDay = time.hour == 0 && time.minute == 0;
        time.day = KestryCore::daysAfter(time.day, isNextDay ? 1 : 0);
        date = calendar.date(time);
    }
    return *date;
}

bool isLength(double seconds)
{
    return seconds > 0.0 && seconds <= KestryCore::maximumSessionDuration;
}

} // namespace

EntryForm::EntryForm(const EditorWorld& world, const Editor::EntryForm& route)
    : EditorForm(world), entryID_(route.entryID), startedText_(world.locale),
      choice_(world, [this](const auto& step) { return attempt(step); }),
      days_(world.locale, world.calendar->day(KestryCore::earliestDate))
{
    if (!entryID_) {
        loadNew();
    } else if (const auto* entry = store().data()->entries.find(*entryID_)) {
        load(*entry);
    }
    loaded_ = drafts();
    showStart();
    follow(world.calendar, [this](const auto&) { showStart(); });
    connect(&days_, &DayPicker::chosen, this, &EntryForm::chooseDay);
}

void EntryForm::load(const KestryCore::TimeEntry& entry)
{
    name_ = shownText(entry.title);
    originalStart_ = entry.startedAt();
    originalDuration_ = entry.duration();
    hours_ = shownText(KestryCore::editHoursText(*originalDuration_));
    minutes_ = shownText(KestryCore::editMinutesText(*originalDuration_));
    isBillable_ = entry.isBillable;
    isImported_ = entry.sourceID.has_value();
    savedRate_ = shownText(entry.rateIsKnown
            ? world().words.money(static_cast<double>(entry.hourlyRateCents))
            : KestryCore::rateNotSet);
    choice_.loadProject(entry.projectID);
}

void EntryForm::loadNew()
{
    // The hour that has just passed, so that it can be saved as it is.
    const double now = world().now().seconds;
    originalStart_ = Date{std::floor(now / secondsInMinute) * secondsInMinute - secondsInHour};
    hours_ = "1";
    minutes_ = "0";
    choice_.loadClient(clientOfPage());
}

/// The client that the page below the form is about, if there is one.
std::optional<KestryCore::Uuid> EntryForm::clientOfPage() const
{
    const Destination page = *state().destination;
    const auto& selected = *state().selectedClient;
    const bool isAboutIt = page == Destination::client || page == Destination::sessions;
    const bool isThere = selected && store().data()->clients.find(*selected) != nullptr;
    return isAboutIt && isThere ? selected : std::nullopt;
}

QString EntryForm::title() const
{
    return entryID_ ? "Edit session" : "Every hour counts.";
}

QString EntryForm::line() const
{
    return entryID_ ? "Review this session’s time, billable status, and rate."
                    : "Add time you’ve already worked.";
}

Date EntryForm::start() const
{
    if (originalStart_ && !typed_) {
        return *originalStart_;
    }
    const Date now = world().now();
    const Typed typed = typed_.value_or(Typed{now, *world().calendar});
    const Date start = startedText_.read(started_, typed.at, typed.calendar, originalStart_);
    if (start > now) {
        throw LedgerError("A session cannot start in the future. Enter an earlier time.");
    }
    if (start < KestryCore::earliestDate) {
        throw LedgerError("A session cannot start before 1970. Enter a later date.");
    }
    return start;
}

void EntryForm::setStarted(const QString& text)
{
    started_ = text;
    typed_.reset();
    if (started_ != shownStart_) {
        typed_ = Typed{world().now(), *world().calendar};
    }
    emit edited();
}

/// Tells the start of the record on the clocks of here; words that were typed stay.
void EntryForm::showStart()
{
    shownStart_ =
        originalStart_ ? startedText_.text(*originalStart_, *world().calendar) : QString();
    if (!typed_) {
        started_ = shownStart_;
    }
    emit edited();
}

bool EntryForm::isDurationEdited() const
{
    const auto& [name, hours, minutes, isBillable] = loaded_;
    return hours_ != hours || minutes_ != minutes;
}

double EntryForm::duration() const
{
    if (originalDuration_ && !isDurationEdited()) {
        return *originalDuration_;
    }
    return KestryCore::readHoursAndMinutes(hours_.toStdString(), minutes_.toStdString());
}

QString EntryForm::startedHint() const
{
    try {
        const Date read = start();
        const QString text = startedText_.text(read, *world().calendar);
        return text == started_ ? QString() : text; // what "yesterday 14:30" means
    } catch (const LedgerError&) {
        return "A date and time up to now, as in yesterday 14:30 or -2h";
    }
}

QString EntryForm::durationHint() const
{
    try {
        static_cast<void>(duration());
        return {};
    } catch (const LedgerError&) {
        return "Whole hours up to 744, and minutes below 60";
    }
}

void EntryForm::openDays()
{
    CalendarDay chosen = world().calendar->day(world().now());
    const CalendarDay today = chosen;
    try {
        chosen = world().calendar->day(start());
    } catch (const LedgerError&) {
        chosen = today;
    }
    days_.open(chosen, today);
}

void EntryForm::chooseDay(const CalendarDay& day)
{
    const Date now = world().now();
    WallTime time = world().calendar->wallTime(now);
    try {
        time = world().calendar->wallTime(start());
    } catch (const LedgerError&) {
        time.second = 0.0; // the time of day of now, where none can be read
    }
    time.day = day;
    const Date start = dateOrAfterGap(time, *world().calendar);
    const Date allowed = std::clamp(start, KestryCore::earliestDate, now);
    setStarted(startedText_.text(allowed, *world().calendar));
}

void EntryForm::stepHours(int by)
{
    try {
        const double seconds = duration() + by * secondsInHour;
        if (isLength(seconds)) {
            hours_ = wholeText(std::floor(seconds / secondsInHour));
            emit edited(); // the minutes stay as they are, to the second
        }
    } catch (const LedgerError&) {
        return;
    }
}

void EntryForm::stepMinutes(int by)
{
    try {
        const double minutes = duration() / secondsInMinute;
        // From between two whole minutes to the nearer one on that side.
        const double stepped = by > 0 ? std::floor(minutes) + by : std::ceil(minutes) + by;
        const double seconds = stepped * secondsInMinute;
        if (isLength(seconds)) {
            hours_ = wholeText(std::floor(seconds / secondsInHour));
            minutes_ = wholeText(std::fmod(stepped, secondsInMinute));
            emit edited();
        }
    } catch (const LedgerError&) {
        return;
    }
}

void EntryForm::carryOut()
{
    if (entryID_) {
        update(*entryID_);
    } else {
        add();
    }
}

void EntryForm::update(const KestryCore::Uuid& id)
{
    KestryCore::EntryChange change;
    change.duration = duration();
    change.start = start();
    change.title = name_.toStdString();
    change.projectID = choice_.target();
    change.isBillable = isBillable_;
    keepUnedited(change);
    store().updateEntry(id, change);
}

/// What was not edited may have changed elsewhere since the form was opened, and stays so.
void EntryForm::keepUnedited(KestryCore::EntryChange& change) const
{
    const auto* entry = store().data()->entries.find(*entryID_);
    if (!entry) {
        return; // the store tells that it is gone
    }
    const auto& [name, hours, minutes, isBillable] = loaded_;
    change.title = name_ == name ? entry->title : change.title;
    change.start = typed_ ? change.start : entry->startedAt();
    change.duration = isDurationEdited() ? change.duration : entry->duration();
    change.isBillable = isBillable_ == isBillable ? entry->isBillable : isBillable_;
}

void EntryForm::add()
{
    KestryCore::NewEntry entry;
    entry.duration = duration();
    entry.start = start();
    entry.title = name_.toStdString();
    if (!choice_.clientID()) {
        throw LedgerError("Choose a client for this session.");
    }
    entry.clientID = *choice_.clientID();
    entry.projectID = choice_.target();
    entry.isBillable = isBillable_;
    store().addEntry(entry);
}

void EntryForm::deleteRecord()
{
    store().deleteEntry(*entryID_);
}

} // namespace Kestry
