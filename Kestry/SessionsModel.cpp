#include "SessionsModel.h"

#include <algorithm>
#include <cassert>
#include <utility>

#include "SessionLabel.h"
#include "SessionValue.h"
#include "SessionWords.h"

namespace Kestry {

using KestryCore::LedgerData;
using KestryCore::TimeEntry;
using KestryCore::Uuid;

namespace {

// More than people change at once. What arrives from other devices may be more.
constexpr std::size_t mostSteps = 64;

QString text(std::string_view utf8)
{
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

std::vector<Uuid> identifiers(const SessionsModel::Entries& entries)
{
    std::vector<Uuid> result;
    result.reserve(entries.size());
    for (const TimeEntry* entry : entries) {
        result.push_back(entry->id);
    }
    return result;
}

bool haveSameNames(const LedgerData& left, const LedgerData& right)
{
    return left.clients == right.clients && left.projects == right.projects;
}

} // namespace

SessionsModel::SessionsModel() : index_(std::make_unique<KestryCore::RecordIndex>(ledger_)) { }

void SessionsModel::take(const LedgerData& ledger, Entries entries)
{
    // The same records are at the same places, whichever ledger holds them.
    const bool isSameIndex = ledger_.clients.sharesAllWith(ledger.clients)
        && ledger_.projects.sharesAllWith(ledger.projects);
    ledger_ = ledger;
    if (!isSameIndex) {
        index_ = std::make_unique<KestryCore::RecordIndex>(ledger_);
    }
    entries_ = std::move(entries);
}

void SessionsModel::show(const LedgerData& ledger, Entries entries)
{
    beginResetModel();
    take(ledger, std::move(entries));
    endResetModel();
}

void SessionsModel::update(const LedgerData& ledger, Entries entries)
{
    const auto steps = listSteps(identifiers(entries_), identifiers(entries), mostSteps);
    if (!steps) {
        keepsPlace_ = true;
        show(ledger, std::move(entries));
        keepsPlace_ = false;
        return;
    }
    // Until the last step some rows are of the old ledger, and some of the new one.
    const LedgerData before = ledger_;
    const bool hasSameNames = haveSameNames(before, ledger);
    ledger_ = ledger;
    index_ = std::make_unique<KestryCore::RecordIndex>(ledger_);
    carryOut(*steps, entries_, entries);
    assert(entries_.size() == entries.size());
    entries_.swap(entries);
    if (hasSameNames) {
        reportChanges(entries);
    } else {
        reportAllChanged();
    }
}

void SessionsModel::reportChanges(const Entries& before)
{
    for (std::size_t row = 0; row < entries_.size(); ++row) {
        // A record at the same place is the same record.
        if (before[row] != entries_[row] && *before[row] != *entries_[row]) {
            const QModelIndex changed = index(static_cast<int>(row));
            emit dataChanged(changed, changed);
        }
    }
}

void SessionsModel::reportAllChanged()
{
    if (!entries_.empty()) {
        emit dataChanged(index(0), index(rowCount() - 1));
    }
}

void SessionsModel::setWords(Words words)
{
    words_ = std::move(words);
    reportAllChanged();
}

const TimeEntry* SessionsModel::entry(int row) const
{
    const bool isRow = row >= 0 && row < rowCount();
    return isRow ? entries_[static_cast<std::size_t>(row)] : nullptr;
}

std::string_view SessionsModel::label(int row) const
{
    return KestryCore::sessionLabel(*entries_[static_cast<std::size_t>(row)], *index_);
}

int SessionsModel::row(const Uuid& id) const
{
    const auto found = std::ranges::find(entries_, id, &TimeEntry::id);
    return found == entries_.end() ? -1 : static_cast<int>(found - entries_.begin());
}

QString SessionsModel::recordID(int row) const
{
    const TimeEntry* found = entry(row);
    return found ? text(found->id.text()) : QString();
}

int SessionsModel::rowOf(const QString& recordID) const
{
    const auto id = Uuid::parse(recordID.toStdString());
    return id ? row(*id) : -1;
}

int SessionsModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(entries_.size());
}

QVariant SessionsModel::data(const QModelIndex& index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    assert(words_);
    const TimeEntry& entry = *this->entry(index.row());
    const KestryCore::Project* project = index_->projectOf(entry);
    const KestryCore::Client* client = index_->clientOf(project);
    switch (role) {
    case Qt::DisplayRole:
    case LabelRole:
        return text(KestryCore::sessionLabel(entry.title, project, client));
    case DetailRole:
        return text(sessionDetail(project, client));
    case DateRole:
        return text(words_->days.shortDay(entry.startedAt()));
    case DurationRole:
        return text(KestryCore::durationText(entry.duration()));
    case ValueRole:
        return text(KestryCore::valueText(entry, words_->money));
    case ClientNameRole:
        return client ? text(client->name) : QString("Client");
    case ClientLogoRole:
        return client && logos_ ? logos_->logo(ledger_.clients, client->id) : QImage();
    case SpokenRole:
        return text(spokenSession(entry, *index_, words_->days, words_->money));
    default:
        return {};
    }
}

QHash<int, QByteArray> SessionsModel::roleNames() const
{
    return {{LabelRole, "label"}, {DetailRole, "detail"}, {DateRole, "date"},
        {DurationRole, "duration"}, {ValueRole, "value"}, {ClientNameRole, "clientName"},
        {ClientLogoRole, "clientLogo"}, {SpokenRole, "spoken"}};
}

} // namespace Kestry
