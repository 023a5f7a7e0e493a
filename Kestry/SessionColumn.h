#pragma once

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include "SessionSort.h"

namespace Kestry {

/// The head of one column of the sessions table, which sorts by it.
class SessionColumn {
    Q_GADGET
    QML_VALUE_TYPE(sessionColumn)
    Q_PROPERTY(int field MEMBER field)
    Q_PROPERTY(QString name MEMBER name)
    Q_PROPERTY(bool isActive MEMBER isActive)
    Q_PROPERTY(QString symbol MEMBER symbol)
    Q_PROPERTY(QString label MEMBER label)
    Q_PROPERTY(QString value MEMBER value)
    Q_PROPERTY(QString hint MEMBER hint)

public:
    int field = 0; ///< As a number, for the call that sorts by it.
    QString name;
    bool isActive = false; ///< The table is sorted by it.
    QString symbol;
    QString label; ///< For a screen reader, as are value and hint.
    QString value;
    QString hint; ///< What a press will do.

    friend bool operator==(const SessionColumn&, const SessionColumn&) = default;
};

/// The head of the column for a field in a table that is sorted like this.
[[nodiscard]] SessionColumn sessionColumn(
    KestryCore::SessionSortField field, const KestryCore::SessionSort& sort);

} // namespace Kestry
