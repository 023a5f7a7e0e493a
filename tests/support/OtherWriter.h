#pragma once

#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <functional>
#include <string>

#include "PosixFileSystem.h"

namespace KestryCore {

/// A second process that holds the lock of a directory until it is killed or ends.
class OtherWriter {
public:
    /// The preparation is done in that process, before it asks for the lock.
    explicit OtherWriter(
        const std::string& directory, const std::function<bool()>& prepare = [] { return true; })
    {
        int ready[2];
        if (pipe(ready) != 0) {
            throw LedgerError("No pipe.");
        }
        process_ = fork();
        if (process_ == 0) {
            prctl(PR_SET_NAME, "otherwriter");
            if (!prepare()) {
                _exit(1);
            }
            holdLock(directory, ready[1]);
        }
        ::close(ready[1]);
        char answer = '-';
        hasAsked_ = ::read(ready[0], &answer, 1) == 1;
        isHolding_ = answer == '+';
        ::close(ready[0]);
    }
    OtherWriter(const OtherWriter&) = delete;
    OtherWriter& operator=(const OtherWriter&) = delete;
    ~OtherWriter() { kill(); }

    /// False when its preparation failed.
    bool hasAsked() const { return hasAsked_; }
    bool isHolding() const { return isHolding_; }
    pid_t process() const { return process_; }
    void kill()
    {
        if (process_ > 0) {
            ::kill(process_, SIGKILL);
            waitpid(process_, nullptr, 0);
            process_ = 0;
        }
    }

private:
    [[noreturn]] static void holdLock(const std::string& directory, int ready)
    {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        PosixFileSystem files;
        const LockAttempt attempt = files.lockDirectory(directory);
        const char answer = attempt.lock ? '+' : '-';
        if (::write(ready, &answer, 1) == 1) {
            pause();
        }
        _exit(0);
    }

    pid_t process_ = 0;
    bool hasAsked_ = false;
    bool isHolding_ = false;
};

} // namespace KestryCore
