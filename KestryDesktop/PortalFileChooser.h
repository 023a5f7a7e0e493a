#pragma once

#include <QObject>
#include <QVariantMap>

#include "FileChooser.h"

namespace Kestry {

/// The file chooser of the desktop's portal, over the session bus, to which it connects when it is
/// first asked.
class PortalFileChooser final : public QObject, public FileChooser {
    Q_OBJECT
public:
    PortalFileChooser();

    void askWhereToSave(const SaveQuestion& question, Answered answered) override;

private slots:
    void responded(uint code, const QVariantMap& results);

private:
    void call(const SaveQuestion& question);
    void listenAt(const QString& request);
    void finish(const SaveAnswer& answer);

    QString request_; ///< The object that answers; empty while nothing is asked.
    Answered answered_;
    int number_ = 0; ///< Of the question.
};

} // namespace Kestry
