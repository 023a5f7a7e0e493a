#include "SavingSign.h"

namespace Kestry {

void SavingSign::show(bool shown)
{
    if (shown != isShown_) {
        isShown_ = shown;
        emit changed();
    }
}

} // namespace Kestry
