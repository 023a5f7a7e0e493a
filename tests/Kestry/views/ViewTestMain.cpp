#include <QGuiApplication>
#include <QQmlContext>
#include <QQmlEngine>
#include <QQmlExtensionPlugin>
#include <QQuickWindow>
#include <QtQuickTest>

#include "AppearanceBridge.h"
#include "ViewWorld.h"

Q_IMPORT_QML_PLUGIN(KestryPlugin)
Q_IMPORT_QML_PLUGIN(KestryItemsPlugin)

namespace Kestry {

/// What an engine of a test needs: the module, and the appearance, which a test may change by the
/// name of `desktop`.
class ViewTestSetup : public QObject {
    Q_OBJECT
public slots:
    void qmlEngineAvailable(QQmlEngine* engine)
    {
        engine->addImportPath("qrc:/");
        appearance_.serve(*engine);
        engine->rootContext()->setContextProperty("desktop", this);
    }
    void reduceMotion(bool reduces) { preferences_.setReducesMotion(reduces); }
    void reduceTransparency(bool reduces) { preferences_.setReducesTransparency(reduces); }
    void scaleText(double scale) { preferences_.setTextScale(scale); }
    void useLightTheme(bool isLight)
    {
        settings_.setMode(isLight ? AppearanceMode::light : AppearanceMode::dark);
    }
    void setAccent(const QString& hex) { settings_.setAccentHex(hex.toStdString()); }

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
    const QGuiApplication application(argc, argv);
    qmlRegisterType<Kestry::ViewWorld>("KestryTest", 1, 0, "ViewWorld");
    qmlRegisterType<Kestry::DiskWorld>("KestryTest", 1, 0, "DiskWorld");
    Kestry::ViewTestSetup setup;
    return quick_test_main_with_setup(argc, argv, "views", KESTRY_VIEW_TESTS, &setup);
}

#include "ViewTestMain.moc"
