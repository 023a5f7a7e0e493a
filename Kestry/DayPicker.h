#pragma once

#include <QAbstractListModel>
#include <QLocale>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

#include "Calendar.h"

namespace Kestry {

/// A calendar page to choose a day from: six weeks around one month, a row for each day. One day is
/// current: it has the keyboard.
class DayPicker final : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("A picker comes with its form.")
    Q_PROPERTY(bool isOpen READ isOpen NOTIFY openChanged)
    Q_PROPERTY(QString month READ month NOTIFY currentChanged)
    Q_PROPERTY(QStringList weekdays READ weekdays CONSTANT)
    Q_PROPERTY(int current READ current NOTIFY currentChanged)
    Q_PROPERTY(QString currentName READ currentName NOTIFY currentChanged)

public:
    enum Role {
        NumberRole = Qt::UserRole,
        NameRole,
        IsInMonthRole,
        IsAllowedRole,
        IsChosenRole,
        IsTodayRole
    };

    /// Only days from `first` on can be chosen.
    DayPicker(QLocale locale, const KestryCore::CalendarDay& first);

    /// Shows the month of the chosen day, which becomes current. Days after `today` cannot be
    /// chosen.
    void open(const KestryCore::CalendarDay& chosen, const KestryCore::CalendarDay& today);
    Q_INVOKABLE void close();
    [[nodiscard]] bool isOpen() const { return isOpen_; }

    /// As in "March 2026".
    [[nodiscard]] QString month() const;
    /// Short names, the locale's first day of a week first.
    [[nodiscard]] QStringList weekdays() const;
    /// The row of the current day.
    [[nodiscard]] int current() const;
    /// The current day as it is spoken: "Saturday, March 14, 2026".
    [[nodiscard]] QString currentName() const { return nameOf(current_); }

    /// A key went down: the arrows, Home and End move in the page, Page Up and Page Down by a month
    /// and with Shift by a year, Return and Space choose the current day, Escape closes. Never
    /// leaves the days that can be chosen. Returns false for other keys.
    Q_INVOKABLE bool press(int key, int modifiers);
    /// Moves by months.
    Q_INVOKABLE void turn(int months);
    /// Chooses a row's day, and closes. Does nothing for a day that cannot be chosen, and while it
    /// is closed.
    Q_INVOKABLE void choose(int row);

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

signals:
    void openChanged();
    void currentChanged();
    void chosen(const KestryCore::CalendarDay& day);

private:
    void setCurrent(const KestryCore::CalendarDay& day);
    [[nodiscard]] KestryCore::CalendarDay dayOf(int row) const;
    [[nodiscard]] QString nameOf(const KestryCore::CalendarDay& day) const;
    [[nodiscard]] bool isAllowed(const KestryCore::CalendarDay& day) const
    {
        return first_ <= day && day <= today_;
    }

    QLocale locale_;
    KestryCore::CalendarDay first_;
    KestryCore::CalendarDay today_;
    KestryCore::CalendarDay chosen_;
    KestryCore::CalendarDay current_;
    KestryCore::CalendarDay pageStart_; ///< The day of row 0.
    bool isOpen_ = false;
};

} // namespace Kestry
