#pragma once

#include <QJsonObject>
#include <QTcpServer>
#include <QTcpSocket>

#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "DoubleDatabase.h"

namespace Kestry {

/// A request as a server reads it.
struct DoubleRequest {
    std::string method;
    std::string path;                           ///< Without the query, still encoded.
    std::map<std::string, std::string> query;   ///< Decoded.
    std::map<std::string, std::string> headers; ///< Names in lower case.
    std::string body;
};

struct DoubleAnswer {
    int status = 200;
    std::string body;
    std::string headers{}; ///< Whole lines.
};

/// What becomes of one request.
struct DoubleFault {
    enum class Kind {
        answer,      ///< This answer, and nothing is done.
        loseRequest, ///< The connection breaks before anything is done.
        loseAnswer,  ///< It is done, and the connection breaks before the answer.
        cutAnswer,   ///< It is done, and the connection breaks in the middle of the answer.
        lateAnswer,  ///< It is done, and the answer comes after a while.
        dripAnswer,  ///< It is done, and the answer comes byte by byte.
        endless,     ///< Nothing is done, and the answer has no end.
        changeBody,  ///< It is done, and the answer's body is another.
    };
    Kind kind = Kind::answer;
    DoubleAnswer answer{};
    int milliseconds = 0;
    std::function<std::string(std::string)> change{};
};

/// A server of our own that speaks as much of CouchDB's protocol as the record store uses. It keeps
/// documents with all their versions, and does on demand what real servers were seen to do.
class CouchDouble {
public:
    using Fault = std::function<std::optional<DoubleFault>(const DoubleRequest&)>;

    CouchDouble();

    [[nodiscard]] std::string url() const;
    void setReachable(bool isReachable);

    // Requests.

    /// Is asked before each request is carried out.
    Fault fault;
    /// The next request whose path ends so gets this fault, once. Several wait for their turn.
    void failNext(const std::string& pathEnd, const DoubleFault& what);
    std::vector<DoubleRequest> requests;
    /// How many requests had a path that ends so.
    [[nodiscard]] int times(const std::string& pathEnd) const;

    // The server.

    std::string identity = "0123456789abcdef0123456789abcdef";
    std::map<std::string, std::string> passwords{{"anna", "secret"}}; ///< By user.
    std::string session;   ///< What it takes everybody for; none for the sender.
    bool mayCreate = true; ///< Whether users can make databases.
    std::size_t mostDocumentBytes = 8'000'000;
    std::size_t mostRequestBytes = std::size_t{1} << 30U;
    bool isSimple = false; ///< Counts sequences in numbers and tells nothing of what is left.
    bool shufflesAnswers = false; ///< Answers of batches are in another order.
    bool repeatsRows = false;     ///< Each row of the feed comes twice.
    bool reversesRows = false;    ///< Rows of a page come in another order.
    std::set<std::string> late;   ///< Documents that the feed does not tell of yet.
    /// So often is a document still shown by name in the version that it had at first.
    std::map<std::string, int> outdated;

    // Databases, as an administrator.

    void createDatabase(const std::string& name);
    void removeDatabase(const std::string& name);
    /// Removes a document as any program can, with a deletion.
    void removeDocument(const std::string& database, const std::string& id);
    /// Removes all trace of a document.
    void purge(const std::string& database, const std::string& id);
    /// A document as the server shows it; empty when there is none.
    [[nodiscard]] QJsonObject shown(const std::string& database, const std::string& id) const;
    [[nodiscard]] std::vector<std::string> documentsOf(const std::string& database) const;
    /// Saves as another program would. Gives the revision.
    std::string put(const std::string& database, const QJsonObject& document);
    /// Accepts a version beside those that there are, as a cluster can: over `parent`, which may be
    /// empty, with a hash that makes it the one that is shown, or not.
    std::string accept(const std::string& database, const QJsonObject& document,
        const std::string& parent, bool wins);
    /// Versions that are accepted and not shown.
    [[nodiscard]] std::vector<std::string> overruled(
        const std::string& database, const std::string& id) const;
    /// The feed tells of a document once more, in the version that it had at first.
    void tellOldVersion(const std::string& database, const std::string& id);

    /// Keeps a copy of all databases, and goes back to it.
    void backUp();
    void restore();

private:
    void read(QTcpSocket& socket);
    void handle(QTcpSocket& socket, const DoubleRequest& request);
    void carryOut(QTcpSocket& socket, const DoubleRequest& request, const DoubleFault& what);
    [[nodiscard]] DoubleAnswer answerTo(const DoubleRequest& request);
    [[nodiscard]] DoubleAnswer answerOf(
        DoubleDatabase& database, const std::string& name, const DoubleRequest& request);
    [[nodiscard]] std::optional<std::string> userOf(const DoubleRequest& request) const;
    [[nodiscard]] DoubleAnswer welcome() const;
    [[nodiscard]] DoubleAnswer saveBatch(DoubleDatabase& database, const DoubleRequest& request);
    [[nodiscard]] DoubleAnswer rows(DoubleDatabase& database, const DoubleRequest& request);
    [[nodiscard]] std::string row(
        const DoubleDatabase& database, const std::string& id, bool withBodies);
    [[nodiscard]] DoubleAnswer versions(
        DoubleDatabase& database, const DoubleRequest& request) const;
    [[nodiscard]] DoubleAnswer changes(
        DoubleDatabase& database, const DoubleRequest& request) const;

    std::unique_ptr<QTcpServer> server_;
    quint16 port_ = 0;
    std::map<std::string, DoubleDatabase> databases_;
    std::map<std::string, DoubleDatabase> backup_;
    std::deque<std::pair<std::string, DoubleFault>> next_;
};

} // namespace Kestry
