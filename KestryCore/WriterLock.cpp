#include "WriterLock.h"

namespace KestryCore {

bool WriterLock::acquire()
{
    if (lock_ || !files_.status(directory_)) {
        return true;
    }
    LockAttempt attempt = files_.lockDirectory(directory_);
    lock_ = std::move(attempt.lock);
    holder_ = std::move(attempt.holder);
    return lock_ != nullptr;
}

ClaimAge WriterLock::acquireForWrite()
{
    if (lock_) {
        return ClaimAge::heldBefore;
    }
    if (!acquire()) {
        throw LedgerError(refusal());
    }
    return ClaimAge::takenNow;
}

std::string WriterLock::refusal() const
{
    return (holder_.empty() ? std::string("Another program") : holder_)
        + " is using this data directory, and only one program can write to it at a time.";
}

} // namespace KestryCore
