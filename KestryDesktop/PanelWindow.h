#pragma once

#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QUrl>

#include <functional>
#include <memory>

namespace Kestry {

/// A borderless window that floats above all others, on every desktop, and takes no keyboard
/// unless it is asked to.
///
/// Its content stands at the upper left in the size of the panel's frame. The window around it
/// may be larger and is transparent there, so that content which grows or shrinks while it is
/// seen never waits for the window.
class PanelWindow final : public QQuickWindow {
    Q_OBJECT
public:
    explicit PanelWindow(const QString& title);
    PanelWindow(const PanelWindow&) = delete;
    PanelWindow& operator=(const PanelWindow&) = delete;
    ~PanelWindow() override;

    /// Says what the content is. It is made when it is first asked for, which a window that is
    /// shown has to be.
    void setView(QQmlEngine& engine, const QUrl& view, const QVariantMap& properties);
    /// Takes the content away, before what it looks at goes.
    void unload() { content_.reset(); }
    /// A view of this program that cannot be made is our own mistake, and ends it.
    QQuickItem& content();

    /// The size that the window has from the start, for frames up to it.
    void setRoom(QSize room) { room_ = room; }
    /// Puts the content at a place on the desktop. The window grows when it has to, and gets
    /// smaller only while it is out of sight.
    void place(const QRect& frame);
    /// Where the content is.
    [[nodiscard]] QRect frame() const { return frame_; }
    /// Where the window is meant to be; not every platform has the toolkit know it.
    [[nodiscard]] QRect windowFrame() const { return {frame_.topLeft(), windowSize_}; }

    /// Told when the pointer comes onto the window and when it leaves.
    void setHoverAction(std::function<void(bool)> hover) { hover_ = std::move(hover); }
    /// Tells that, for a pointer on the content where that is in another window.
    void reportHover(bool inside);
    /// Whether the pointer has come onto the window and has not left.
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
