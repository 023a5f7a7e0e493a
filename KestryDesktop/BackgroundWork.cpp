#include "BackgroundWork.h"

#include <utility>

namespace Kestry {

BackgroundWork::BackgroundWork()
{
    pool_.setMaxThreadCount(1);
}

BackgroundWork::~BackgroundWork()
{
    pool_.clear();
    pool_.waitForDone();
}

void BackgroundWork::run(std::function<void()> work, std::function<void()> done)
{
    pool_.start([this, work = std::move(work), done = std::move(done)] {
        work();
        QMetaObject::invokeMethod(&context_, done, Qt::QueuedConnection);
    });
}

} // namespace Kestry
