#include "Routes.h"

namespace Kestry {
namespace {

std::string textOrNew(const std::optional<KestryCore::Uuid>& id)
{
    return id ? id->text() : "new";
}

std::string idOf(const Editor::ClientForm& form)
{
    return "client-" + textOrNew(form.clientID);
}

std::string idOf(const Editor::ProjectForm& form)
{
    return "project-" + textOrNew(form.projectID ? form.projectID : form.clientID);
}

std::string idOf(const Editor::EntryForm& form)
{
    return "entry-" + textOrNew(form.entryID);
}

std::string idOf(const Editor::ActiveForm& form)
{
    return "active-" + form.sessionID.text();
}

} // namespace

std::string_view rawValue(Destination destination)
{
    switch (destination) {
    case Destination::overview:
        return "Overview";
    case Destination::sessions:
        return "Sessions";
    case Destination::client:
        return "Client";
    case Destination::settings:
        break;
    }
    return "Settings";
}

std::string Editor::id() const
{
    return std::visit([](const auto& each) { return idOf(each); }, form);
}

} // namespace Kestry
