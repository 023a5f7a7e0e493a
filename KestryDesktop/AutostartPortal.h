#pragma once

#include "Autostart.h"
#include "PortalRequest.h"
#include "UserDefaults.h"

namespace Kestry {

/// By the desktop's portal, for a program in a sandbox. The portal asks the user, and tells nobody
/// afterwards: what it answered last is kept in the user's settings.
class AutostartPortal final : public Autostart {
public:
    /// The defaults must outlive this. `bus` is called with the first change. `refused` is called
    /// with words for people when the portal cannot be asked.
    AutostartPortal(
        UserDefaults& defaults, std::function<void(const std::string&)> refused,
        PortalRequest::Bus bus = [] { return QDBusConnection::sessionBus(); });

    [[nodiscard]] bool isOn() const override;
    void set(bool isOn) override;
    void follow(std::function<void()> changed) override { changed_ = std::move(changed); }

private:
    void take(const std::optional<PortalAnswer>& answer);

    UserDefaults& defaults_;
    std::function<void(const std::string&)> refused_;
    PortalRequest portal_;
    std::function<void()> changed_;
};

} // namespace Kestry
