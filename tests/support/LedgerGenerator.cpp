#include "LedgerGenerator.h"

#include <array>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace KestryCore {

namespace {

constexpr Date firstMorning{694'256'400.0};  // 2023-01-01T09:00:00Z
constexpr Date lastEvening{3'124'137'600.0}; // 2100-01-01
constexpr double minute = 60.0;

constexpr std::array<std::string_view, 12> clientNames{"Adler & Söhne", "Birch Studio",
    "Café Lumière", "Delta Freight", "Elm Street Dental", "Fjord Maps", "Granite Legal",
    "Harbour Books", "Iris Film", "Juniper Health", "Kestrel Aviation", "Lindqvist"};

constexpr std::array<std::string_view, 8> projectNames{"Website", "Support", "Annual report",
    "Booking service", "Migration", "Photography", "Advice", "Print run"};

constexpr std::array<std::string_view, 16> titleWords{"Draft", "review", "of the", "invoice form",
    "call with", "Marie", "fix", "layout", "tests for", "import", "and", "notes", "\"proof\"",
    "v2/final", "übersetzt", "mobile"};

constexpr std::array<std::string_view, 6> colors{
    "A2A5AA", "E5484D", "30A46C", "0091FF", "F5D90A", "8E4EC6"};

/// Draws values in a way that depends on the seed alone; the standard distributions differ from
/// library to library.
class Dice {
public:
    explicit Dice(std::uint64_t seed) : engine_(seed) { }

    /// A whole number from `low` to `high`, both included.
    std::size_t between(std::size_t low, std::size_t high)
    {
        return low + static_cast<std::size_t>(engine_() % (high - low + 1));
    }

    bool oneIn(std::size_t count) { return between(1, count) == 1; }

    /// Seconds from `low` to `high` minutes, with a fraction.
    double minutes(std::size_t low, std::size_t high)
    {
        const auto micros = static_cast<double>(between(0, 999'999));
        return static_cast<double>(between(low, high)) * minute + micros / 1e6;
    }

    template <class List>
    const auto& oneOf(const List& list)
    {
        return list[between(0, list.size() - 1)];
    }

    Uuid uuid()
    {
        Uuid id;
        for (auto& byte : id.bytes) {
            byte = static_cast<std::uint8_t>(between(0, 255));
        }
        return id;
    }

private:
    std::mt19937_64 engine_;
};

/// A name from the list, numbered from the second time round.
std::string numbered(std::string_view name, std::size_t index, std::size_t listSize)
{
    const std::size_t round = index / listSize + 1;
    return round == 1 ? std::string(name) : std::string(name) + " " + std::to_string(round);
}

Client drawClient(Dice& dice, std::size_t index)
{
    Client client;
    client.id = dice.uuid();
    client.name = numbered(clientNames[index % clientNames.size()], index, clientNames.size());
    client.hourlyRateCents = static_cast<Cents>(dice.between(60, 180)) * 100;
    client.colorHex = dice.oneOf(colors);
    client.rateIsKnown = !dice.oneIn(10);
    return client;
}

Project drawProject(Dice& dice, std::size_t index, const Client& client)
{
    Project project;
    project.id = dice.uuid();
    project.clientID = client.id;
    project.name = numbered(projectNames[index % projectNames.size()], index, projectNames.size());
    project.hourlyRateCents = client.hourlyRateCents;
    project.rateIsKnown = client.rateIsKnown;
    return project;
}

std::string drawTitle(Dice& dice)
{
    if (dice.oneIn(8)) {
        return {};
    }
    std::string title(dice.oneOf(titleWords));
    for (std::size_t words = dice.between(1, 9); words > 1; --words) {
        title.append(" ").append(dice.oneOf(titleWords));
    }
    return title;
}

/// Works on from `moment`, and leaves in it when the work ended.
TimeEntry drawEntry(Dice& dice, const Project& project, Date& moment)
{
    TimeEntry entry;
    entry.id = dice.uuid();
    entry.projectID = project.id;
    entry.title = drawTitle(dice);
    entry.hourlyRateCents = project.hourlyRateCents;
    entry.rateIsKnown = project.rateIsKnown;
    entry.isBillable = !dice.oneIn(12);
    for (std::size_t spans = dice.between(1, 3); spans > 0; --spans) {
        const Date start = moment + dice.minutes(2, 40);
        moment = start + dice.minutes(5, 120);
        entry.spans.push_back({start, moment});
    }
    if (dice.oneIn(20)) {
        entry.recordedDuration = totalDuration(entry.spans) / 2.0;
        entry.sourceID = "imported-" + entry.id.text();
    }
    return entry;
}

} // namespace

LedgerData generateLedger(const LedgerShape& shape)
{
    Dice dice(shape.seed);
    LedgerData ledger;
    std::vector<Client> clients;
    for (std::size_t index = 0; index < shape.clients; ++index) {
        clients.push_back(drawClient(dice, index));
        ledger.clients.append(clients.back());
    }
    std::vector<Project> projects;
    for (std::size_t index = 0; index < shape.projects; ++index) {
        projects.push_back(drawProject(dice, index, clients[index % clients.size()]));
        ledger.projects.append(projects.back());
    }
    Date moment = firstMorning;
    for (std::size_t index = 0; index < shape.sessions; ++index) {
        if (lastEvening < moment) {
            moment = firstMorning;
        }
        ledger.entries.append(drawEntry(dice, dice.oneOf(projects), moment));
    }
    return ledger;
}

} // namespace KestryCore
