#pragma once

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include "Metrics.h"
#include "TextForms.h"

namespace Kestry {

/// What a card of a client's dashboard says.
class DashboardFigure {
    Q_GADGET
    QML_VALUE_TYPE(dashboardFigure)
    Q_PROPERTY(QString title MEMBER title)
    Q_PROPERTY(QString value MEMBER value)
    Q_PROPERTY(QString line MEMBER line)
    Q_PROPERTY(QString help MEMBER help)
    Q_PROPERTY(QString spoken MEMBER spoken)

public:
    QString title;
    QString value;
    QString line;   ///< Below the value.
    QString help;   ///< How the value comes about; empty where that is plain.
    QString spoken; ///< All but the help in one line, for a screen reader.

    friend bool operator==(const DashboardFigure&, const DashboardFigure&) = default;
};

/// All cards, and the sentence below them.
struct DashboardFigures {
    DashboardFigure earnings;
    DashboardFigure hours;
    DashboardFigure monthHours;
    DashboardFigure average;
    QString unpriced; ///< The billable time without a rate; empty without any.
};

/// The figures of a client as text. `month` is the name of the current month.
[[nodiscard]] DashboardFigures dashboardFigures(const KestryCore::ClientMetrics& metrics,
    const QString& month, const KestryCore::MoneyText& money);

} // namespace Kestry
