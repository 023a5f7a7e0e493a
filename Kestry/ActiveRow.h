#pragma once

#include <QImage>
#include <QObject>
#include <QString>
#include <QVariant>
#include <QtQml/qqmlregistration.h>

#include "ClientLogos.h"
#include "Ledger.h"
#include "TextForms.h"

namespace Kestry {

/// What a list says of the session in progress.
class ActiveRow {
    Q_GADGET
    QML_VALUE_TYPE(activeRow)
    Q_PROPERTY(QString label MEMBER label)
    Q_PROPERTY(QString detail MEMBER detail)
    Q_PROPERTY(QString clientName MEMBER clientName)
    Q_PROPERTY(QVariant clientLogo READ logo)
    Q_PROPERTY(QString state MEMBER state)
    Q_PROPERTY(QString spoken MEMBER spoken)

public:
    /// An image, as views hand it on.
    [[nodiscard]] QVariant logo() const { return clientLogo; }

    QString label;
    QString detail;
    QString clientName;
    QImage clientLogo; ///< Null without one.
    QString state;     ///< "Live" or "Paused".
    QString spoken;    ///< All of it in one line, for a screen reader.

    friend bool operator==(const ActiveRow&, const ActiveRow&) = default;
};

/// The row of the session in progress; all texts are empty without one. Without `logos` it has no
/// logo.
[[nodiscard]] ActiveRow activeRow(const KestryCore::LedgerData& ledger, ClientLogos* logos);

} // namespace Kestry
