#include "WorkspaceBridge.h"

#include <algorithm>

#include "ClockJumpText.h"

namespace Kestry {
namespace {

QString text(std::string_view utf8)
{
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

} // namespace

WorkspaceBridge::WorkspaceBridge(Commander& commander, KestryCore::TimeStore& store,
    AppState& state, const KestryCore::Observable<KestryCore::ZoneCalendar>& calendar,
    ClientLogos& logos)
    : commander_(commander), store_(store), calendar_(calendar), state_(state), clients_(logos)
{
    const auto follow = [this](const auto& observable) {
        subscriptions_.push_back(observable.observe([this](const auto&) { refresh(); }));
    };
    follow(store_.data());
    follow(store_.errorMessage());
    follow(store_.recoveredSession());
    follow(store_.clockJump());
    follow(calendar_);
    follow(state_.destination);
    follow(state_.editor);
    follow(state_.exportMessage);
    follow(state_.updateMessage);
    follow(state_.selectedClient);
    refresh();
}

QString WorkspaceBridge::destination() const
{
    return text(rawValue(*state_.destination));
}

bool WorkspaceBridge::hasSelectedClient() const
{
    const auto& selected = *state_.selectedClient;
    return selected && store_.data()->clients.find(*selected) != nullptr;
}

QString WorkspaceBridge::alertTitle() const
{
    if (store_.errorMessage()->has_value()) {
        return "Your time needs attention";
    }
    if (state_.updateMessage->has_value()) {
        return "Update postponed";
    }
    return state_.exportMessage->has_value() ? "Export complete" : "";
}

QString WorkspaceBridge::alertMessage() const
{
    for (const auto* message :
        {&*store_.errorMessage(), &*state_.updateMessage, &*state_.exportMessage}) {
        if (*message) {
            return text(**message);
        }
    }
    return {};
}

QString WorkspaceBridge::clockJump() const
{
    const auto& jump = *store_.clockJump();
    return jump ? text(clockJumpText(*jump, *calendar_)) : QString();
}

QString WorkspaceBridge::editorID() const
{
    const auto& editor = *state_.editor;
    return editor ? text(editor->id()) : QString();
}

void WorkspaceBridge::go(const QString& destination)
{
    const auto found = std::ranges::find(allDestinations, destination.toStdString(), rawValue);
    if (found != allDestinations.end()) {
        state_.destination.assign(*found);
    }
}

void WorkspaceBridge::chooseClient(const QString& recordID)
{
    state_.selectedClient.assign(KestryCore::Uuid::parse(recordID.toStdString()));
    state_.destination.assign(Destination::client);
}

void WorkspaceBridge::dismissAlert()
{
    if (store_.errorMessage()->has_value()) {
        store_.dismissFailure();
    } else if (state_.updateMessage->has_value()) {
        state_.updateMessage.assign(std::nullopt);
    } else {
        state_.exportMessage.assign(std::nullopt);
    }
}

void WorkspaceBridge::closeEditor()
{
    state_.editor.assign(std::nullopt);
}

void WorkspaceBridge::refresh()
{
    const bool isOnClients = *state_.destination == Destination::client;
    clients_.show(store_.data()->clients, isOnClients ? *state_.selectedClient : std::nullopt);
    emit changed();
}

} // namespace Kestry
