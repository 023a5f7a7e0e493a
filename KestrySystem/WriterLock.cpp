#include "WriterLock.h"

#include <cassert>

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
    const ClaimAge age = lock_ ? ClaimAge::heldBefore : ClaimAge::takenNow;
    if (!acquire()) {
        throw LedgerError(refusal());
    }
    if (!lock_ || !lock_->isAt(directory_)) {
        throw LedgerError("The data directory has been moved, replaced or removed since it was "
                          "opened, so nothing was saved. Put it back, or start Kestry again to use "
                          "what is there now.");
    }
    assert(isHeld());
    return age;
}

bool WriterLock::isAstray() const
{
    try {
        return lock_ && !lock_->isAt(directory_);
    } catch (const FileError&) {
        return false;
    }
}

std::string WriterLock::refusal() const
{
    return (holder_.empty() ? std::string("Another program") : holder_)
        + " is using this data directory, and only one program can write to it at a time.";
}

} // namespace KestryCore
