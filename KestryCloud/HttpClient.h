#pragma once

#include <QNetworkAccessManager>

#include <cstddef>
#include <map>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>

#include "Scheduler.h"
#include "Task.h"

namespace Kestry {

/// What is asked of a server, once.
struct HttpRequest {
    std::string method = "GET";
    std::string url;
    /// Sent as JSON. With none, the request must be one that may reach the server twice.
    std::optional<std::string> body{};
    std::string authorization{};             ///< The whole value of the header; may be empty.
    double seconds = 60.0;                   ///< For the whole of it, however busy the line is.
    std::size_t mostBytes = 4 * 1024 * 1024; ///< Of the answer's body.
};

struct HttpAnswer {
    int status = 0;
    std::map<std::string, std::string> headers; ///< Names in lower case.
    std::string body;
};

/// Why there is no whole answer.
enum class HttpFailureKind {
    unreachable, ///< No connection, or it broke off. Whether the request was carried out is open.
    notTrusted,  ///< The server's certificate is not trusted.
    timedOut,
    tooLong, ///< The answer has more bytes than allowed.
};

/// `what()` is what the toolkit says, for a detail at most. It has no credential in it.
class HttpFailure : public std::runtime_error {
public:
    HttpFailure(HttpFailureKind kind, const std::string& detail)
        : std::runtime_error(detail), kind_(kind)
    {
    }
    [[nodiscard]] HttpFailureKind kind() const { return kind_; }

private:
    HttpFailureKind kind_;
};

/// Asks servers over HTTP and believes them nothing: a request with a body is sent once at most, no
/// redirect is followed, no cookie or password is kept, an answer is bounded in bytes and time, and
/// certificates are verified against those that the system trusts.
///
/// Not thread-safe.
class HttpClient {
public:
    /// The scheduler must outlive the client.
    HttpClient(KestryCore::Scheduler& scheduler, std::string userAgent);

    /// Gives the answer, whatever its status. Throws HttpFailure. The client must outlive the task;
    /// a task that is destroyed while it waits breaks off.
    [[nodiscard]] KestryCore::Task<HttpAnswer> send(HttpRequest request);

private:
    class Exchange;

    KestryCore::Scheduler& scheduler_;
    std::string userAgent_;
    QNetworkAccessManager network_;
};

} // namespace Kestry
