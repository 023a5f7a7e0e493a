#include "AutostartChoice.h"

#include <QFile>
#include <QStandardPaths>

#include <utility>

#include "AutostartFile.h"
#include "AutostartPortal.h"

namespace Kestry {
namespace {

/// Where the user's autostart directory is not the one of the desktop.
bool isInSandbox()
{
    return QFile::exists("/.flatpak-info") || qEnvironmentVariableIsSet("SNAP");
}

} // namespace

std::unique_ptr<Autostart> autostart(
    UserDefaults& defaults, std::function<void(const std::string&)> refused, const QString& program)
{
    if (isInSandbox()) {
        return std::make_unique<AutostartPortal>(defaults, std::move(refused));
    }
    return std::make_unique<AutostartFile>(
        QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation), program);
}

} // namespace Kestry
