#pragma once

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace Kestry {

/// Whether the user goes by the keyboard now: since a key was pressed, and until the pointer is.
/// What has the keyboard shows it with a ring only then.
class KeyboardUse final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(bool isCurrent READ isCurrent NOTIFY isCurrentChanged)

public:
    /// Watches the events of the application, which must exist.
    explicit KeyboardUse(QObject* parent = nullptr);

    [[nodiscard]] bool isCurrent() const { return isCurrent_; }
    /// Tells those who read the screen that an item has the keyboard which stands for another one
    /// that has it.
    Q_INVOKABLE static void tellFocus(QObject* item);

    bool eventFilter(QObject* object, QEvent* event) override;

signals:
    void isCurrentChanged();

private:
    void setCurrent(bool isCurrent);

    bool isCurrent_ = false;
};

} // namespace Kestry
