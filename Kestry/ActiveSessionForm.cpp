#include "ActiveSessionForm.h"

#include <QTime>

#include <cmath>

namespace Kestry {

ActiveSessionForm::ActiveSessionForm(const EditorWorld& world, const Editor::ActiveForm& route)
    : EditorForm(world), sessionID_(route.sessionID),
      choice_(world, [this](const auto& step) { return attempt(step); })
{
    if (const auto* active = session()) {
        name_ = shownText(active->title);
        choice_.loadProject(active->projectID);
    }
    loadedName_ = name_;
    follow(store().data(), [this](const auto&) { tick(); });
    follow(world.calendar, [this](const auto&) { emit elapsedChanged(); });
    tick();
}

QString ActiveSessionForm::line() const
{
    return "Change the title or project without interrupting the timer.";
}

const KestryCore::ActiveSession* ActiveSessionForm::session() const
{
    const auto& active = store().data()->active;
    return active && active->id == sessionID_ ? &*active : nullptr;
}

QString ActiveSessionForm::pausedAt() const
{
    const auto* active = session();
    if (!active || !active->isPaused() || active->spans.empty()) {
        return {};
    }
    const auto time = world().calendar->wallTime(active->spans.back().end);
    return world().locale.toString(QTime(time.hour, time.minute), QLocale::ShortFormat);
}

void ActiveSessionForm::tick()
{
    tick_.cancel();
    if (const auto* active = session()) {
        const double seconds = store().elapsed(world().now());
        elapsed_ = shownText(KestryCore::clockText(seconds));
        if (!active->isPaused()) {
            // Just after the next full second, however the wake-up is rounded.
            constexpr double margin = 0.001;
            const double rest = 1.0 - (seconds - std::floor(seconds)) + margin;
            tick_ = world().scheduler.after(rest, [this] { tick(); });
        }
    }
    emit elapsedChanged();
}

void ActiveSessionForm::retire()
{
    tick_.cancel();
    EditorForm::retire();
}

void ActiveSessionForm::carryOut()
{
    const auto* active = session();
    // A title that was not edited may have changed elsewhere since the form was opened.
    const bool isKept = active && name_ == loadedName_;
    const std::string title = isKept ? active->title : name_.toStdString();
    store().updateActiveSession(sessionID_, title, choice_.target());
}

} // namespace Kestry
