#include "AutostartPortal.h"

#include <utility>

namespace Kestry {
namespace {

constexpr auto startKey = "startsWithDesktop";
constexpr int patienceMilliseconds = 5000;

} // namespace

AutostartPortal::AutostartPortal(
    UserDefaults& defaults, std::function<void(const std::string&)> refused, PortalRequest::Bus bus)
    : defaults_(defaults), refused_(std::move(refused)),
      portal_(std::move(bus), "kestryBackground", patienceMilliseconds)
{
}

bool AutostartPortal::isOn() const
{
    return defaults_.boolean(startKey).value_or(false);
}

void AutostartPortal::set(bool isOn)
{
    portal_.ask(
        {"org.freedesktop.portal.Background", "RequestBackground", {PortalRequest::parentWindow()},
            {{"reason", "Keep your timer at the top of the screen"}, {"autostart", isOn},
                {"commandline", QStringList{"kestry"}}}},
        [this](const auto& answer) { take(answer); });
}

void AutostartPortal::take(const std::optional<PortalAnswer>& answer)
{
    if (!answer) {
        refused_("The desktop does not let Kestry choose whether it starts with it. Use the "
                 "desktop's own settings.");
    } else if (answer->code == 0) {
        defaults_.setBoolean(startKey, answer->results.value("autostart").toBool());
    }
    if (changed_) {
        changed_(); // also back to what it was, where the user was asked and said no
    }
}

} // namespace Kestry
