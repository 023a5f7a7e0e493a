#pragma once

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace Kestry {

/// A figure of the Overview.
class OverviewCard {
    Q_GADGET
    QML_VALUE_TYPE(overviewCard)
    Q_PROPERTY(QString title MEMBER title)
    Q_PROPERTY(QString value MEMBER value)
    Q_PROPERTY(QString line MEMBER line)
    Q_PROPERTY(QString spoken READ spoken)

public:
    /// All of it in one line: "Tracked time: 12h 30m. Across 2 sessions".
    [[nodiscard]] QString spoken() const { return title + ": " + value + ". " + line; }

    QString title;
    QString value;
    QString line;

    friend bool operator==(const OverviewCard&, const OverviewCard&) = default;
};

} // namespace Kestry
