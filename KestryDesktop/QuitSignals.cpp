#include "QuitSignals.h"

#include <csignal>
#include <sys/signalfd.h>
#include <unistd.h>

namespace Kestry {
namespace {

sigset_t quitSignalSet()
{
    sigset_t quitSignals;
    sigemptyset(&quitSignals);
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        sigaddset(&quitSignals, signal);
    }
    return quitSignals;
}

int openQuitSignals()
{
    const sigset_t quitSignals = quitSignalSet();
    return signalfd(-1, &quitSignals, SFD_CLOEXEC | SFD_NONBLOCK);
}

} // namespace

// With the quitSignals blocked and read from a descriptor there is no handler at all, and so
// nothing that could run between two instructions of ours.
void holdQuitSignals()
{
    const sigset_t quitSignals = quitSignalSet();
    pthread_sigmask(SIG_BLOCK, &quitSignals, nullptr);
}

QuitSignals::QuitSignals(std::function<void()> quitRequested)
    : notifier_(openQuitSignals(), QSocketNotifier::Read)
{
    QObject::connect(&notifier_, &QSocketNotifier::activated, &notifier_,
        [this, quit = std::move(quitRequested)] {
            signalfd_siginfo signal{};
            const auto descriptor = static_cast<int>(notifier_.socket());
            while (read(descriptor, &signal, sizeof signal) == sizeof signal) { }
            quit();
        });
}

QuitSignals::~QuitSignals()
{
    close(static_cast<int>(notifier_.socket()));
}

} // namespace Kestry
