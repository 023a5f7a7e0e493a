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

bool isLength(double seconds)
{
    return seconds > 0.0 && seconds <= KestryCore::maximumSessionDuration;
}

} // namespace

EntryForm::EntryForm(const EditorWorld& world, const Editor::EntryForm& route)
    : EditorForm(world), entryID_(route.entryID), startedText_(world.locale),
      startedTypedAt_(world.now()),
      choice_(world, [this](const auto& step) { return attempt(step); }),
      days_(world.locale, world.calendar->day(KestryCore::earliestDate))
{
    if (!entryID_) {
        loadNew();
    } else if (const auto* entry = store().data()->entries.find(*entryID_)) {
        load(*entry);
    }
    loaded_ = drafts();
    connect(&days_, &DayPicker::chosen, this, &EntryForm::chooseDay);
}

void EntryForm::load(const KestryCore::TimeEntry& entry)
{
    name_ = shownText(entry.title);
    originalStart_ = entry.startedAt();
    started_ = startedText_.text(*originalStart_, *world().calendar);
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
    const Date start{std::floor(now / secondsInMinute) * secondsInMinute - secondsInHour};
    started_ = startedText_.text(start, *world().calendar);
    originalStart_ = start;
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
    if (originalStart_ && started_ == std::get<1>(loaded_)) {
        return *originalStart_;
    }
    const Date now = world().now();
    const Date start = startedText_.read(started_, startedTypedAt_, *world().calendar);
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
    startedTypedAt_ = world().now();
    started_ = text;
    emit edited();
}

double EntryForm::duration() const
{
    const auto& [name, started, hours, minutes, isBillable] = loaded_;
    if (originalDuration_ && hours_ == hours && minutes_ == minutes) {
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
    // Where the clocks skip the time, the day begins soon enough.
    const Date start = world().calendar->date(time).value_or(world().calendar->startOfDay(day));
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
    store().updateEntry(id, change);
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
