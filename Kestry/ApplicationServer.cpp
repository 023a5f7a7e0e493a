#include "ApplicationServer.h"

#include <QByteArray>

#include <utility>

#include "FirstInstance.h"
#include "LedgerError.h"

namespace Kestry {

ApplicationServer::ApplicationServer(
    AppDelegate& delegate, KestryCore::FileSystem& files, std::optional<ListeningSocket> socket)
    : delegate_(delegate),
      commands_(delegate.store(), {files, [&delegate] { return delegate.now(); }}),
      server_(services())
{
    if (!socket) {
        return;
    }
    server_.listen(std::move(*socket));
    if (isForMissingDirectory()) {
        // The first save makes it, and callers look for it under another name then.
        directory_ = delegate.store().data().observe([this](const auto&) { followDirectory(); });
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
        auto answer = commands_.run(command, take);
        const bool isDone = answer.has_value();
        if (isDone) {
            give(std::move(*answer));
        }
        return isDone;
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
    server_.close();
}

} // namespace Kestry
