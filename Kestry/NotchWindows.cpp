#include "NotchWindows.h"

#include <QGuiApplication>
#include <QScreen>

#include <algorithm>
#include <utility>

namespace Kestry {
namespace {

constexpr std::array panelsFromBelow{
    NotchPanel::bridge, NotchPanel::detail, NotchPanel::titlePreview};

} // namespace

NotchWindows::NotchWindows(QQmlEngine& engine, PanelStage& stage, SessionBridge& session,
    SessionMenus& menus, const KestryCore::Observable<bool>& reducesMotion,
    const KestryCore::Observable<PanelPlace>& place)
    : stage_(stage), menus_(menus), surface_(stage.isComposited()), place_(place)
{
    surface_.setReducesMotion(*reducesMotion);
    motion_ = reducesMotion.observe([this](bool reduces) { surface_.setReducesMotion(reduces); });
    const double highest = detailHeight({.hasSession = true, .hasMessage = true});
    detail_.setRoom(QSizeF(detailWidth, highest).toSize());
    titlePreview_.setFlag(Qt::WindowDoesNotAcceptFocus);
    setViews(engine, session, menus);
    reportHover();
    reportMenus();
    connect(&surface_, &NotchSurface::editingEnded, this, &NotchWindows::giveKeyboardBack);
    followScreens();
    placing_ = place_.observe([this](const auto&) { reportScreens(); });
    stage_.monitor({.clicked = [this] { mouseDown(); },
        .restacked = [this] { raiseAgain(); },
        .workAreaChanged = [this] { workAreaChanged(); },
        .keyboardLost = [this] { keyboardLost(); }});
}

NotchWindows::~NotchWindows()
{
    // The views go before what they look at, and the panels' places on the stage before the panels.
    for (const NotchPanel panel : panelsFromBelow) {
        stage_.hide(window(panel));
        window(panel).unload();
    }
}

void NotchWindows::setViews(QQmlEngine& engine, SessionBridge& session, SessionMenus& menus)
{
    QVariantMap properties{
        {"session", QVariant::fromValue(&session)}, {"surface", QVariant::fromValue(&surface_)}};
    bridge_.setView(engine, QUrl("qrc:/Kestry/BridgeView.qml"), properties);
    properties["menus"] = QVariant::fromValue(&menus);
    detail_.setView(engine, QUrl("qrc:/Kestry/NotchSessionView.qml"), properties);
    titlePreview_.setView(engine, QUrl("qrc:/Kestry/TitlePreview.qml"),
        {{"surface", QVariant::fromValue(&surface_)}});
}

void NotchWindows::reportHover()
{
    const auto hover = [this](bool inside) {
        if (surface_.events()) {
            surface_.events()->hover(inside);
        }
    };
    bridge_.setHoverAction(hover);
    detail_.setHoverAction(hover);
    titlePreview_.setHoverAction([this](bool inside) {
        if (surface_.events()) {
            surface_.events()->hoverPreview(inside);
        }
    });
}

void NotchWindows::reportMenus()
{
    connect(&menus_, &SessionMenus::opened, this, [this](quint64 menu) {
        if (surface_.events()) {
            surface_.events()->menuOpened(menu);
        }
    });
    connect(&menus_, &SessionMenus::closed, this, [this](quint64 menu) {
        if (surface_.events()) {
            surface_.events()->menuClosed(menu);
        }
    });
}

void NotchWindows::workAreaChanged()
{
    // Window managers tell it more often than it changes, and a layout ends an edit.
    if (screens() != reportedScreens_) {
        reportScreens();
    }
}

void NotchWindows::reportScreens()
{
    reportedScreens_ = screens();
    if (surface_.events()) {
        surface_.events()->screensChanged();
    }
}

void NotchWindows::followScreens()
{
    reportedScreens_ = screens();
    const auto changed = [this] { reportScreens(); };
    const auto follow = [this, changed](QScreen* screen) {
        connect(screen, &QScreen::availableGeometryChanged, this, changed);
        connect(screen, &QScreen::geometryChanged, this, changed);
    };
    for (QScreen* screen : QGuiApplication::screens()) {
        follow(screen);
    }
    connect(qGuiApp, &QGuiApplication::screenAdded, this, [follow, changed](QScreen* screen) {
        follow(screen);
        changed();
    });
    connect(qGuiApp, &QGuiApplication::screenRemoved, this, changed, Qt::QueuedConnection);
    connect(qGuiApp, &QGuiApplication::primaryScreenChanged, this, changed, Qt::QueuedConnection);
}

void NotchWindows::keyboardLost()
{
    if (std::exchange(detailHasFocus_, false) && surface_.events()) {
        surface_.events()->detailLostFocus();
    }
}

void NotchWindows::giveKeyboardBack()
{
    detailHasFocus_ = false;
    stage_.giveKeyboardBack(detail_);
}

void NotchWindows::mouseDown()
{
    followPointer();
    if (!surface_.events()) {
        return;
    }
    const bool isInside = std::ranges::any_of(panelsFromBelow,
        [this](NotchPanel panel) { return stage_.isShown(window(panel)) && pointerIsOver(panel); });
    if (isInside) {
        surface_.events()->clickInside();
    } else {
        surface_.events()->clickElsewhere();
    }
}

/// The strip goes to the pointer's screen once something is done there: a press, or another window
/// in front. To watch the pointer all the time would keep the processor awake.
void NotchWindows::followPointer()
{
    if (place_->screen == PanelPlace::Screen::pointer && !pointerIsOver(NotchPanel::detail)) {
        workAreaChanged();
    }
}

void NotchWindows::raiseAgain()
{
    followPointer();
    if (menus_.isOpen()) {
        return; // the menu covers the panels
    }
    for (const NotchPanel panel : panelsFromBelow) {
        if (stage_.isShown(window(panel))) {
            stage_.show(window(panel));
        }
    }
}

std::vector<ScreenMetrics> NotchWindows::screens() const
{
    std::vector<ScreenMetrics> metrics;
    const bool isPointerWanted = place_->screen == PanelPlace::Screen::pointer;
    const std::optional<QPoint> pointer = isPointerWanted ? stage_.pointerPlace() : std::nullopt;
    for (const QScreen* screen : QGuiApplication::screens()) {
        if (!stage_.isPresent(*screen)) {
            continue;
        }
        metrics.push_back({.frame = screen->geometry(),
            .visibleFrame = stage_.visibleFrame(*screen),
            .isMain = screen == QGuiApplication::primaryScreen(),
            .name = screen->name().toStdString(),
            .hasPointer = pointer && screen->geometry().contains(*pointer)});
    }
    return metrics;
}

bool NotchWindows::pointerIsOver(NotchPanel panel) const
{
    return stage_.pointerIsOver(window(panel));
}

PanelWindow& NotchWindows::window(NotchPanel panel)
{
    return const_cast<PanelWindow&>(std::as_const(*this).window(panel));
}

const PanelWindow& NotchWindows::window(NotchPanel panel) const
{
    switch (panel) {
    case NotchPanel::bridge:
        return bridge_;
    case NotchPanel::detail:
        return detail_;
    case NotchPanel::titlePreview:
        break;
    }
    return titlePreview_;
}

void NotchWindows::place(NotchPanel panel, const QRectF& frame)
{
    window(panel).place(frame.toRect());
    const bool isBridge = panel == NotchPanel::bridge;
    stage_.frameChanged(window(panel), isBridge ? bridgeCornerRadius : detailCornerRadius);
}

void NotchWindows::show(NotchPanel panel)
{
    window(panel).content();
    stage_.show(window(panel));
}

void NotchWindows::hide(NotchPanel panel)
{
    if (panel == NotchPanel::detail && detailHasFocus_) {
        giveKeyboardBack(); // it would go down with the window
    }
    stage_.hide(window(panel));
}

void NotchWindows::focusDetail()
{
    detailHasFocus_ = true;
    stage_.takeKeyboard(detail_);
}

void NotchWindows::endEditing()
{
    emit surface_.focusCleared();
    giveKeyboardBack();
}

void NotchWindows::closeMenus()
{
    menus_.close();
}

double NotchWindows::layOutPreview(const std::string& title, double width)
{
    titlePreview_.content().setWidth(width);
    surface_.setPreviewedTitle(QString::fromStdString(title));
    return titlePreview_.content().implicitHeight();
}

void NotchWindows::fadePreviewIn(double fromOpacity, double seconds)
{
    // A window without transparency would fade in from black.
    const bool fades = surface_.isComposited();
    emit surface_.previewFadeAsked(fades ? fromOpacity : 1.0, fades ? qRound(seconds * 1000) : 0);
}

} // namespace Kestry
