#pragma once

#include <QObject>
#include <QStringList>

#include "AppState.h"
#include "ApplicationWorld.h"
#include "FakeUpdateFramework.h"
#include "SoftwareUpdateBridge.h"

namespace Kestry {

/// Updates for a view under test: a build that has none until a test says otherwise, and a
/// framework that goes where the test takes it.
class UpdateViewWorld : public QObject {
    Q_OBJECT
    Q_PROPERTY(Kestry::SoftwareUpdateBridge* bridge READ bridge CONSTANT)
    Q_PROPERTY(QStringList told READ told)
    Q_PROPERTY(QString opened READ opened)

public:
    /// The state must outlive it.
    explicit UpdateViewWorld(AppState& state);

    [[nodiscard]] SoftwareUpdateBridge* bridge() { return &bridge_; }
    /// What the framework was told, in order.
    [[nodiscard]] QStringList told() const;
    /// The page that was opened last; empty without one.
    [[nodiscard]] QString opened() const { return opened_; }

    /// The build has updates, and the framework can check.
    Q_INVOKABLE void enable();
    /// Somebody types the title of the next session.
    Q_INVOKABLE void type(const QString& title) { state_.sessionTitle.assign(title.toStdString()); }
    // The framework comes to a stage of an update to version 1.3.0, of 24 megabytes.
    Q_INVOKABLE void checking() { show(UpdateStage::Step::checking); }
    Q_INVOKABLE void upToDate() { show(UpdateStage::Step::upToDate); }
    Q_INVOKABLE void found() { show(UpdateStage::Step::found); }
    Q_INVOKABLE void download(double part);
    Q_INVOKABLE void unpacking() { show(UpdateStage::Step::unpacking); }
    Q_INVOKABLE void ready() { show(UpdateStage::Step::ready); }
    Q_INVOKABLE void fail(const QString& words);
    Q_INVOKABLE void end() { show(UpdateStage::Step::nothing); }
    /// The next version is called so, and has no page that tells what is new.
    Q_INVOKABLE void announce(const QString& version);

private:
    void show(UpdateStage::Step step);
    void publish(const UpdateStage& stage);

    AppState& state_;
    ApplicationWorld world_;
    KestryCore::TimeStore store_{world_.storePlatform(), world_.onDisk()};
    FakeUpdateFramework::Witness witness_;
    AnnouncedUpdate update_{"1.3.0", "https://kestry.example/notes/1.3.0", 24'000'000};
    QString opened_;
    SoftwareUpdater updater_{
        {store_, state_, {.feed = UpdateFeed{"https://kestry.example/feed.xml", {}}},
            FakeUpdateFramework::factory(witness_), {}}};
    SoftwareUpdateBridge bridge_{{updater_, "1.2.0", QLocale("en_US"),
        [this](const QString& link) {
            opened_ = link;
            return true;
        },
        {}}};
};

} // namespace Kestry
