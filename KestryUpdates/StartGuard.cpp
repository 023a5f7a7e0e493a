#include "StartGuard.h"

#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/signalfd.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <thread>

// The header of this C library does not say it for C++.
extern "C" {
#include <sys/pidfd.h>
}

#include "Descriptor.h"

namespace Kestry {

using namespace KestryCore;

namespace {

using std::chrono::milliseconds;

constexpr std::array quitSignals{SIGTERM, SIGINT, SIGHUP};
constexpr int signalledStatus = 128; // what shells add to the number of a signal
constexpr int refusedStatus = 1;     // of a program that says why it does not start

/// The words of a command line, as the system takes them.
class Words {
public:
    Words(const std::string& program, const std::vector<std::string>& arguments) : words_(arguments)
    {
        words_.insert(words_.begin(), program);
        for (std::string& word : words_) {
            pointers_.push_back(word.data());
        }
        pointers_.push_back(nullptr);
    }
    [[nodiscard]] char* const* get() const { return pointers_.data(); }

private:
    std::vector<std::string> words_;
    std::vector<char*> pointers_;
};

sigset_t setOf(bool withQuitSignals)
{
    sigset_t set;
    sigemptyset(&set);
    for (const int number : quitSignals) {
        if (withQuitSignals) {
            sigaddset(&set, number);
        }
    }
    return set;
}

/// A version on trial, running.
class Guard {
public:
    Guard(UpdatePrefix& prefix, const UpdatePrefix::Trial& trial) : prefix_(prefix), trial_(trial)
    {
        const sigset_t held = setOf(true);
        sigprocmask(SIG_BLOCK, &held, nullptr);
        signals_ = Descriptor(signalfd(-1, &held, SFD_CLOEXEC | SFD_NONBLOCK));
    }

    int run(const std::vector<std::string>& arguments)
    {
        start(arguments);
        while (process_ && !hasEnded()) { }
        if (hasFailed() && goBack()) {
            becomePrevious(arguments);
        }
        return status_;
    }

private:
    void start(const std::vector<std::string>& arguments)
    {
        const std::string program = prefix_.program(trial_.version);
        const Words words(program, arguments);
        const sigset_t none = setOf(false);
        posix_spawnattr_t attributes{};
        posix_spawnattr_init(&attributes);
        posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK);
        posix_spawnattr_setsigmask(&attributes, &none);
        const int code =
            posix_spawn(&number_, program.c_str(), nullptr, &attributes, words.get(), environ);
        posix_spawnattr_destroy(&attributes);
        if (code == 0) {
            process_ = Descriptor(pidfd_open(number_, 0));
        }
        if (code != 0 || !process_) {
            status_ = 127; // as shells say it
        }
    }

    /// The statuses with which the program refuses to start decide nothing: another version would
    /// refuse as well, because of what it was started with or where.
    [[nodiscard]] bool hasFailed() const
    {
        return isOnTrial() && !wasAskedToEnd_ && status_ != 0 && status_ != refusedStatus;
    }

    /// Waits. Returns whether the process has ended.
    bool hasEnded()
    {
        std::array<pollfd, 2> waiting{
            pollfd{process_.number(), POLLIN, 0}, pollfd{signals_.number(), POLLIN, 0}};
        poll(waiting.data(), waiting.size(), -1);
        if ((waiting[1].revents & POLLIN) != 0) {
            passOnSignals();
        }
        return (waiting[0].revents & POLLIN) != 0 && takeStatus();
    }

    bool takeStatus()
    {
        int status = 0;
        if (waitpid(number_, &status, WNOHANG) != number_) {
            return false;
        }
        status_ = WIFEXITED(status) ? WEXITSTATUS(status) : signalledStatus + WTERMSIG(status);
        return true;
    }

    void passOnSignals()
    {
        signalfd_siginfo info{};
        while (::read(signals_.number(), &info, sizeof info) == sizeof info) {
            wasAskedToEnd_ = true;
            // A terminal sends it to both.
            if (info.ssi_code != SI_KERNEL) {
                pidfd_send_signal(process_.number(), static_cast<int>(info.ssi_signo), nullptr, 0);
            }
        }
    }

    [[nodiscard]] bool isOnTrial() const
    {
        try {
            return prefix_.trial().has_value();
        } catch (const LedgerError&) {
            return false; // Nothing goes back on a guess.
        }
    }

    /// Lets the link go back; false when it cannot, or when the version has confirmed meanwhile.
    bool goBack()
    {
        constexpr int mostTries = 50;
        constexpr milliseconds pause{100};
        for (int tries = 0; tries < mostTries; ++tries) {
            try {
                const auto lock = prefix_.lock();
                return prefix_.goBack();
            } catch (const FileError&) {
                return false;
            } catch (const LedgerError&) {
                std::this_thread::sleep_for(pause); // Somebody else is at it.
            }
        }
        return false;
    }

    [[noreturn]] void becomePrevious(const std::vector<std::string>& arguments) const
    {
        const sigset_t held = setOf(true);
        sigprocmask(SIG_UNBLOCK, &held, nullptr);
        becomeProgram(prefix_.program(trial_.previous), arguments);
    }

    UpdatePrefix& prefix_;
    UpdatePrefix::Trial trial_;
    Descriptor signals_;
    Descriptor process_;
    pid_t number_ = 0;
    int status_ = 0;
    bool wasAskedToEnd_ = false;
};

/// One that cannot be read guards nothing, and keeps nobody from starting.
std::optional<UpdatePrefix::Trial> readableTrial(const UpdatePrefix& prefix)
{
    try {
        return prefix.trial();
    } catch (const LedgerError&) {
        return std::nullopt;
    }
}

} // namespace

void becomeProgram(const std::string& program, const std::vector<std::string>& arguments)
{
    const Words words(program, arguments);
    execv(program.c_str(), words.get());
    throw fileError(program, "started", errno);
}

int startCurrentVersion(UpdatePrefix& prefix, const std::vector<std::string>& arguments)
{
    // Whoever was this process before may have held signals back.
    const sigset_t held = setOf(true);
    sigprocmask(SIG_UNBLOCK, &held, nullptr);
    signal(SIGCHLD, SIG_DFL); // Where it is ignored, nobody is told how a child has ended.
    if (const std::optional<UpdatePrefix::Trial> trial = readableTrial(prefix)) {
        return Guard(prefix, *trial).run(arguments);
    }
    const std::optional<UpdateVersion> current = prefix.current();
    if (!current) {
        throw LedgerError("This installation of Kestry has no current version.");
    }
    becomeProgram(prefix.program(*current), arguments);
}

} // namespace Kestry
