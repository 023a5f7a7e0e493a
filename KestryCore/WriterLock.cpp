#include "WriterLock.h"

namespace KestryCore {

bool WriterLock::acquire()
{
    if (lock_ || !exists(files_, directory_)) {
        return true;
    }
    LockAttempt attempt = files_.lockDirectory(directory_);
    lock_ = std::move(attempt.lock);
    holder_ = std::move(attempt.holder);
    return lock_ != nullptr;
}

bool WriterLock::acquireForFirstWrite()
{
    if (lock_) {
        return false;
    }
    if (!acquire()) {
        throw LedgerError(refusal());
    }
    return true;
}

std::string WriterLock::refusal() const
{
    return (holder_.empty() ? std::string("Another program") : holder_)
        + " is using this data directory, and only one program can write to it at a time.";
}

} // namespace KestryCore
