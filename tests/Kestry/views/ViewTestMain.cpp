#include <QApplication>
#include <QQmlContext>
#include <QQmlEngine>
#include <QQmlExtensionPlugin>
#include <QQuickWindow>
#include <QtQuickTest>

#include "AppearanceBridge.h"
#include "ViewWorld.h"

Q_IMPORT_QML_PLUGIN(KestryPlugin)

namespace Kestry {

/// What an engine of a test needs: the module, the appearance, and a world to be made per test.
class ViewTestSetup : public QObject {
    Q_OBJECT
public slots:
    void qmlEngineAvailable(QQmlEngine* engine)
    {
        engine->addImportPath("qrc:/");
        appearance_.serve(*engine);
    }

private:
    MapDefaults defaults_;
    AppearanceSettings settings_{defaults_};
    DesktopPreferences preferences_;
    AppearanceBridge appearance_{settings_, preferences_};
};

} // namespace Kestry

int main(int argc, char* argv[])
{
    // As the application draws, and without a screen.
    qputenv("QT_QUICK_BACKEND", "software");
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    const QApplication application(argc, argv);
    qmlRegisterType<Kestry::ViewWorld>("KestryTest", 1, 0, "ViewWorld");
    Kestry::ViewTestSetup setup;
    return quick_test_main_with_setup(argc, argv, "views", KESTRY_VIEW_TESTS, &setup);
}

#include "ViewTestMain.moc"
