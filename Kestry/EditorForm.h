#pragma once

#include <QLocale>
#include <QObject>
#include <QtQml/qqmlregistration.h>

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "AppState.h"
#include "FileChooser.h"
#include "FormLogo.h"
#include "MenuEntry.h"
#include "Scheduler.h"
#include "TextForms.h"
#include "TimeStore.h"
#include "ZoneCalendar.h"

class QQuickItem;

namespace Kestry {

/// Text of the ledger as the views take it.
[[nodiscard]] QString shownText(std::string_view utf8);

/// What all forms need. References must outlive the forms.
struct EditorWorld {
    /// Opens a menu below an item. `name` is what a screen reader calls it.
    using OpenMenu = std::function<void(Menu menu, const QString& name, const QQuickItem& item)>;

    KestryCore::TimeStore& store;
    AppState& state;
    KestryCore::Clock now;
    KestryCore::Scheduler& scheduler;
    const KestryCore::Observable<KestryCore::ZoneCalendar>& calendar;
    KestryCore::MoneyText words;
    QLocale locale; ///< For dates, times and the first day of a week.
    OpenMenu openMenu;
    FileChooser& chooser;
    LogoSource logos;
};

/// One form over the workspace window, from its opening to its closing. It edits drafts, which are
/// loaded once. The ledger changes only in `save`, which closes the form, or sets `error` and
/// changes nothing.
class EditorForm : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("A form comes with its route.")
    Q_PROPERTY(Kind kind READ kind CONSTANT)
    Q_PROPERTY(QString title READ title CONSTANT)
    Q_PROPERTY(QString line READ line CONSTANT)
    Q_PROPERTY(QString error READ error NOTIFY errorChanged)
    Q_PROPERTY(Question question READ question NOTIFY questionChanged)
    Q_PROPERTY(bool canDelete READ canDelete CONSTANT)

public:
    enum Kind { Client, Project, Entry, ActiveSession };
    Q_ENUM(Kind)
    /// What the form asks before it goes on.
    enum Question { NoQuestion, DiscardChanges, DeleteSession };
    Q_ENUM(Question)

    /// The world must outlive the form.
    explicit EditorForm(const EditorWorld& world) : world_(world) { }

    [[nodiscard]] virtual Kind kind() const = 0;
    [[nodiscard]] virtual QString title() const = 0;
    [[nodiscard]] virtual QString line() const = 0;
    [[nodiscard]] virtual bool canDelete() const { return false; }
    /// Whether a draft differs from what was loaded.
    [[nodiscard]] virtual bool isEdited() const = 0;
    /// Why the latest save, or another step, was refused; empty when it was not.
    [[nodiscard]] QString error() const { return error_; }
    [[nodiscard]] Question question() const { return question_; }

    Q_INVOKABLE void save();
    /// Closes the form and drops its drafts.
    Q_INVOKABLE void close();
    /// Closes the form if nothing was edited, else asks `DiscardChanges`.
    Q_INVOKABLE void requestClose() { requestRoute(std::nullopt); }
    /// The same, and the form of the route opens, if there is one, once this one has closed.
    void requestRoute(const std::optional<Editor>& route);
    /// Asks `DeleteSession` if the form can delete its record.
    Q_INVOKABLE void requestDelete();
    /// Does what was asked about.
    Q_INVOKABLE void confirm();
    /// Takes the question back.
    Q_INVOKABLE void goOn();

    /// The form is shown no longer: it stops following the time and the ledger.
    virtual void retire();

signals:
    void edited();
    void errorChanged();
    void questionChanged();

protected:
    /// Carries the drafts into the ledger. Throws LedgerError when that is refused.
    virtual void carryOut() = 0;
    /// Removes the record from the ledger. Called only when `canDelete`.
    virtual void deleteRecord() { }

    /// Runs a step. Returns false when it was refused, and `error` tells why.
    bool attempt(const std::function<void()>& step);
    /// Takes a refusal back that is true no longer; another one stays.
    void withdrawError(const QString& error);
    /// Whether the form is shown no longer.
    [[nodiscard]] bool isRetired() const { return isRetired_; }
    [[nodiscard]] const EditorWorld& world() const { return world_; }
    [[nodiscard]] KestryCore::TimeStore& store() const { return world_.store; }
    [[nodiscard]] AppState& state() const { return world_.state; }
    template <class Value, class Observer>
    void follow(const KestryCore::Observable<Value>& observable, Observer observer)
    {
        subscriptions_.push_back(observable.observe(std::move(observer)));
    }

private:
    void setError(const QString& error);
    void ask(Question question);
    void leaveFor(const std::optional<Editor>& route);

    const EditorWorld& world_;
    QString error_;
    Question question_ = NoQuestion;
    std::optional<Editor> next_; ///< What opens when the changes are discarded.
    bool isRetired_ = false;
    std::vector<KestryCore::Subscription> subscriptions_;
};

/// The quiet hint below a field for a rate; empty when the text can be read.
[[nodiscard]] QString rateHint(const QString& rate);

} // namespace Kestry
