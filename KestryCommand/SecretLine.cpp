#include "SecretLine.h"

#include <poll.h>
#include <sys/signalfd.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>

#include "Descriptor.h"
#include "StandardStreams.h"

namespace Kestry {

namespace {

/// Signals that end or stop the process wait for as long as this object exists.
class HeldSignals {
public:
    HeldSignals()
    {
        sigemptyset(&held_);
        for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGTSTP}) {
            sigaddset(&held_, signal);
        }
        sigprocmask(SIG_BLOCK, &held_, &before_);
        arrival_ = Descriptor(signalfd(-1, &held_, SFD_CLOEXEC));
    }
    HeldSignals(const HeldSignals&) = delete;
    HeldSignals& operator=(const HeldSignals&) = delete;
    ~HeldSignals() { sigprocmask(SIG_SETMASK, &before_, nullptr); }

    /// Can be read from once a signal waits.
    [[nodiscard]] int arrival() const { return arrival_.number(); }

private:
    sigset_t held_{};
    sigset_t before_{};
    Descriptor arrival_;
};

/// A terminal shows nothing of what is typed for as long as this object exists.
class UnseenTyping {
public:
    explicit UnseenTyping(int terminal) : terminal_(terminal)
    {
        isTerminal_ = tcgetattr(terminal_, &before_) == 0;
        if (isTerminal_) {
            termios unseen = before_;
            unseen.c_lflag &= ~static_cast<tcflag_t>(ECHO);
            unseen.c_lflag |= ECHONL;
            (void)tcsetattr(terminal_, TCSADRAIN, &unseen);
        }
    }
    UnseenTyping(const UnseenTyping&) = delete;
    UnseenTyping& operator=(const UnseenTyping&) = delete;
    ~UnseenTyping()
    {
        if (isTerminal_) {
            (void)tcsetattr(terminal_, TCSADRAIN, &before_);
        }
    }

private:
    int terminal_;
    bool isTerminal_ = false;
    termios before_{};
};

enum class Reading { over, interrupted };

/// Reads on until the line is over, or a signal waits.
Reading readOn(int descriptor, int signals, std::optional<std::string>& line)
{
    while (true) {
        std::array<pollfd, 2> wanted{pollfd{descriptor, POLLIN, 0}, pollfd{signals, POLLIN, 0}};
        if (poll(wanted.data(), wanted.size(), -1) < 0 && errno != EINTR) {
            return Reading::over;
        }
        if (wanted[1].revents != 0) {
            return Reading::interrupted;
        }
        if (wanted[0].revents == 0) {
            continue;
        }
        char letter = 0;
        const ssize_t count = read(descriptor, &letter, 1);
        if (count < 0 && (errno == EINTR || errno == EAGAIN)) {
            continue;
        }
        if (count <= 0) {
            return Reading::over;
        }
        if (!line) {
            line.emplace();
        }
        if (letter == '\n' || line->size() == longestSecretLine) {
            return Reading::over;
        }
        *line += letter;
    }
}

} // namespace

std::optional<std::string> readSecretLine(
    int descriptor, int promptDescriptor, std::string_view prompt)
{
    std::optional<std::string> line;
    while (true) {
        const HeldSignals signals;
        const UnseenTyping typing(descriptor);
        if (isatty(descriptor) != 0) {
            (void)writeAll(promptDescriptor, prompt);
        }
        if (readOn(descriptor, signals.arrival(), line) == Reading::over) {
            return line;
        }
        // The signal takes effect here. After one that only stopped the process it goes on.
    }
}

} // namespace Kestry
