#pragma once

#include <QAbstractListModel>
#include <QtQml/qqmlregistration.h>

#include <optional>
#include <vector>

#include "ActivityChart.h"

namespace Kestry {

/// The bars of the activity chart, one for each day of a month. A bar is told as changed when its
/// text or its look has changed: until a minute is full, its height changes too little to be seen.
class ActivityBars : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The bars come from the bridge.")
public:
    enum Role { BarHeightRole = Qt::UserRole, LookRole, LabelRole };
    /// How a bar is drawn.
    enum Look { Later, Today, Busy, Idle };
    Q_ENUM(Look)

    /// Shows these bars. `today` is the first moment of today.
    void show(std::vector<KestryCore::ActivityBar> bars, KestryCore::Date today,
        const KestryCore::DayText& days);

    /// The row at which somebody begins to read: today's, else the first. -1 without bars.
    Q_INVOKABLE [[nodiscard]] int firstRow() const;

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

private:
    [[nodiscard]] bool isSameMonth(const std::vector<KestryCore::ActivityBar>& bars) const;

    std::vector<KestryCore::ActivityBar> bars_;
    KestryCore::Date today_;
    std::optional<KestryCore::DayText> days_;
};

} // namespace Kestry
