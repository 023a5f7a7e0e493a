#pragma once

#include <QObject>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

#include <vector>

#include "ClientsModel.h"
#include "Commander.h"
#include "ZoneCalendar.h"

namespace Kestry {

/// Gives the workspace window its properties and calls: the current page, messages, and what can
/// be commanded.
class WorkspaceBridge final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The application makes the one bridge.")
    Q_PROPERTY(QString destination READ destination NOTIFY changed)
    Q_PROPERTY(bool hasSelectedClient READ hasSelectedClient NOTIFY changed)
    Q_PROPERTY(QString alertTitle READ alertTitle NOTIFY changed)
    Q_PROPERTY(QString alertMessage READ alertMessage NOTIFY changed)
    Q_PROPERTY(QString editorID READ editorID NOTIFY changed)
    Q_PROPERTY(bool isDemo READ isDemo CONSTANT)
    Q_PROPERTY(bool isRecovered READ isRecovered NOTIFY changed)
    Q_PROPERTY(QString clockJump READ clockJump NOTIFY changed)
    Q_PROPERTY(bool canAddProject READ canAddProject NOTIFY changed)
    Q_PROPERTY(Kestry::ClientsModel* clients READ clients CONSTANT)

public:
    /// All arguments must outlive the bridge.
    WorkspaceBridge(Commander& commander, KestryCore::TimeStore& store, AppState& state,
        const KestryCore::Observable<KestryCore::ZoneCalendar>& calendar, ClientLogos& logos);

    /// The name of the page, "Overview" for the first.
    [[nodiscard]] QString destination() const;
    /// Whether the page of the selected client has one to show; false also when it is gone.
    [[nodiscard]] bool hasSelectedClient() const;
    /// The alert over the window: the latest failure, after that was dismissed why an update was
    /// postponed, and then the result of the last export. Both texts are empty without an alert.
    [[nodiscard]] QString alertTitle() const;
    [[nodiscard]] QString alertMessage() const;
    /// Identifies the open form; empty without one.
    [[nodiscard]] QString editorID() const;
    [[nodiscard]] bool isDemo() const { return store_.isDemo(); }
    [[nodiscard]] bool isRecovered() const { return *store_.recoveredSession(); }
    /// The notice of a clock jump; empty without one.
    [[nodiscard]] QString clockJump() const;
    [[nodiscard]] bool canAddProject() const
    {
        return commander_.clientForNewProject().has_value();
    }
    [[nodiscard]] ClientsModel* clients() { return &clients_; }

    /// Goes to the page with this name. Does nothing for any other text.
    Q_INVOKABLE void go(const QString& destination);
    Q_INVOKABLE void chooseClient(const QString& recordID);
    /// Closes the alert that shows; the next one may follow.
    Q_INVOKABLE void dismissAlert();
    Q_INVOKABLE void dismissRecovery() { store_.dismissRecovery(); }
    Q_INVOKABLE void dismissClockJump() { store_.dismissClockJump(); }
    Q_INVOKABLE void closeEditor();

    Q_INVOKABLE void toggleSession() { commander_.toggleSession(); }
    Q_INVOKABLE void stopSession() { commander_.stopSession(); }
    Q_INVOKABLE void showNotch() { commander_.showNotch(); }
    Q_INVOKABLE void newClient() { commander_.newClient(); }
    Q_INVOKABLE void newProject() { commander_.newProject(); }
    Q_INVOKABLE void openSettings() { commander_.openSettings(); }
    Q_INVOKABLE void quit() { commander_.quit(); }

signals:
    void changed();

private:
    void refresh();

    Commander& commander_;
    KestryCore::TimeStore& store_;
    const KestryCore::Observable<KestryCore::ZoneCalendar>& calendar_;
    AppState& state_;
    ClientsModel clients_;
    std::vector<KestryCore::Subscription> subscriptions_;
};

} // namespace Kestry
