#pragma once

#include <QObject>
#include <QtQml/qqmlregistration.h>

#include "NotchPanels.h"

namespace Kestry {

/// The state that the views of strip and panel share: whether the content is shown, how it gets
/// there, and the measures of the strip. Views read its properties and report through its calls.
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

    /// `isComposited` does not change during a run. Without a compositor transparent pixels are
    /// black.
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

    void deliverEventsTo(NotchPanelEvents* events) { events_ = events; }
    [[nodiscard]] NotchPanelEvents* events() const { return events_; }

    Q_INVOKABLE void openApp();
    Q_INVOKABLE void editingChanged(bool editing);
    Q_INVOKABLE void resize(double height);
    /// Shows the whole title in the bubble; an empty title closes it.
    Q_INVOKABLE void previewTitle(const QString& title);
    Q_INVOKABLE void dismissPreview();
    Q_INVOKABLE void dashboard();

signals:
    void shownChanged();
    void hoveredChanged();
    void reducesMotionChanged();
    void measuresChanged();
    void previewedTitleChanged();
    /// The bubble fades in from this opacity, in this time.
    void previewFadeAsked(double fromOpacity, int milliseconds);
    /// Views must drop their unsaved state, such as a half-typed title.
    void contentRebuilt();
    /// The text field must give up the focus.
    void focusCleared();
    /// The text field has given up the focus; the keyboard may go back to where it was.
    void editingEnded();

private:
    bool isComposited_;
    bool reducesMotion_ = false;
    NotchPanelEvents* events_ = nullptr;
    NotchMeasures measures_;
    QString previewedTitle_;
    bool shown_ = false;
    bool hovered_ = false;
    Motion motion_ = None;
};

} // namespace Kestry
