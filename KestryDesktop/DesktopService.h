#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QStringList>
#include <QVariantMap>

#include <functional>
#include <string>
#include <vector>

namespace Kestry {

/// Requests of the desktop over the session bus: to show the program, to open URLs, to carry out an
/// action of its menu entry.
class DesktopService final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    /// Each is called from the event loop, never from within another.
    struct Events {
        std::function<void()> activate;
        std::function<void(const std::vector<std::string>& urls)> open;
        std::function<void(const std::string& action)> perform;
    };

    static constexpr const char* busName = "org.kestry.Kestry";
    static constexpr const char* objectPath = "/org/kestry/Kestry";

    /// Requests the bus name and serves the interface once it is granted. Without a session bus, or
    /// while another process owns the name, it does nothing and reports nothing.
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
