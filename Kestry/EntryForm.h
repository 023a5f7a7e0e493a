#pragma once

#include <tuple>

#include "DayPicker.h"
#include "EditorForm.h"
#include "SessionProjectChoice.h"
#include "StartedText.h"

namespace Kestry {

/// The form of a saved session, or of time added by hand.
class EntryForm final : public Kestry::EditorForm {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("A form comes with its route.")
    Q_PROPERTY(QString name MEMBER name_ NOTIFY edited)
    Q_PROPERTY(QString started READ started WRITE setStarted NOTIFY edited)
    Q_PROPERTY(QString startedHint READ startedHint NOTIFY edited)
    Q_PROPERTY(Kestry::DayPicker* days READ days CONSTANT)
    Q_PROPERTY(QString hours MEMBER hours_ NOTIFY edited)
    Q_PROPERTY(QString minutes MEMBER minutes_ NOTIFY edited)
    Q_PROPERTY(QString durationHint READ durationHint NOTIFY edited)
    Q_PROPERTY(Kestry::SessionProjectChoice* choice READ choice CONSTANT)
    Q_PROPERTY(bool isBillable MEMBER isBillable_ NOTIFY edited)
    Q_PROPERTY(QString savedRate READ savedRate CONSTANT)
    Q_PROPERTY(bool isImported READ isImported CONSTANT)

public:
    EntryForm(const EditorWorld& world, const Editor::EntryForm& route);

    [[nodiscard]] Kind kind() const override { return Entry; }
    [[nodiscard]] QString title() const override;
    [[nodiscard]] QString line() const override;
    [[nodiscard]] bool canDelete() const override { return entryID_.has_value(); }
    [[nodiscard]] bool isEdited() const override
    {
        return drafts() != loaded_ || typed_ || choice_.isEdited();
    }
    [[nodiscard]] QString started() const { return started_; }
    /// The text keeps the meaning that it has now, however late the form is saved, and wherever the
    /// clocks are by then.
    void setStarted(const QString& text);
    /// The quiet hints below fields; empty when the texts can be read.
    [[nodiscard]] QString startedHint() const;
    [[nodiscard]] QString durationHint() const;
    /// The calendar page of the start.
    [[nodiscard]] DayPicker* days() { return &days_; }
    [[nodiscard]] SessionProjectChoice* choice() { return &choice_; }
    /// The session's own rate, or that it is not set; empty for time added by hand.
    [[nodiscard]] QString savedRate() const { return savedRate_; }
    [[nodiscard]] bool isImported() const { return isImported_; }

    /// Opens the calendar on the day of the start; on today while that cannot be read.
    Q_INVOKABLE void openDays();
    /// Step the length by whole hours or whole minutes, never out of its limits. Do nothing while
    /// the fields cannot be read.
    Q_INVOKABLE void stepHours(int by);
    Q_INVOKABLE void stepMinutes(int by);

protected:
    void carryOut() override;
    void deleteRecord() override;

private:
    using Drafts = std::tuple<QString, QString, QString, bool>;
    [[nodiscard]] Drafts drafts() const { return {name_, hours_, minutes_, isBillable_}; }
    void load(const KestryCore::TimeEntry& entry);
    void loadNew();
    [[nodiscard]] std::optional<KestryCore::Uuid> clientOfPage() const;
    void showStart();
    void chooseDay(const KestryCore::CalendarDay& day);
    [[nodiscard]] KestryCore::Date start() const;
    [[nodiscard]] bool isDurationEdited() const;
    [[nodiscard]] double duration() const;
    void add();
    void update(const KestryCore::Uuid& id);
    void keepUnedited(KestryCore::EntryChange& change) const;

    /// What a typed start is told from.
    struct Typed {
        KestryCore::Date at;
        KestryCore::ZoneCalendar calendar;
    };

    std::optional<KestryCore::Uuid> entryID_; ///< Nullopt: time added by hand.
    StartedText startedText_;
    QString name_;
    QString started_;
    QString shownStart_;         ///< `started_` while it is not edited.
    std::optional<Typed> typed_; ///< Nullopt while `started_` is not edited.
    QString hours_;
    QString minutes_;
    bool isBillable_ = true;
    std::optional<KestryCore::Date> originalStart_; ///< Exact, as the text is not.
    std::optional<double> originalDuration_;        ///< The same.
    QString savedRate_;
    bool isImported_ = false;
    SessionProjectChoice choice_;
    DayPicker days_;
    Drafts loaded_;
};

} // namespace Kestry
