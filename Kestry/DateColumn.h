#pragma once

#include <QFont>
#include <QObject>
#include <QQmlEngine>
#include <QtQml/qqmlregistration.h>

#include <optional>
#include <string>
#include <utility>

namespace Kestry {

/// How much room the short dates of a language need: "Mar 14" is among the shortest. Nothing is
/// worked out before the first question.
class DateColumn final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
public:
    /// `locale` as `userLocale` tells it. No default for the parent: the engine would construct an
    /// object of its own, and never call `create`.
    DateColumn(std::string locale, QObject* parent)
        : QObject(parent), locale_(std::move(locale)) { }
    /// For the engine alone. Dates are in the user's language.
    static DateColumn* create(QQmlEngine* engine, QJSEngine* scripts);

    /// The width of the widest short date of a year in the application's font at a size in pixels,
    /// rounded up.
    Q_INVOKABLE int width(int fontSize);

private:
    std::string locale_;
    std::optional<std::pair<QFont, int>> known_; ///< The latest answer.
};

} // namespace Kestry
