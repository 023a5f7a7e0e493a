#include "PrefixUpdateFramework.h"

#include <array>
#include <charconv>
#include <utility>

#include "LedgerError.h"

namespace Kestry {

using namespace KestryCore;

namespace {

constexpr const char* automaticKey = "automaticallyChecksForUpdates";
constexpr const char* lastCheckKey = "lastUpdateCheckDate";
constexpr const char* nextCheckKey = "nextUpdateCheckDate";

std::string textOf(double value)
{
    std::array<char, 64> buffer{};
    const auto [end, failure] = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
    return {buffer.data(), failure == std::errc() ? end : buffer.data()};
}

} // namespace

/// Work on another thread, and what came of it.
struct PrefixUpdateFramework::Job {
    TreeFiles& files;
    UpdatePrefix::Room room;
    AppcastItem item;
    UpdateTrust trust;
    std::string failure{}; ///< Empty when all is well.

    void run()
    {
        try {
            layDownUpdate(files, room, item, trust);
        } catch (const std::exception& error) {
            failure = failureText(error);
        }
    }
};

PrefixUpdateFramework::PrefixUpdateFramework(Platform platform, UpdateFrameworkSetup setup)
    : platform_(std::move(platform)), setup_(std::move(setup)),
      schedule_({platform_.scheduler, platform_.now, platform_.random,
                    {[this] { return storedDate(nextCheckKey); },
                        [this](Date date) { storeDate(nextCheckKey, date); }}},
          [this] { return beginCheck(Wish::ofSchedule); })
{
}

void PrefixUpdateFramework::start(UpdateDelegate& delegate)
{
    running_ = UpdateVersion::parse(platform_.runningVersion);
    prefix_ = UpdatePrefix::ofProgram(platform_.files, platform_.program);
    if (!running_ || !prefix_) {
        throw LedgerError("Kestry can't update itself in this place. Get new versions from where "
                          "you have got this one.");
    }
    delegate_ = &delegate;
    if (const std::optional<UpdatePrefix::Trial> failed = takeFailed()) {
        later_ =
            platform_.scheduler.after(0.0, [this, trial = *failed] { tellOfFailedStart(trial); });
    }
    fields_.lastUpdateCheckDate.assign(storedDate(lastCheckKey));
    fields_.canCheckForUpdates.assign(true);
    const bool isAutomatic = platform_.settings.read(automaticKey) == "true";
    fields_.automaticallyChecksForUpdates.assign(isAutomatic);
    schedule_.setOn(isAutomatic);
}

/// What cannot be read or removed, as in an installation of another user, is no reason to go
/// without updates.
std::optional<UpdatePrefix::Trial> PrefixUpdateFramework::takeFailed()
{
    try {
        return prefix_->takeFailed();
    } catch (const LedgerError&) {
        return std::nullopt;
    }
}

void PrefixUpdateFramework::tellOfFailedStart(const UpdatePrefix::Trial& failed)
{
    if (isCycleOpen_ || failed.version <= *running_) {
        return;
    }
    wish_ = Wish::ofUser; // Who has installed it waits for it.
    isCycleOpen_ = true;
    fail("Version " + failed.version.text() + " did not start. Version " + failed.previous.text()
            + " is in use again.",
        {failed.version.text(), {}, 0});
}

void PrefixUpdateFramework::setAutomaticallyChecksForUpdates(bool isAutomatic)
{
    platform_.settings.write(automaticKey, isAutomatic ? "true" : "false");
    fields_.automaticallyChecksForUpdates.assign(isAutomatic);
    schedule_.setOn(isAutomatic && delegate_ != nullptr);
}

void PrefixUpdateFramework::checkForUpdates()
{
    if (beginCheck(Wish::ofUser)) {
        schedule_.plan();
    }
}

/// Returns whether the feed is asked.
bool PrefixUpdateFramework::beginCheck(Wish wish)
{
    if (!*fields_.canCheckForUpdates) {
        return false;
    }
    if (wish == Wish::ofSchedule && fields_.stage->step != UpdateStage::Step::nothing) {
        return true; // What was found, or has failed, waits for the user.
    }
    letGo();
    endCycle(std::nullopt);
    wish_ = wish;
    isCycleOpen_ = true;
    if (const std::optional<std::string> refusal = delegate_->mayPerformUpdateCheck()) {
        UpdateStage stage;
        if (wish_ == Wish::ofUser) {
            stage.step = UpdateStage::Step::failed;
            stage.failure = *refusal;
        }
        fields_.stage.assign(std::move(stage));
        endCycle(refusal);
        return false;
    }
    fields_.canCheckForUpdates.assign(false);
    show(wish_ == Wish::ofUser ? UpdateStage::Step::checking : UpdateStage::Step::nothing);
    run(check(++generation_));
    return true;
}

void PrefixUpdateFramework::run(Task<void> task)
{
    endTasks();
    const auto failed = [this, generation = generation_](std::exception_ptr failure) {
        if (generation != generation_) {
            return;
        }
        try {
            std::rethrow_exception(std::move(failure));
        } catch (const std::exception& error) {
            fail(failureText(error), announced());
        }
    };
    tasks_ = std::make_shared<TaskOwner>(platform_.scheduler, failed);
    tasks_->start(std::move(task));
}

Task<void> PrefixUpdateFramework::check(unsigned generation)
{
    Task<std::string> fetching = platform_.source.feed(setup_.feedURL);
    const std::string bytes = co_await fetching;
    if (generation != generation_) {
        co_return;
    }
    const std::vector<AppcastItem> items = readAppcast(bytes);
    const UpdateTarget target{*running_, versionAtBeginning(platform_.systemVersion)};
    item_ = newestSuitable(items, target);
    const Date now = platform_.now();
    storeDate(lastCheckKey, now);
    fields_.lastUpdateCheckDate.assign(now);
    if (item_) {
        show(UpdateStage::Step::found);
        fields_.canCheckForUpdates.assign(true);
        delegate_->didFindValidUpdate();
        co_return;
    }
    show(wish_ == Wish::ofUser ? UpdateStage::Step::upToDate : UpdateStage::Step::nothing);
    fields_.canCheckForUpdates.assign(true);
    delegate_->didNotFindUpdate();
    endCycle(std::nullopt);
}

void PrefixUpdateFramework::install()
{
    const UpdateStage::Step step = fields_.stage->step;
    if (step != UpdateStage::Step::found && step != UpdateStage::Step::ready) {
        return;
    }
    wish_ = Wish::ofUser;
    isCycleOpen_ = true;
    fields_.canCheckForUpdates.assign(false);
    if (step == UpdateStage::Step::found) {
        run(layDown(*item_, ++generation_));
        return;
    }
    try {
        relaunch();
    } catch (const LedgerError& error) {
        fail(error.what(), announced());
    }
}

Task<void> PrefixUpdateFramework::layDown(AppcastItem item, unsigned generation)
{
    lock_ = prefix_->lock();
    const UpdatePrefix::Room room = prefix_->makeRoom(item.version);
    show(UpdateStage::Step::downloading);
    ArchiveRequest request;
    request.url = item.url;
    request.path = room.archive;
    request.bytes = item.bytes;
    request.progress = [this](std::int64_t received) {
        UpdateStage stage = *fields_.stage;
        stage.received = received;
        fields_.stage.assign(std::move(stage));
    };
    Task<void> downloading = platform_.source.archive(std::move(request));
    co_await downloading;
    if (generation != generation_) {
        co_return;
    }
    show(UpdateStage::Step::unpacking);
    auto job = std::make_shared<Job>(Job{platform_.files, room, item, trust()});
    Task<void> verifying = verify(std::move(job));
    co_await verifying;
    relaunch();
}

Task<void> PrefixUpdateFramework::verify(std::shared_ptr<Job> job)
{
    Reply<bool> reply(platform_.scheduler);
    platform_.work([job] { job->run(); }, [sender = reply.sender()] { sender.give(true); });
    (void)co_await reply;
    if (!job->failure.empty()) {
        throw LedgerError(job->failure);
    }
}

/// The new version is laid down. Lets the application decide, and switches at the last moment.
void PrefixUpdateFramework::relaunch()
{
    bool isLeaving = false;
    if (delegate_->shouldRelaunchApplication()) {
        prefix_->switchTo(item_->version);
        isLeaving = setup_.terminate();
        if (isLeaving) {
            platform_.relaunch(prefix_->launcher());
        } else {
            prefix_->takeBack();
        }
    }
    show(UpdateStage::Step::ready);
    fields_.canCheckForUpdates.assign(!isLeaving);
    endCycle(std::nullopt);
}

void PrefixUpdateFramework::dismiss()
{
    const UpdateStage::Step step = fields_.stage->step;
    if (delegate_ == nullptr || step == UpdateStage::Step::unpacking) {
        return;
    }
    const bool isChecking = !*fields_.canCheckForUpdates;
    ++generation_;
    endTasks();
    letGo();
    show(UpdateStage::Step::nothing);
    if (isChecking) {
        fields_.canCheckForUpdates.assign(true);
    }
    endCycle(std::nullopt);
}

/// What calls may be the task itself, so its frame is let go in a later turn. A task that is woken
/// before sees that its generation is over.
void PrefixUpdateFramework::endTasks()
{
    if (tasks_ == nullptr) {
        return;
    }
    ended_.push_back(std::exchange(tasks_, nullptr));
    letGoOfEnded_ = platform_.scheduler.after(0.0, [this] { ended_.clear(); });
}

/// Gives up what was found, with all that lies in its room.
void PrefixUpdateFramework::letGo()
{
    item_.reset();
    if (lock_ == nullptr) {
        return;
    }
    try {
        prefix_->clear();
    } catch (const LedgerError&) {
        // The next update clears it.
    }
    lock_.reset();
}

/// What was announced of the update that is under way; nothing while none is.
AnnouncedUpdate PrefixUpdateFramework::announced() const
{
    return item_ ? AnnouncedUpdate{item_->shortVersion, item_->releaseNotes, item_->bytes}
                 : AnnouncedUpdate{};
}

void PrefixUpdateFramework::fail(const std::string& words, AnnouncedUpdate update)
{
    letGo();
    UpdateStage stage;
    if (wish_ == Wish::ofUser) {
        stage.step = UpdateStage::Step::failed;
        stage.update = std::move(update);
        stage.failure = words;
    }
    fields_.stage.assign(std::move(stage));
    fields_.canCheckForUpdates.assign(true);
    delegate_->didAbortWithError(words);
    endCycle(words);
}

void PrefixUpdateFramework::endCycle(const std::optional<std::string>& error)
{
    if (std::exchange(isCycleOpen_, false)) {
        delegate_->didFinishUpdateCycle(error);
    }
}

void PrefixUpdateFramework::show(UpdateStage::Step step)
{
    UpdateStage stage;
    stage.step = step;
    stage.update = announced();
    fields_.stage.assign(std::move(stage));
}

UpdateTrust PrefixUpdateFramework::trust() const
{
    return {setup_.publicKey, *running_};
}

std::optional<Date> PrefixUpdateFramework::storedDate(const std::string& key) const
{
    const std::string text = platform_.settings.read(key).value_or("");
    double seconds = 0.0;
    const char* const end = text.data() + text.size();
    const auto [rest, failure] = std::from_chars(text.data(), end, seconds);
    const Date date{seconds};
    return failure == std::errc() && rest == end && date.isFinite() ? std::optional(date)
                                                                    : std::nullopt;
}

void PrefixUpdateFramework::storeDate(const std::string& key, Date date) const
{
    platform_.settings.write(key, textOf(date.seconds));
}

} // namespace Kestry
