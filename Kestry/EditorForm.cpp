#include "EditorForm.h"

#include "TextForms.h"

namespace Kestry {

using KestryCore::Uuid;

namespace {

QString text(std::string_view utf8)
{
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

template <class Form>
const Form* formOf(const std::optional<Editor>& editor)
{
    return editor ? std::get_if<Form>(&editor->form) : nullptr;
}

} // namespace

EditorForm::EditorForm(KestryCore::TimeStore& store, AppState& state) : store_(store), state_(state)
{
    subscriptions_.push_back(state_.editor.observe([this](const auto&) { follow(); }));
    subscriptions_.push_back(store_.data().observe([this](const auto&) { listProjects(); }));
    follow();
}

void EditorForm::follow()
{
    if (*state_.editor != shown_) {
        shown_ = *state_.editor;
        load();
    }
}

EditorForm::Kind EditorForm::kind() const
{
    const auto* client = formOf<Editor::ClientForm>(shown_);
    const auto* project = formOf<Editor::ProjectForm>(shown_);
    if (client && !client->clientID) {
        return Client;
    }
    if (project && !project->projectID) {
        return Project;
    }
    return formOf<Editor::ActiveForm>(shown_) ? Session : None;
}

QString EditorForm::title() const
{
    switch (kind()) {
    case Client:
        return "New client";
    case Project:
        return "Make space for good work.";
    case Session:
        return "Edit current session";
    case None:
        break;
    }
    return {};
}

QString EditorForm::line() const
{
    switch (kind()) {
    case Client:
        return "Branding, projects, and billing.";
    case Project:
        return "New sessions use this rate. Leave it blank if unknown.";
    case Session:
        return "Change the title or project without interrupting the timer.";
    case None:
        break;
    }
    return {};
}

QString EditorForm::clientName() const
{
    std::optional<Uuid> clientID;
    if (const auto* form = formOf<Editor::ProjectForm>(shown_)) {
        clientID = form->clientID;
    } else if (const auto project = sessionProject()) {
        clientID = project->clientID;
    }
    const auto* client = clientID ? store_.data()->clients.find(*clientID) : nullptr;
    return client ? text(client->name) : QString();
}

std::optional<KestryCore::Project> EditorForm::sessionProject() const
{
    const auto& active = store_.data()->active;
    return active ? store_.project(active->projectID) : std::nullopt;
}

void EditorForm::load()
{
    const auto& active = store_.data()->active;
    const bool isSession = kind() == Session && active;
    name_ = isSession ? text(active->title) : QString();
    projectID_ = isSession ? std::optional(active->projectID) : std::nullopt;
    rate_.clear();
    projectsEnabled_ = true;
    setError({});
    listProjects();
    emit opened();
    emit edited();
}

void EditorForm::listProjects()
{
    std::vector<TargetRow> rows;
    const auto current = kind() == Session ? sessionProject() : std::nullopt;
    for (const KestryCore::Project& project : store_.data()->projects) {
        if (current && project.clientID == current->clientID && !project.isClientDefault) {
            rows.push_back({text(project.id.text()), text(project.name), {},
                projectID_ == std::optional(project.id)});
        }
    }
    projects_.setRows(std::move(rows));
}

void EditorForm::chooseProject(const QString& recordID)
{
    projectID_ = Uuid::parse(recordID.toStdString());
    listProjects();
}

void EditorForm::save()
{
    try {
        switch (kind()) {
        case Client:
            saveClient();
            break;
        case Project:
            saveProject(*formOf<Editor::ProjectForm>(shown_));
            break;
        case Session:
            saveSession(*formOf<Editor::ActiveForm>(shown_));
            break;
        case None:
            break;
        }
        close();
    } catch (const std::exception& failure) {
        setError(text(KestryCore::failureText(failure)));
        store_.dismissFailure(); // the form tells it, where it can be mended
    }
}

void EditorForm::saveClient()
{
    KestryCore::NewClient client;
    client.name = name_.toStdString();
    client.projectsEnabled = projectsEnabled_;
    // With projects the rates stand in these, and the client has none of its own.
    const auto cents = projectsEnabled_ ? std::nullopt : KestryCore::readRate(rate_.toStdString());
    client.rateCents = cents.value_or(0);
    client.rateIsKnown = cents.has_value();
    const Uuid id = store_.addClient(client);
    state_.selectedClient.assign(id);
    state_.sessionClientID.assign(id);
    state_.selectedProject.assign(std::nullopt);
    state_.destination.assign(Destination::client);
}

void EditorForm::saveProject(const Editor::ProjectForm& form)
{
    const auto* client = form.clientID ? store_.data()->clients.find(*form.clientID) : nullptr;
    if (!client || !client->projectsEnabled) {
        throw KestryCore::LedgerError("Enable projects in the client editor first.");
    }
    const auto cents = KestryCore::readRate(rate_.toStdString());
    const Uuid id =
        store_.addProject(client->id, {name_.toStdString(), cents.value_or(0), cents.has_value()});
    state_.sessionClientID.assign(form.clientID);
    state_.selectedProject.assign(id);
}

void EditorForm::saveSession(const Editor::ActiveForm& form)
{
    const auto project = sessionProject();
    const bool isMoved = project && projectID_ != std::optional(project->id);
    store_.updateActiveSession(
        form.sessionID, name_.toStdString(), isMoved ? projectID_ : std::nullopt);
}

void EditorForm::close()
{
    state_.editor.assign(std::nullopt);
}

void EditorForm::setError(const QString& error)
{
    if (error != error_) {
        error_ = error;
        emit errorChanged();
    }
}

} // namespace Kestry
