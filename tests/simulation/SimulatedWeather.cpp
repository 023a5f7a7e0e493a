#include "SimulatedWeather.h"

#include <algorithm>
#include <utility>

#include "World.h"

namespace KestryCore {

SimulatedWeather::SimulatedWeather(World& world) : CloudWeather(world.cloud), world_(world) { }

double SimulatedWeather::travelSeconds()
{
    constexpr double slowest = 2.0;
    constexpr std::size_t parts = 1000;
    return slowest * static_cast<double>(1 + world_.choices.below(parts))
        / static_cast<double>(parts);
}

CloudPassage SimulatedWeather::passage(CloudLine& line, CloudQuestion question)
{
    CloudPassage passage{travelSeconds(), travelSeconds()};
    if (world_.befalls(Event::repeatedReply, 60)) {
        passage.isRepeated = true;
    }
    if (question == CloudQuestion::save) {
        spoilDelivery(passage);
    } else if (world_.befalls(Event::lostAnswer, 100)) {
        passage.isHandled = world_.oneIn(2);
        passage.isAnswered = false;
    } else if (question == CloudQuestion::changes && world_.faultOneIn(40)) {
        passage.back = oneHour * static_cast<double>(1 + world_.choices.below(24));
    }
    world_.sawQuestion(line, question);
    return passage;
}

void SimulatedWeather::spoilDelivery(CloudPassage& passage)
{
    constexpr std::size_t seldom = 20;
    if (world_.befalls(Event::lostDelivery, seldom)) {
        passage.isHandled = passage.isAnswered = false;
    } else if (world_.befalls(Event::lateDelivery, seldom)) {
        passage.isAnswered = false;
        passage.there = oneHour * static_cast<double>(1 + world_.choices.below(24));
        passage.back = travelSeconds() - passage.there; // The sender gives up long before.
    } else if (world_.befalls(Event::lostReply, seldom)) {
        passage.isAnswered = false;
    }
}

std::optional<std::string> SimulatedWeather::trouble()
{
    return trouble_;
}

void SimulatedWeather::answered(const std::string& cursor)
{
    if (CloudStore::position(cursor) < world_.cloud.lastChange()) {
        world_.tally.count(Event::lateAnswer);
    }
}

std::size_t SimulatedWeather::mostRecordsOfAnAnswer()
{
    constexpr std::size_t longestAnswer = 8;
    return 1 + world_.choices.below(longestAnswer);
}

std::uint64_t SimulatedWeather::repeatedChanges()
{
    return world_.befalls(Event::repeatedAnswer, 40) ? 1 + world_.choices.below(8) : 0;
}

bool SimulatedWeather::failsWithoutCursor()
{
    return world_.befalls(Event::expiredTwice, 20);
}

bool SimulatedWeather::isShuffled()
{
    return world_.befalls(Event::shuffledAnswer, 4);
}

std::optional<CloudError> SimulatedWeather::failureToFetch()
{
    if (world_.befalls(Event::failedFetch, 300)) {
        return CloudError("The record could not be fetched.");
    }
    return std::nullopt;
}

CloudRecordFate SimulatedWeather::fateOf(const CloudRecord&)
{
    constexpr std::size_t seldom = 30;
    CloudRecordFate fate;
    if (world_.befalls(Event::failedDelivery, seldom)) {
        fate.failure = CloudError("The record could not be saved.");
    } else if (world_.befalls(Event::retryAfter, 2 * seldom)) {
        fate.failure = CloudError("The store is busy.").retryingAfter(2.1);
    } else if (world_.befalls(Event::lostAcknowledgement, seldom)) {
        fate.isAnswered = false;
    }
    fate.isRepeated = world_.befalls(Event::repeatedDelivery, seldom);
    return fate;
}

bool SimulatedWeather::letsRivalWin(const std::string& recordID, bool isAnswered)
{
    // Not when the first writer has lost its version meanwhile, together with its disk, and not
    // when it is none of the devices here, which then would have to take it back.
    const SyncRecord& first = world_.cloud.find(recordID)->record;
    constexpr std::size_t often = 2;
    return world_.isOfMember(first) && world_.book.placesOf(first.revision) > 1
        && (isAnswered ? world_.befalls(Event::overruled, often)
                       : world_.befalls(Event::twoWriters, 1));
}

void SimulatedWeather::discard(const CloudRecord& overruled)
{
    world_.discard(overruled);
}

CloudStore::SaveOutcome SimulatedWeather::save(const CloudRecord& record, CloudStore::Rival rival)
{
    return world_.save(record, rival);
}

std::size_t SimulatedWeather::below(std::size_t count)
{
    return world_.choices.below(count);
}

} // namespace KestryCore
