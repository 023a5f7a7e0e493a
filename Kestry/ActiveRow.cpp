#include "ActiveRow.h"

#include "SessionLabel.h"
#include "SessionWords.h"

namespace Kestry {

ActiveRow activeRow(const KestryCore::LedgerData& ledger, ClientLogos* logos)
{
    if (!ledger.active) {
        return {};
    }
    const auto* project = ledger.projects.find(ledger.active->projectID);
    const auto* client = project ? ledger.clients.find(project->clientID) : nullptr;
    const auto text = [](std::string_view utf8) {
        return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
    };
    ActiveRow row;
    row.label = text(KestryCore::sessionLabel(ledger.active->title, project, client));
    row.detail = text(sessionDetail(project, client));
    row.clientName = client ? text(client->name) : QString("Client");
    row.clientLogo = client && logos ? logos->logo(ledger.clients, client->id) : QImage();
    row.state = ledger.active->isPaused() ? "Paused" : "Live";
    row.spoken = row.label + ", " + text(spokenSessionDetail(project, client)) + ", " + row.state;
    return row;
}

} // namespace Kestry
