#include "LocalClient.h"

#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>

#include "LedgerError.h"
#include "LocalSocket.h"
#include "PrivateDirectories.h"

namespace Kestry {

namespace {

using Clock = std::chrono::steady_clock;

/// One request and its answer.
class Conversation {
public:
    Conversation(LocalConnection connection, const ClientTimeouts& timeouts)
        : socket_(std::move(connection.socket)), timeouts_(timeouts)
    {
        reply_.process = connection.process;
    }

    LocalReply run(const std::string& message)
    {
        const auto deadline = after(timeouts_.untilTaken);
        if (!send(message, deadline)) {
            return concluded(LocalReply::Outcome::unreached);
        }
        while (!isOver_ && !isTaken_) {
            if (!receive(deadline)) {
                giveUp();
            }
        }
        while (!isOver_) {
            if (!receive(lastMoment_)) {
                return concluded(LocalReply::Outcome::lost);
            }
        }
        return std::move(reply_);
    }

private:
    [[nodiscard]] static Clock::time_point after(double seconds)
    {
        return Clock::now()
            + std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(seconds));
    }

    /// Waits until the socket is ready; false when the deadline has passed.
    [[nodiscard]] bool wait(short events, Clock::time_point deadline) const
    {
        while (true) {
            const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now());
            pollfd wanted{socket_.number(), events, 0};
            const int ready =
                poll(&wanted, 1, static_cast<int>(std::max<std::int64_t>(left.count(), 0)));
            if (ready >= 0 || errno != EINTR) {
                return ready > 0;
            }
        }
    }

    [[nodiscard]] bool send(std::string_view message, Clock::time_point deadline) const
    {
        while (!message.empty()) {
            const ssize_t count =
                ::send(socket_.number(), message.data(), message.size(), MSG_NOSIGNAL);
            if (count > 0) {
                message.remove_prefix(static_cast<std::size_t>(count));
            } else if (errno == EAGAIN ? !wait(POLLOUT, deadline) : errno != EINTR) {
                return false;
            }
        }
        return true;
    }

    /// Waits for bytes and reads them; false when none came before the deadline.
    bool receive(Clock::time_point deadline)
    {
        if (!wait(POLLIN, deadline)) {
            return false;
        }
        takeIn();
        return true;
    }

    void takeIn()
    {
        std::array<char, 65'536> buffer{};
        ssize_t count = -1;
        do {
            count = recv(socket_.number(), buffer.data(), buffer.size(), 0);
        } while (count < 0 && errno == EINTR);
        if (count > 0) {
            frames_.add(std::string_view(buffer.data(), static_cast<std::size_t>(count)));
            takeFrames();
        } else if (count == 0 || errno != EAGAIN) {
            conclude(outcomeOfSilence());
        }
    }

    [[nodiscard]] LocalReply::Outcome outcomeOfSilence() const
    {
        if (isTaken_) {
            return LocalReply::Outcome::lost;
        }
        return isGivenUp_ ? LocalReply::Outcome::silent : LocalReply::Outcome::unreached;
    }

    void takeFrames()
    {
        while (!isOver_) {
            const auto frame = frames_.next();
            if (!frame) {
                break;
            }
            take(*frame);
        }
        if (frames_.isBroken()) {
            conclude(outcomeOfSilence());
        }
    }

    void take(const LocalFrameReader::Frame& frame)
    {
        if (frame.kind == LocalMessageKind::taken) {
            isTaken_ = true;
            lastMoment_ = after(timeouts_.untilAnswered);
        } else if (frame.kind == LocalMessageKind::declined) {
            conclude(LocalReply::Outcome::declined);
        } else if (auto answer = decodeAnswer(frame.content)) {
            reply_.answer = std::move(*answer);
            conclude(LocalReply::Outcome::answered);
        } else {
            conclude(LocalReply::Outcome::lost);
        }
    }

    /// After the shutdown the listener can't send `taken` any more, and it never begins without
    /// having sent it. What it sent before the shutdown can still be read.
    void giveUp()
    {
        isGivenUp_ = true;
        shutdown(socket_.number(), SHUT_RD);
        while (!isOver_ && !isTaken_) {
            takeIn();
        }
    }

    void conclude(LocalReply::Outcome outcome)
    {
        if (!isOver_) {
            reply_.outcome = outcome;
            isOver_ = true;
        }
    }

    LocalReply concluded(LocalReply::Outcome outcome)
    {
        conclude(outcome);
        return std::move(reply_);
    }

    Descriptor socket_;
    ClientTimeouts timeouts_;
    LocalFrameReader frames_{maximumAnswerBytes};
    LocalReply reply_;
    Clock::time_point lastMoment_; // for the answer, once the message is taken
    bool isTaken_ = false;
    bool isGivenUp_ = false;
    bool isOver_ = false;
};

/// Connects; tries again while the listener's queue is full.
LocalConnection call(const std::string& folder, const std::string& name, double mostSeconds)
{
    constexpr useconds_t pause = 10'000;
    const auto start = Clock::now();
    while (true) {
        LocalConnection connection = connectLocally(folder, name);
        const std::chrono::duration<double> waited = Clock::now() - start;
        if (!connection.isBusy || waited.count() >= mostSeconds) {
            return connection;
        }
        usleep(pause);
    }
}

} // namespace

std::string lostCommandText(const LocalReply& reply)
{
    return "Kestry (process " + std::to_string(reply.process)
        + ") took the command on and has not answered. Look at \"kestryctl status\" before you "
          "repeat it: it may have been carried out.";
}

LocalReply handOver(
    const std::string& directory, const std::string& message, const ClientTimeouts& timeouts)
{
    try {
        const std::string name = localSocketName(directory);
        // The listener may have been started with another environment, or before the log-in.
        for (const std::string& place : KestryCore::meetingPlaces()) {
            LocalConnection connection = call(place, name, timeouts.untilTaken);
            if (connection.isBusy) {
                return {LocalReply::Outcome::silent, {}, 0};
            }
            if (connection.socket) {
                return Conversation(std::move(connection), timeouts).run(message);
            }
        }
    } catch (const KestryCore::LedgerError&) {
        // Without a look at the directory the socket has no name.
        return {};
    }
    return {};
}

} // namespace Kestry
