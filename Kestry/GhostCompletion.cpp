#include "GhostCompletion.h"

#include <QFontMetricsF>

#include "SessionTitleSuggestions.h"

namespace Kestry {
namespace {

// What has to stay free behind the completion, and beside all of the text.
constexpr double roomAtTheEnd = 2.0;
constexpr double roomBesides = 6.0;

/// A caret may be a line without width.
bool touches(const QRectF& caret, const QSizeF& bounds)
{
    return caret.left() <= bounds.width() && caret.right() >= 0.0 && caret.top() < bounds.height()
        && caret.bottom() > 0.0;
}

} // namespace

std::optional<std::string> firstCompletion(
    const std::string& typed, const std::vector<std::string>& suggestions)
{
    for (const std::string& suggestion : suggestions) {
        auto suffix = KestryCore::SessionTitleSuggestions::inlineSuffix(typed, suggestion);
        if (suffix) {
            return suffix;
        }
    }
    return std::nullopt;
}

bool ghostFits(const GhostPlace& place)
{
    const double width = place.completion.width();
    return place.caret.width() >= 0.0 && place.caret.left() >= 0.0
        && place.caret.right() + width < place.bounds.width() - roomAtTheEnd
        && width + place.typedWidth < place.bounds.width() - roomBesides
        && touches(place.caret, place.bounds);
}

QPointF ghostOrigin(const GhostPlace& place)
{
    return {place.caret.left(), place.caret.center().y() - place.completion.height() / 2.0};
}

GhostCompletion::GhostCompletion(QObject* parent) : QObject(parent)
{
    connect(this, &GhostCompletion::asked, this, &GhostCompletion::workOut);
}

void GhostCompletion::workOut()
{
    const auto suffix = completion();
    const GhostPlace place = suffix ? placeOf(*suffix) : GhostPlace{};
    const bool isShown = suffix && ghostFits(place);
    const QString visible = isShown ? *suffix : QString();
    const QPointF origin = isShown ? ghostOrigin(place) : QPointF();
    if (visible != visibleSuffix_ || origin != origin_) {
        visibleSuffix_ = visible;
        origin_ = origin;
        emit changed();
    }
}

std::optional<QString> GhostCompletion::completion() const
{
    if (!isEditing_ || isComposing_ || !isAtEnd_) {
        return std::nullopt;
    }
    std::vector<std::string> titles;
    for (const QString& suggestion : suggestions_) {
        titles.push_back(suggestion.toStdString());
    }
    const auto suffix = firstCompletion(text_.toStdString(), titles);
    return suffix ? std::optional(QString::fromStdString(*suffix)) : std::nullopt;
}

GhostPlace GhostCompletion::placeOf(const QString& completion) const
{
    const QFontMetricsF metrics(font_);
    return {.caret = caret_,
        .completion = {metrics.horizontalAdvance(completion), metrics.height()},
        .typedWidth = metrics.horizontalAdvance(text_),
        .bounds = bounds_};
}

} // namespace Kestry
