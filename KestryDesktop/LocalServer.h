#pragma once

#include <QObject>
#include <QSocketNotifier>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "LocalMessage.h"
#include "LocalSocket.h"

namespace Kestry {

/// What the application does for its callers.
struct LocalServices {
    /// Tells the caller that from here on the command is carried out; false when nobody waits for
    /// it any more, and it must not be.
    using Take = std::function<bool()>;

    /// Answers the caller, in the call that carries the command out or at any later time. Only the
    /// first answer counts, and it goes nowhere once the caller or the server has gone.
    using Give = std::function<void(LocalAnswer)>;

    /// Carries out a command once it is taken. Returns false, with nothing given, for one that is
    /// left to the caller.
    std::function<bool(const LocalCommand&, const Take&, const Give&)> command;
    /// Called on a turn of the loop of its own.
    std::function<void(const LocalActivation&)> activate;
};

/// How long a caller may take, in seconds.
struct ServerTimeouts {
    double forRequest = 5.0; ///< To send its request.
    double forAnswer = 30.0; ///< To read some more of the answer.
    double inCrowd = 0.25;   ///< For either, while all places are taken.
    /// Until the next sign of life to a caller whose command is still being carried out.
    double untilSign = 15.0;
};

/// Listens to other processes of this user on the event loop. A caller who is slow, silent or
/// hostile holds up nobody: nothing here waits, what a caller may send and how long that may take
/// is bounded, and so is the number of callers. Once all places are taken, each has to be quick.
class LocalServer final : public QObject {
    Q_OBJECT

public:
    static constexpr std::size_t mostCallers = 16;

    explicit LocalServer(LocalServices services)
        : LocalServer(std::move(services), ServerTimeouts{})
    {
    }
    LocalServer(LocalServices services, ServerTimeouts timeouts);
    LocalServer(const LocalServer&) = delete;
    LocalServer& operator=(const LocalServer&) = delete;
    ~LocalServer() override;

    /// Listens on one more socket.
    void listen(ListeningSocket socket);
    /// Takes no more callers, and drops those that are there. Not for use by a service.
    void close();

private:
    class Caller;
    struct Listener {
        ListeningSocket socket;
        std::unique_ptr<QSocketNotifier> notifier;
    };

    void acceptCallers(const ListeningSocket& socket);
    void dismiss(Caller* caller);
    void activateSoon(LocalActivation activation);
    void listenToNewCallers(bool enabled);
    [[nodiscard]] bool isCrowded() const { return callers_.size() >= mostCallers; }

    LocalServices services_;
    ServerTimeouts timeouts_;
    std::vector<Listener> listeners_;
    std::vector<std::unique_ptr<Caller>> callers_;
};

} // namespace Kestry
