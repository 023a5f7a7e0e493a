#include "TipWindow.h"

#include <QCursor>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QQuickWindow>

#include <cmath>
#include <optional>

#include "PopupPlacement.h"

namespace Kestry {
namespace {

constexpr double tipRadius = 6.0;

QRect frameFor(const QQuickItem& content, const QQuickItem& item, ToolTips::Place place,
    QPoint pointer, const QRect& bounds)
{
    const QSize size(static_cast<int>(std::ceil(content.implicitWidth())),
        static_cast<int>(std::ceil(content.implicitHeight())));
    if (place == ToolTips::BesideItem) {
        const QRect around = QRectF(item.mapToGlobal(QPointF()), item.size()).toRect();
        return tipFrameBeside(around, size, bounds);
    }
    return tipFrameAtPointer(pointer, size, bounds);
}

/// Where the keyboard's user or the pointer finds an item; nullopt when it cannot be used there.
std::optional<QPointF> placeOf(const QQuickItem* item)
{
    const bool isThere = item && item->window() && item->window()->isVisible() && item->isVisible()
        && item->isEnabled();
    return isThere ? std::optional(item->mapToGlobal(QPointF())) : std::nullopt;
}

/// Whether some of an item is inside of all that cuts it off.
bool isInSight(const QQuickItem& item)
{
    for (const QQuickItem* each = item.parentItem(); each; each = each->parentItem()) {
        const bool cutsOff = each->clip() || !each->parentItem();
        const QRectF place = item.mapRectToItem(each, {QPointF(), item.size()});
        if (cutsOff && !place.intersects({QPointF(), each->size()})) {
            return false;
        }
    }
    return true;
}

} // namespace

TipWindow::TipWindow(QQmlEngine& engine, PanelStage& stage, ToolTips& tips, const MenuWindow& menus)
    : engine_(engine), stage_(stage), menus_(menus)
{
    connect(&tips, &ToolTips::showAsked, this, &TipWindow::show);
    connect(&tips, &ToolTips::changed, this, &TipWindow::change);
    connect(&tips, &ToolTips::hideAsked, this, &TipWindow::hide);
    connect(&menus, &MenuWindow::opened, this, &TipWindow::hide);
}

TipWindow::~TipWindow()
{
    hide();
}

void TipWindow::show(QQuickItem* item, const QString& text, ToolTips::Place place, QObject* colors)
{
    hide();
    if (menus_.isOpen()) {
        return;
    }
    item_ = item;
    place_ = place;
    pointer_ = QCursor::pos();
    window_ = std::make_unique<PanelWindow>("Tip");
    window_->setFlag(Qt::WindowDoesNotAcceptFocus);
    window_->setFlag(Qt::WindowTransparentForInput);
    window_->setView(engine_, QUrl("qrc:/KestryItems/TipView.qml"),
        {{"text", text}, {"colors", QVariant::fromValue(colors)}, {"radius", tipRadius}});
    this->place();
    stage_.showTip(*window_, *item->window());
    follow(*item->window());
}

void TipWindow::place()
{
    const QRect bounds = stage_.popupBounds(*item_->window()).toRect();
    window_->place(frameFor(window_->content(), *item_, place_, pointer_, bounds));
    stage_.popupFrameChanged(*window_, tipRadius);
    placeOfItem_ = placeOf(item_);
}

void TipWindow::change(QQuickItem* item, const QString& text)
{
    if (!window_ || !item || item != item_ || !item->window()) {
        return;
    }
    if (text.isEmpty()) {
        hide();
    } else {
        window_->content().setProperty("text", text);
        place();
    }
}

void TipWindow::follow(QQuickWindow& owner)
{
    owner_ = &owner;
    owner.installEventFilter(this);
    following_ = std::make_unique<QObject>();
    const bool wasActive = owner.isActive();
    const auto look = [this, wasActive] {
        const auto now = placeOf(item_);
        const QWindow* front = QGuiApplication::focusWindow();
        const bool isBehind = wasActive && front != owner_ && front != window_.get();
        if (!owner_ || !now || isBehind) {
            hide();
        } else if (now != placeOfItem_) {
            move();
        }
    };
    // Later: some of them come while the window draws, when no other window may go.
    const auto looksAt = [&](auto* sender, auto signal) {
        connect(sender, signal, following_.get(), look, Qt::QueuedConnection);
    };
    looksAt(item_.get(), &QObject::destroyed);
    looksAt(&owner, &QQuickWindow::afterAnimating); // whatever moves or goes is drawn anew
    looksAt(&owner, &QWindow::visibleChanged);
    looksAt(&owner, &QWindow::xChanged);
    looksAt(&owner, &QWindow::yChanged);
    looksAt(&owner, &QWindow::activeChanged);
    looksAt(&owner, &QObject::destroyed);
}

void TipWindow::move()
{
    if (place_ == ToolTips::BesideItem && isInSight(*item_)) {
        place();
    } else {
        hide();
    }
}

bool TipWindow::eventFilter(QObject* object, QEvent* event)
{
    if (event->type() == QEvent::KeyPress
        && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape) {
        hide();
    }
    return QObject::eventFilter(object, event);
}

void TipWindow::hide()
{
    following_.reset();
    if (owner_) {
        owner_->removeEventFilter(this);
    }
    owner_.clear();
    item_.clear();
    if (window_) {
        stage_.hideTip(*window_);
        window_.reset();
    }
}

} // namespace Kestry
