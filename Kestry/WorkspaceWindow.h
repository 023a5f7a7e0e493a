#pragma once

#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickView>
#include <QUrl>

#include <functional>
#include <memory>

#include "AppState.h"
#include "Scheduler.h"

namespace Kestry {

/// The program's one ordinary window. A launched program shows none until the user asks: it is
/// made when it is first opened, and some time after it was closed its memory is given back.
///
/// It opens where it was, as large as it was, and maximised if it was: that is kept in the user's
/// settings. A desktop that tells no program where its windows are (Wayland) places it itself.
class WorkspaceWindow final : public QObject {
    Q_OBJECT
public:
    /// Fills a window with its view.
    using Load = std::function<void(QQuickView& window)>;

    /// Installs the state's way of opening the window. Everything handed in must outlive it.
    WorkspaceWindow(QQmlEngine& engine, AppState& state, UserDefaults& defaults,
        KestryCore::Scheduler& scheduler, Load load);
    WorkspaceWindow(const WorkspaceWindow&) = delete;
    WorkspaceWindow& operator=(const WorkspaceWindow&) = delete;
    ~WorkspaceWindow() override;

    /// Reads the fonts and the compiled views that the window needs, so that it opens without
    /// waiting for them. Called once, when the program has nothing else to do.
    void prepare(const QUrl& view);
    /// Shows the window and brings it over all others.
    void open();
    /// Brings what has changed to the screen at once, before the event loop goes on.
    void showNow();

    [[nodiscard]] bool isLoaded() const { return window_ != nullptr; }
    [[nodiscard]] bool isOpen() const { return window_ && window_->isVisible(); }

private:
    void make();
    void unload();
    void visibilityChanged(bool visible);
    void place();
    void rememberSoon();
    void remember();

    QQmlEngine& engine_;
    AppState& state_;
    UserDefaults& defaults_;
    KestryCore::Scheduler& scheduler_;
    Load load_;
    std::unique_ptr<QObject> fonts_;
    std::unique_ptr<QQmlComponent> view_; ///< Keeps what it was compiled to.
    std::unique_ptr<QQuickView> window_;
    KestryCore::Timer unload_;
    KestryCore::Timer remember_;
};

} // namespace Kestry
