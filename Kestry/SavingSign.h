#pragma once

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace Kestry {

/// Whether the window says that the program is saving, because the disk takes its time.
class SavingSign : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The application makes the one sign.")
    Q_PROPERTY(bool isShown READ isShown NOTIFY changed)

public:
    [[nodiscard]] bool isShown() const { return isShown_; }
    void show(bool shown);

signals:
    void changed();

private:
    bool isShown_ = false;
};

} // namespace Kestry
