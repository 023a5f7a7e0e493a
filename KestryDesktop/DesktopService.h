#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QStringList>
#include <QVariantMap>

#include <functional>
#include <string>
#include <vector>

namespace Kestry {

/// What the desktop asks of the program, by way of the session bus: to show itself, to open URLs,
/// to carry out one of the actions in its menu entry.
class DesktopService final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    /// Each is called on a turn of the event loop of its own.
    struct Events {
        std::function<void()> activate;
        std::function<void(const std::vector<std::string>& urls)> open;
        std::function<void(const std::string& action)> perform;
    };

    static constexpr const char* busName = "org.kestry.Kestry";
    static constexpr const char* objectPath = "/org/kestry/Kestry";

    /// Can be called as soon as the name on the bus is this process's. It never becomes that, and
    /// nothing is said, where there is no bus or another process has the name.
    DesktopService(QDBusConnection bus, Events events);
    DesktopService(const DesktopService&) = delete;
    DesktopService& operator=(const DesktopService&) = delete;
    ~DesktopService() override;

    // The methods of the interface, as it names them.
    // NOLINTBEGIN(readability-identifier-naming)
    Q_SLOT void Activate(const QVariantMap& platformData);
    Q_SLOT void Open(const QStringList& uris, const QVariantMap& platformData);
    Q_SLOT void ActivateAction(
        const QString& name, const QVariantList& parameters, const QVariantMap& platformData);
    // NOLINTEND(readability-identifier-naming)

private:
    void soon(std::function<void()> action);

    QDBusConnection bus_;
    Events events_;
};

} // namespace Kestry
