#include "EditorForms.h"

#include <utility>

#include "ActiveSessionForm.h"
#include "ClientForm.h"
#include "EntryForm.h"
#include "ProjectForm.h"

namespace Kestry {
namespace {

std::unique_ptr<EditorForm> make(const EditorWorld& world, const Editor::ClientForm& route)
{
    return std::make_unique<ClientForm>(world, route);
}

std::unique_ptr<EditorForm> make(const EditorWorld& world, const Editor::ProjectForm& route)
{
    return std::make_unique<ProjectForm>(world, route);
}

std::unique_ptr<EditorForm> make(const EditorWorld& world, const Editor::EntryForm& route)
{
    return std::make_unique<EntryForm>(world, route);
}

std::unique_ptr<EditorForm> make(const EditorWorld& world, const Editor::ActiveForm& route)
{
    return std::make_unique<ActiveSessionForm>(world, route);
}

} // namespace

EditorForms::EditorForms(EditorWorld world)
    : world_(std::move(world)),
      subscription_(world_.state.editor.observe([this](const auto&) { follow(); }))
{
    follow();
}

std::unique_ptr<EditorForm> EditorForms::formFor(const Editor& route) const
{
    return std::visit([this](const auto& form) { return make(world_, form); }, route.form);
}

void EditorForms::follow()
{
    const std::optional<Editor> wanted = *world_.state.editor;
    if (wanted == route_) {
        return;
    }
    if (wanted && current_ && current_->isEdited()) {
        world_.state.editor.assign(route_);
        current_->requestRoute(wanted);
        return;
    }
    route_ = wanted;
    if (current_) {
        current_->retire();
        previous_ = std::move(current_);
    }
    current_ = route_ ? formFor(*route_) : nullptr;
    emit changed();
}

} // namespace Kestry
