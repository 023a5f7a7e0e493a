#include "ClientsModel.h"

#include <utility>

namespace Kestry {

using KestryCore::Client;
using KestryCore::Uuid;

namespace {

// More than people change at once. What arrives from other devices may be more.
constexpr std::size_t mostSteps = 64;

QString text(std::string_view utf8)
{
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

std::vector<Uuid> identifiers(const std::vector<const Client*>& rows)
{
    std::vector<Uuid> result;
    result.reserve(rows.size());
    for (const Client* client : rows) {
        result.push_back(client->id);
    }
    return result;
}

} // namespace

void ClientsModel::show(const ClientLogos::Clients& clients, const std::optional<Uuid>& chosen)
{
    const auto chosenBefore = std::exchange(chosen_, chosen);
    if (clients.sharesAllWith(clients_)) {
        if (chosen != chosenBefore) {
            reportChanges(rows_, chosenBefore);
        }
        return;
    }
    const ClientLogos::Clients before = clients_; // until the last step some rows are of it
    Rows rows;
    for (const Client& client : clients) {
        rows.push_back(&client);
    }
    const auto steps = listSteps(identifiers(rows_), identifiers(rows), mostSteps);
    if (!steps) {
        beginResetModel();
        clients_ = clients;
        rows_ = std::move(rows);
        endResetModel();
        return;
    }
    clients_ = clients;
    carryOut(*steps, rows_, rows);
    rows_.swap(rows);
    reportChanges(rows, chosenBefore);
}

void ClientsModel::reportChanges(const Rows& before, const std::optional<Uuid>& chosenBefore)
{
    for (std::size_t row = 0; row < rows_.size(); ++row) {
        const Client& client = *rows_[row];
        const bool wasChosen = chosenBefore == client.id;
        const bool isChosen = chosen_ == client.id;
        // A record at the same place is the same record.
        if (wasChosen != isChosen || (before[row] != rows_[row] && *before[row] != client)) {
            const QModelIndex changed = index(static_cast<int>(row));
            emit dataChanged(changed, changed);
        }
    }
}

int ClientsModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

QVariant ClientsModel::data(const QModelIndex& index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const Client& client = *rows_[static_cast<std::size_t>(index.row())];
    switch (role) {
    case RecordIDRole:
        return text(client.id.text());
    case Qt::DisplayRole:
    case NameRole:
        return text(client.name);
    case LogoRole:
        return logos_.logo(clients_, client.id);
    case IsChosenRole:
        return chosen_ == client.id;
    default:
        return {};
    }
}

QHash<int, QByteArray> ClientsModel::roleNames() const
{
    return {{RecordIDRole, "recordID"}, {NameRole, "name"}, {LogoRole, "logo"},
        {IsChosenRole, "isChosen"}};
}

} // namespace Kestry
