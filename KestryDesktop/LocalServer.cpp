#include "LocalServer.h"

#include <sys/socket.h>

#include <QTimer>

#include <algorithm>
#include <array>
#include <cerrno>

#include "LedgerError.h"

namespace Kestry {

namespace {

int milliseconds(double seconds)
{
    return static_cast<int>(seconds * 1000.0);
}

/// The answer in place of one that no caller would take.
LocalAnswer bounded(LocalAnswer answer)
{
    constexpr std::size_t besidesTexts = 64;
    const std::size_t file = answer.file ? answer.file->name.size() + answer.file->bytes.size() : 0;
    if (answer.output.size() + answer.errors.size() + file + besidesTexts <= maximumAnswerBytes) {
        return answer;
    }
    LocalAnswer refusal{1, answer.hasChanged, {},
        "The answer is too long to be passed on. Quit Kestry and try again.\n"};
    return refusal;
}

} // namespace

/// One caller, from the first byte of the request to the last one of the answer.
class LocalServer::Caller {
public:
    Caller(LocalServer& server, Descriptor socket)
        : server_(server), socket_(std::move(socket)),
          reading_(socket_.number(), QSocketNotifier::Read),
          writing_(socket_.number(), QSocketNotifier::Write)
    {
        writing_.setEnabled(false);
        timer_.setSingleShot(true);
        connect(&reading_, &QSocketNotifier::activated, &reading_, [this] { read(); });
        connect(&writing_, &QSocketNotifier::activated, &writing_, [this] { write(); });
        connect(&timer_, &QTimer::timeout, &timer_, [this] { timeIsOver(); });
        wait(server_.timeouts_.forRequest);
    }

    /// Others wait for a place. A caller whose command is being carried out keeps its own.
    void hurry()
    {
        if (isAwaitingAnswer_) {
            return;
        }
        const int most = milliseconds(server_.timeouts_.inCrowd);
        timer_.start(std::min(timer_.remainingTime(), most));
    }

    /// It does nothing from here on.
    void retire()
    {
        life_.reset();
        reading_.setEnabled(false);
        writing_.setEnabled(false);
        timer_.stop();
    }

    /// Takes in what is there. Whoever calls it must not use the caller afterwards.
    void read()
    {
        std::array<char, 65'536> buffer{};
        const ssize_t count = recv(socket_.number(), buffer.data(), buffer.size(), 0);
        if (count < 0 && (errno == EAGAIN || errno == EINTR)) {
            return;
        }
        if (count > 0) {
            frames_.add(std::string_view(buffer.data(), static_cast<std::size_t>(count)));
        }
        if (auto frame = frames_.next()) {
            // One request for each caller: what else it says stays unread.
            reading_.setEnabled(false);
            serve(*frame);
        } else if (count <= 0 || frames_.isBroken()) {
            server_.dismiss(this);
        }
    }

private:
    void wait(double seconds)
    {
        const double most = server_.isCrowded() ? server_.timeouts_.inCrowd : seconds;
        timer_.start(milliseconds(std::min(seconds, most)));
    }

    void serve(const LocalFrameReader::Frame& frame)
    {
        if (frame.kind == LocalMessageKind::command) {
            if (const auto command = decodeCommand(frame.content)) {
                carryOut(*command);
                return;
            }
        } else if (frame.kind == LocalMessageKind::activate) {
            if (auto activation = decodeActivation(frame.content)) {
                server_.activateSoon(std::move(*activation));
                reply(encodeMessage(LocalAnswer{}));
                return;
            }
        }
        server_.dismiss(this);
    }

    void carryOut(const LocalCommand& command)
    {
        isAwaitingAnswer_ = true;
        const bool isForServer = server_.services_.command(
            command, [this] { return take(); }, giver());
        if (!isForServer) {
            isAwaitingAnswer_ = false;
            reply(encodeMessage(LocalMessageKind::declined));
        } else if (isAwaitingAnswer_) {
            timer_.start(milliseconds(server_.timeouts_.untilSign));
        }
    }

    LocalServices::Give giver()
    {
        return [this, life = std::weak_ptr<void>(life_)](LocalAnswer answer) {
            if (!life.expired() && isAwaitingAnswer_) {
                isAwaitingAnswer_ = false;
                reply(encodeMessage(bounded(std::move(answer))));
            }
        };
    }

    void timeIsOver()
    {
        if (isAwaitingAnswer_ && take()) {
            timer_.start(milliseconds(server_.timeouts_.untilSign));
        } else {
            server_.dismiss(this);
        }
    }

    /// Tells the caller that its command is being carried out; false when it has gone.
    bool take()
    {
        const std::string message = encodeMessage(LocalMessageKind::taken);
        return ::send(socket_.number(), message.data(), message.size(), MSG_NOSIGNAL)
            == static_cast<ssize_t>(message.size());
    }

    void reply(std::string message)
    {
        unsent_ = std::move(message);
        write();
    }

    void write()
    {
        while (sent_ < unsent_.size()) {
            const ssize_t count = ::send(
                socket_.number(), unsent_.data() + sent_, unsent_.size() - sent_, MSG_NOSIGNAL);
            if (count < 0 && errno == EAGAIN) {
                writing_.setEnabled(true);
                wait(server_.timeouts_.forAnswer);
                return;
            }
            if (count < 0 && errno != EINTR) {
                break;
            }
            sent_ += count > 0 ? static_cast<std::size_t>(count) : 0;
        }
        server_.dismiss(this);
    }

    LocalServer& server_;
    Descriptor socket_;
    QSocketNotifier reading_;
    QSocketNotifier writing_;
    QTimer timer_;
    LocalFrameReader frames_{maximumRequestBytes};
    std::string unsent_;
    std::size_t sent_ = 0;
    bool isAwaitingAnswer_ = false;
    std::shared_ptr<void> life_ = std::make_shared<int>(); // until it retires
};

LocalServer::LocalServer(LocalServices services, ServerTimeouts timeouts)
    : services_(std::move(services)), timeouts_(timeouts)
{
}

LocalServer::~LocalServer() = default;

void LocalServer::listen(ListeningSocket socket)
{
    auto notifier = std::make_unique<QSocketNotifier>(socket.descriptor(), QSocketNotifier::Read);
    listeners_.push_back({std::move(socket), std::move(notifier)});
    const std::size_t index = listeners_.size() - 1;
    connect(listeners_.back().notifier.get(), &QSocketNotifier::activated, this,
        [this, index] { acceptCallers(listeners_[index].socket); });
    listenToNewCallers(!isCrowded());
}

void LocalServer::close()
{
    listeners_.clear();
    callers_.clear();
}

void LocalServer::acceptCallers(const ListeningSocket& socket)
{
    try {
        Descriptor socketOfCaller = socket.accept();
        if (!socketOfCaller) {
            return;
        }
        callers_.push_back(std::make_unique<Caller>(*this, std::move(socketOfCaller)));
        if (isCrowded()) {
            listenToNewCallers(false);
            std::ranges::for_each(callers_, [](const auto& caller) { caller->hurry(); });
        }
        // Callers speak first, and mostly have by now.
        callers_.back()->read();
    } catch (const KestryCore::LedgerError&) {
        // Out of descriptors: the callers wait in the queue, and would wake this up over and over.
        listenToNewCallers(false);
        constexpr int pauseMilliseconds = 1'000;
        QTimer::singleShot(pauseMilliseconds, this, [this] { listenToNewCallers(!isCrowded()); });
    }
}

void LocalServer::dismiss(Caller* caller)
{
    const auto found = std::ranges::find_if(
        callers_, [caller](const auto& known) { return known.get() == caller; });
    if (found == callers_.end()) {
        return;
    }
    // It may be in the middle of a call of its own.
    const std::shared_ptr<Caller> leaving(std::move(*found));
    leaving->retire();
    callers_.erase(found);
    QMetaObject::invokeMethod(
        this, [leaving] {}, Qt::QueuedConnection);
    listenToNewCallers(true);
}

void LocalServer::activateSoon(LocalActivation activation)
{
    // It may end in a quit, which takes the callers away.
    QMetaObject::invokeMethod(
        this, [this, known = std::move(activation)] { services_.activate(known); },
        Qt::QueuedConnection);
}

void LocalServer::listenToNewCallers(bool enabled)
{
    for (const Listener& listener : listeners_) {
        listener.notifier->setEnabled(enabled);
    }
}

} // namespace Kestry
