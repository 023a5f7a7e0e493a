#pragma once

#include <memory>

#include "Autostart.h"
#include "UserDefaults.h"

namespace Kestry {

/// How this program starts with the desktop: by the portal in a sandbox, else by a file. The
/// defaults must outlive it. `refused` is called with words when the portal cannot be asked.
[[nodiscard]] std::unique_ptr<Autostart> autostart(UserDefaults& defaults,
    std::function<void(const std::string&)> refused, const QString& program);

} // namespace Kestry
