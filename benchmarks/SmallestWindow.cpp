// The smallest program of the toolkit that shows something: one rectangle on the software scene
// graph. What it costs is what any program of this kind costs.

#include <QGuiApplication>
#include <QQuickView>

int main(int argc, char* argv[])
{
    qputenv("QT_QUICK_BACKEND", "software");
    const QGuiApplication application(argc, argv);
    QQuickView view(QUrl("qrc:/SmallestWindow.qml"));
    view.setFlags(Qt::X11BypassWindowManagerHint);
    view.show();
    return QGuiApplication::exec();
}
