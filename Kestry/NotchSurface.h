#pragma once

#include <QObject>
#include <QtQml/qqmlregistration.h>

#include <set>

#include "NotchPanels.h"

namespace Kestry {

/// What both panels share: whether the content is revealed and how it gets there, the pointer,
/// the measures of the strip. Views read it and report back through its calls.
class NotchSurface final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The application makes the one surface.")
    Q_PROPERTY(bool shown READ shown NOTIFY shownChanged)
    Q_PROPERTY(Motion motion READ motion NOTIFY shownChanged)
    Q_PROPERTY(bool hovered READ hovered NOTIFY hoveredChanged)
    Q_PROPERTY(bool reducesMotion READ reducesMotion NOTIFY reducesMotionChanged)
    Q_PROPERTY(bool isComposited READ isComposited CONSTANT)
    Q_PROPERTY(double bridgeRadius READ bridgeRadius CONSTANT)
    Q_PROPERTY(double detailRadius READ detailRadius CONSTANT)
    Q_PROPERTY(QString previewedTitle READ previewedTitle NOTIFY previewedTitleChanged)
    Q_PROPERTY(double gap READ gap NOTIFY measuresChanged)
    Q_PROPERTY(double stripHeight READ stripHeight NOTIFY measuresChanged)
    Q_PROPERTY(bool isFlush READ isFlush NOTIFY measuresChanged)

public:
    enum Motion { None, Unfold, Fold };
    Q_ENUM(Motion)

    /// Without a compositor, which does not change during a run, transparent pixels are black.
    explicit NotchSurface(bool isComposited) : isComposited_(isComposited) { }

    [[nodiscard]] bool shown() const { return shown_; }
    [[nodiscard]] Motion motion() const { return motion_; }
    [[nodiscard]] bool hovered() const { return hovered_; }
    [[nodiscard]] bool reducesMotion() const { return reducesMotion_; }
    [[nodiscard]] bool isComposited() const { return isComposited_; }
    [[nodiscard]] double bridgeRadius() const { return bridgeCornerRadius; }
    [[nodiscard]] double detailRadius() const { return detailCornerRadius; }
    [[nodiscard]] QString previewedTitle() const { return previewedTitle_; }
    [[nodiscard]] double gap() const { return measures_.gap; }
    [[nodiscard]] double stripHeight() const { return measures_.stripHeight; }
    [[nodiscard]] bool isFlush() const { return measures_.isFlush; }

    void setShown(bool shown, RevealMotion motion);
    void setHovered(bool hovered);
    void setReducesMotion(bool reduces);
    void setPreviewedTitle(const QString& title);
    void rebuild(const NotchMeasures& measures);

    /// Whether a menu opened from the panel is up.
    [[nodiscard]] bool hasOpenMenu() const { return !openMenus_.empty(); }

    void deliverEventsTo(NotchPanelEvents* events) { events_ = events; }
    [[nodiscard]] NotchPanelEvents* events() const { return events_; }

    Q_INVOKABLE void openApp();
    Q_INVOKABLE void editingChanged(bool editing);
    Q_INVOKABLE void resize(double height);
    /// An empty title takes back the wish to see it whole.
    Q_INVOKABLE void previewTitle(const QString& title);
    Q_INVOKABLE void dismissPreview();
    Q_INVOKABLE void dashboard();
    Q_INVOKABLE void menuDidBeginTracking(quint64 menu);
    Q_INVOKABLE void menuDidEndTracking(quint64 menu);

signals:
    void shownChanged();
    void hoveredChanged();
    void reducesMotionChanged();
    void measuresChanged();
    void previewedTitleChanged();
    /// The bubble is coming up: from this opacity, in this time.
    void previewFadeAsked(double fromOpacity, int milliseconds);
    /// The views give up what they hold of their own.
    void contentRebuilt();
    /// Typing has to end.
    void focusCleared();
    /// Typing has ended; the keyboard may go back to where it was.
    void editingEnded();

private:
    bool isComposited_;
    bool reducesMotion_ = false;
    NotchPanelEvents* events_ = nullptr;
    NotchMeasures measures_;
    QString previewedTitle_;
    std::set<MenuIdentity> openMenus_;
    bool shown_ = false;
    bool hovered_ = false;
    Motion motion_ = None;
};

} // namespace Kestry
