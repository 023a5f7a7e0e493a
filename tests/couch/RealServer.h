#pragma once

#include <QJsonObject>

#include <memory>
#include <optional>
#include <string>

#include "CouchServer.h"
#include "HttpClient.h"
#include "QtScheduler.h"
#include "TcpRelay.h"

namespace Kestry {

/// A server that speaks CouchDB's protocol, with an administrator on it.
struct RealServerAccess {
    std::string url;
    std::string admin;
    std::string password;

    /// The server of this run.
    static RealServerAccess current;
};

/// A user and a database of one test, which are removed with it.
class RealServer {
public:
    RealServer();
    RealServer(const RealServer&) = delete;
    RealServer& operator=(const RealServer&) = delete;
    ~RealServer();

    [[nodiscard]] QtScheduler& scheduler() { return scheduler_; }
    /// Where the user finds the database.
    [[nodiscard]] CouchAddress address() const;
    [[nodiscard]] CouchAccount account() const;

    /// Whether the user can reach the server. The administrator always can.
    void setReachable(bool isReachable);

    /// Removes the database with all that is in it, and makes it again.
    void remakeDatabase();
    void removeDocument(const std::string& id);
    /// A document as the server shows it, with its overruled versions.
    [[nodiscard]] QJsonObject shown(const std::string& id);
    /// Accepts a version beside those that there are, with this revision, made of `parent`.
    void accept(QJsonObject document, const std::string& revision, const std::string& parent);

private:
    void makeDatabase();
    QJsonObject ask(const std::string& method, const std::string& path,
        const std::optional<QJsonObject>& body = {});
    void require(const std::string& method, const std::string& path, const QJsonObject& body);

    QtScheduler scheduler_;
    HttpClient client_;
    std::string name_;
    std::unique_ptr<TcpRelay> relay_; ///< To a server on this machine, which no proxy can hide.
    int status_ = 0;
};

} // namespace Kestry
