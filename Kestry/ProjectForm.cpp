#include "ProjectForm.h"

namespace Kestry {

ProjectForm::ProjectForm(const EditorWorld& world, const Editor::ProjectForm& route)
    : EditorForm(world), projectID_(route.projectID), clientID_(route.clientID)
{
    if (const auto project = projectID_ ? store().project(*projectID_) : std::nullopt) {
        name_ = shownText(project->name);
        rate_ = project->rateIsKnown ? shownText(KestryCore::editRateText(project->hourlyRateCents))
                                     : QString();
        clientID_ = project->clientID;
    }
    const auto* client = clientID_ ? store().data()->clients.find(*clientID_) : nullptr;
    clientName_ = client ? shownText(client->name) : QString();
    loaded_ = drafts();
}

QString ProjectForm::title() const
{
    return projectID_ ? "The project details." : "Make space for good work.";
}

QString ProjectForm::line() const
{
    return "New sessions use this rate. Leave it blank if unknown.";
}

void ProjectForm::carryOut()
{
    const auto* client = clientID_ ? store().data()->clients.find(*clientID_) : nullptr;
    if (!client || !client->projectsEnabled) {
        throw KestryCore::LedgerError("Enable projects in the client editor first.");
    }
    if (projectID_) {
        store().updateProject(*projectID_, values(store().project(*projectID_)));
        return;
    }
    const auto added = store().addProject(*clientID_, values(std::nullopt));
    state().sessionClientID.assign(clientID_);
    state().selectedProject.assign(added);
}

/// What was not edited may have changed elsewhere since the form was opened, and stays so.
KestryCore::ProjectValues ProjectForm::values(
    const std::optional<KestryCore::Project>& stored) const
{
    const auto& [name, rate] = loaded_;
    KestryCore::ProjectValues values;
    values.name = stored && name_ == name ? stored->name : name_.toStdString();
    if (stored && rate_ == rate) {
        values.rateCents = stored->hourlyRateCents;
        values.rateIsKnown = stored->rateIsKnown;
    } else {
        const auto cents = KestryCore::readRate(rate_.toStdString());
        values.rateCents = cents.value_or(0);
        values.rateIsKnown = cents.has_value();
    }
    return values;
}

} // namespace Kestry
