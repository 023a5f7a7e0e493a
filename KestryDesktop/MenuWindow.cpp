#include "MenuWindow.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QPointerEvent>
#include <QQuickWindow>

#include <cmath>
#include <utility>

#include "PopupPlacement.h"

namespace Kestry {
namespace {

constexpr double menuRadius = 10.0;

QSize wantedSize(const QQuickItem& content)
{
    return {static_cast<int>(std::ceil(content.implicitWidth())),
        static_cast<int>(std::ceil(content.implicitHeight()))};
}

} // namespace

MenuWindow::MenuWindow(QQmlEngine& engine, PanelStage& stage, KestryCore::Scheduler& scheduler)
    : engine_(engine), stage_(stage), controller_(scheduler)
{
    connect(&controller_, &MenuController::chosen, this, &MenuWindow::finish);
    connect(&controller_, &MenuController::dismissed, this, &MenuWindow::close);
    stage_.setMenuLost(
        [this] { QMetaObject::invokeMethod(this, &MenuWindow::close, Qt::QueuedConnection); });
}

MenuWindow::~MenuWindow()
{
    stage_.setMenuLost(nullptr);
    if (isOpen_) {
        isOpen_ = false;
        stage_.closeMenu(*window_);
    }
}

void MenuWindow::make()
{
    window_ = std::make_unique<PanelWindow>("Menu");
    window_->setView(engine_, QUrl("qrc:/KestryItems/MenuView.qml"),
        {{"menu", QVariant::fromValue(&controller_)}, {"radius", menuRadius}});
    // A submenu may need another size.
    for (const auto changed :
        {&QQuickItem::implicitWidthChanged, &QQuickItem::implicitHeightChanged}) {
        connect(&window_->content(), changed, this, [this] {
            if (isOpen_) {
                place();
            }
        });
    }
}

void MenuWindow::open(
    Menu menu, const QString& name, MenuController::Look look, const QQuickItem& item)
{
    if (menu.empty() || !item.window()) {
        return;
    }
    close();
    controller_.open(std::move(menu), name, look);
    if (!window_) {
        make();
    }
    owner_ = item.window();
    item_ = QRectF(item.mapToGlobal(QPointF()), item.size()).toRect();
    isAtRight_ = item.mapToScene(QPointF(item.width() / 2.0, 0)).x() > item.window()->width() / 2.0;
    isOpen_ = true;
    ++identity_;
    place();
    stage_.openMenu(*window_, *owner_);
    qGuiApp->installEventFilter(this);
    emit opened(identity_);
}

void MenuWindow::place()
{
    const QRect bounds = stage_.popupBounds(*owner_).toRect();
    window_->place(menuFrame(item_, wantedSize(window_->content()), bounds,
        isAtRight_ ? MenuSide::right : MenuSide::left));
    stage_.popupFrameChanged(*window_, menuRadius);
}

void MenuWindow::close()
{
    finish(nullptr);
}

void MenuWindow::finish(const std::function<void()>& action)
{
    if (!isOpen_) {
        return;
    }
    isOpen_ = false;
    qGuiApp->removeEventFilter(this);
    // Not every platform reports it for a window that goes, and the next menu would open with the
    // pointer where it was in this one.
    QEvent leave(QEvent::Leave);
    QCoreApplication::sendEvent(window_.get(), &leave);
    stage_.closeMenu(*window_);
    // Not before the row that was chosen is done with the event that chose it.
    QMetaObject::invokeMethod(
        this,
        [this, action, menu = identity_] {
            if (action) {
                action();
            }
            emit closed(menu);
        },
        Qt::QueuedConnection);
}

bool MenuWindow::isOnMenu(const QObject& window, const QEvent& press) const
{
    const auto& points = dynamic_cast<const QPointerEvent&>(press).points();
    return &window == window_.get() && !points.isEmpty()
        && QRectF(QPointF(), window_->frame().size()).contains(points.front().position());
}

bool MenuWindow::eventFilter(QObject* object, QEvent* event)
{
    if (!object->isWindowType()) {
        return false;
    }
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::TouchBegin:
        if (isOnMenu(*object, *event)) {
            return false;
        }
        close();
        return true;
    case QEvent::ShortcutOverride: // no shortcut of the window below
        event->accept();
        return true;
    case QEvent::KeyPress: {
        const auto& key = dynamic_cast<const QKeyEvent&>(*event);
        controller_.press(key.key(), key.text());
        return true;
    }
    case QEvent::KeyRelease:
        return true;
    case QEvent::Hide:
        if (object == window_.get() || object == owner_) {
            close();
        }
        return false;
    default:
        return false;
    }
}

} // namespace Kestry
