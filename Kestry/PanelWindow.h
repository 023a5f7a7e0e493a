#pragma once

#include <QQuickView>

#include <functional>

namespace Kestry {

/// A borderless window that floats above all others, on every desktop, and takes no keyboard
/// unless it is asked to.
class PanelWindow final : public QQuickView {
    Q_OBJECT
public:
    PanelWindow(QQmlEngine& engine, const QString& title);

    /// Cuts the window, at the size that it has now, to a rounded rectangle.
    void cutCorners(double radius);

    /// Told when the pointer comes onto the window and when it leaves.
    void setHoverAction(std::function<void(bool)> hover) { hover_ = std::move(hover); }

protected:
    bool event(QEvent* event) override;

private:
    std::function<void(bool)> hover_;
};

} // namespace Kestry
