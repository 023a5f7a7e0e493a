#include "ApplicationServer.h"

#include <QByteArray>

#include "FirstInstance.h"
#include "LedgerError.h"

namespace Kestry {

ApplicationServer::ApplicationServer(World world, std::optional<ListeningSocket> socket)
    : delegate_(world.delegate),
      sync_({delegate_.store(), delegate_.cloudSync(), world.account, world.scheduler}),
      commands_(delegate_.store(), sync_, {world.files, [this] { return delegate_.now(); }}),
      server_(services())
{
    if (!socket) {
        return;
    }
    server_.listen(std::move(*socket));
    if (isForMissingDirectory()) {
        // The first save makes it, and callers look for it under another name then.
        directory_ = delegate_.store().data().observe([this](const auto&) { followDirectory(); });
    }
}

bool ApplicationServer::isForMissingDirectory() const
{
    try {
        return isNameOfPath(localSocketName(delegate_.store().directory()));
    } catch (const KestryCore::LedgerError&) {
        return false;
    }
}

LocalServices ApplicationServer::services()
{
    LocalServices services;
    services.command = [this](const LocalCommand& command, const LocalServices::Take& take,
                           const LocalServices::Give& give) {
        return commands_.run(command, take, give);
    };
    services.activate = [this](const LocalActivation& activation) {
        if (!activation.activationToken.empty()) {
            qputenv("XDG_ACTIVATION_TOKEN", QByteArray::fromStdString(activation.activationToken));
        }
        if (activation.urls.empty()) {
            delegate_.reopen();
        } else {
            delegate_.open(activation.urls);
        }
    };
    return services;
}

void ApplicationServer::followDirectory()
{
    if (isForMissingDirectory()) {
        return;
    }
    if (auto socket = listenAt(delegate_.store().directory())) {
        server_.listen(std::move(*socket));
        directory_ = {};
    }
}

void ApplicationServer::close()
{
    directory_ = {};
    sync_.end();
    server_.close();
}

} // namespace Kestry
