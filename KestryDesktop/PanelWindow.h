#pragma once

#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QUrl>

#include <functional>
#include <memory>

namespace Kestry {

/// A borderless window above all others, on every desktop. It takes the keyboard only when it is
/// asked to.
///
/// The content is at the upper left and has the size of the panel's frame. The window may be larger
/// and is transparent around it, so that content which grows or shrinks never waits for the window.
class PanelWindow final : public QQuickWindow {
    Q_OBJECT
public:
    explicit PanelWindow(const QString& title);
    PanelWindow(const PanelWindow&) = delete;
    PanelWindow& operator=(const PanelWindow&) = delete;
    ~PanelWindow() override;

    /// The flags of a window that the window manager leaves alone.
    [[nodiscard]] static Qt::WindowFlags floatingFlags();

    /// Sets what the content is. It is created by the first call of `content`, which has to come
    /// before the window is shown.
    void setView(QQmlEngine& engine, const QUrl& view, const QVariantMap& properties);
    /// Destroys the content. Call it before the objects that the content refers to are destroyed.
    void unload() { content_.reset(); }
    /// The content. A view that cannot be created is our own mistake, and ends the program.
    QQuickItem& content();

    /// Sets the least size of the window. Frames up to it never resize the window.
    void setRoom(QSize room) { room_ = room; }
    /// Places the content on the desktop, in device-independent pixels. The window grows when it
    /// has to, and shrinks only while it is hidden.
    void place(const QRect& frame);
    /// The place of the content.
    [[nodiscard]] QRect frame() const { return frame_; }
    /// The place that the window was given. On Wayland the toolkit does not know it.
    [[nodiscard]] QRect windowFrame() const { return {frame_.topLeft(), windowSize_}; }

    /// Sets what is called with true when the pointer enters the window, with false when it leaves.
    void setHoverAction(std::function<void(bool)> hover) { hover_ = std::move(hover); }
    /// Reports a pointer that entered or left the content while that is in another window.
    void reportHover(bool inside);
    /// Whether the pointer is in the window, as far as enter and leave events tell.
    [[nodiscard]] bool isEntered() const { return isEntered_; }

protected:
    bool event(QEvent* event) override;

private:
    std::function<std::unique_ptr<QQuickItem>()> makeContent_;
    std::unique_ptr<QQuickItem> content_;
    QSize room_;
    QRect frame_;
    QSize windowSize_;
    std::function<void(bool)> hover_;
    bool isEntered_ = false;
};

} // namespace Kestry
