#include "EditorForm.h"

#include <exception>

namespace Kestry {

QString shownText(std::string_view utf8)
{
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

QString rateHint(const QString& rate)
{
    try {
        static_cast<void>(KestryCore::readRate(rate.toStdString()));
        return {};
    } catch (const KestryCore::LedgerError&) {
        return "US dollars, as in 150 or 150.50";
    }
}

bool EditorForm::attempt(const std::function<void()>& step)
{
    try {
        step();
        setError({});
        return true;
    } catch (const std::exception& failure) {
        setError({}); // the same refusal is told anew
        setError(shownText(KestryCore::failureText(failure)));
        store().dismissFailure(); // the form shows it itself
        return false;
    }
}

void EditorForm::save()
{
    if (attempt([this] { carryOut(); })) {
        close();
    }
}

void EditorForm::close()
{
    ask(NoQuestion);
    state().editor.assign(std::nullopt);
}

void EditorForm::requestRoute(const std::optional<Editor>& route)
{
    if (isEdited()) {
        next_ = route;
        ask(DiscardChanges);
    } else {
        leaveFor(route);
    }
}

void EditorForm::leaveFor(const std::optional<Editor>& route)
{
    close();
    if (route) {
        state().editor.assign(route);
    }
}

void EditorForm::requestDelete()
{
    if (canDelete()) {
        ask(DeleteSession);
    }
}

void EditorForm::confirm()
{
    const Question asked = question_;
    ask(NoQuestion);
    if (asked == DiscardChanges) {
        leaveFor(next_);
    } else if (asked == DeleteSession && attempt([this] { deleteRecord(); })) {
        close();
    }
}

void EditorForm::goOn()
{
    ask(NoQuestion);
}

void EditorForm::retire()
{
    isRetired_ = true;
    subscriptions_.clear();
}

void EditorForm::withdrawError(const QString& error)
{
    if (error == error_) {
        setError({});
    }
}

void EditorForm::setError(const QString& error)
{
    if (error != error_) {
        error_ = error;
        emit errorChanged();
    }
}

void EditorForm::ask(Question question)
{
    if (question != question_) {
        question_ = question;
        emit questionChanged();
    }
}

} // namespace Kestry
