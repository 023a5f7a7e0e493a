#pragma once

#include <QFont>
#include <QObject>
#include <QPointF>
#include <QRectF>
#include <QSizeF>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

#include <optional>
#include <string>
#include <vector>

namespace Kestry {

/// The text that completes a typed title: the rest of the first suggestion that begins with it, in
/// the suggestion's own letters. `suggestions` come best first. Returns nullopt when none begins
/// with it.
[[nodiscard]] std::optional<std::string> firstCompletion(
    const std::string& typed, const std::vector<std::string>& suggestions);

/// Where a completion would go, in the coordinates of the view around the field.
struct GhostPlace {
    QRectF caret;
    QSizeF completion;
    double typedWidth = 0.0;
    QSizeF bounds;
};

/// Whether the whole completion fits behind the caret. A completion is never shown in part.
[[nodiscard]] bool ghostFits(const GhostPlace& place);

/// The upper left corner of the completion: at the caret, on its line.
[[nodiscard]] QPointF ghostOrigin(const GhostPlace& place);

/// The faded completion of a title field, recomputed whenever one of its inputs changes.
class GhostCompletion : public QObject {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString text MEMBER text_ NOTIFY asked)
    Q_PROPERTY(QStringList suggestions MEMBER suggestions_ NOTIFY asked)
    Q_PROPERTY(QFont font MEMBER font_ NOTIFY asked)
    /// The size of the view around the field; the caret is in its coordinates.
    Q_PROPERTY(QSizeF bounds MEMBER bounds_ NOTIFY asked)
    Q_PROPERTY(QRectF caret MEMBER caret_ NOTIFY asked)
    Q_PROPERTY(bool isEditing MEMBER isEditing_ NOTIFY asked)
    /// An input method is composing: some letters are not in the text yet.
    Q_PROPERTY(bool isComposing MEMBER isComposing_ NOTIFY asked)
    /// Nothing is selected, and the caret is behind the last letter.
    Q_PROPERTY(bool isAtEnd MEMBER isAtEnd_ NOTIFY asked)
    /// The completion on the screen; empty without one.
    Q_PROPERTY(QString visibleSuffix READ visibleSuffix NOTIFY changed)
    Q_PROPERTY(QPointF origin READ origin NOTIFY changed)

public:
    explicit GhostCompletion(QObject* parent = nullptr);

    [[nodiscard]] QString visibleSuffix() const { return visibleSuffix_; }
    [[nodiscard]] QPointF origin() const { return origin_; }

signals:
    void asked();
    void changed();

private:
    void workOut();
    [[nodiscard]] std::optional<QString> completion() const;
    [[nodiscard]] GhostPlace placeOf(const QString& completion) const;

    QString text_;
    QStringList suggestions_;
    QFont font_;
    QSizeF bounds_;
    QRectF caret_;
    bool isEditing_ = false;
    bool isComposing_ = false;
    bool isAtEnd_ = false;
    QString visibleSuffix_;
    QPointF origin_;
};

} // namespace Kestry
