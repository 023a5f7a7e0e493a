// The smallest program of the toolkit that opens a window with a list of texts, beside a small
// window that it shows all the time: what it costs is what any program of this kind costs. Each
// line on its standard input opens the window, or closes it. With "open" the window is all there
// is, and open from the start.
//
// Usage: kestry_list_window COUNT [open]

#include <QGuiApplication>
#include <QQmlEngine>
#include <QQuickView>
#include <QSocketNotifier>

#include <unistd.h>

#include <array>
#include <memory>

namespace {

QStringList texts(int count)
{
    QStringList result;
    for (int number = 0; number < count; ++number) {
        result << QString("Review of the layout, part %1").arg(number);
    }
    return result;
}

} // namespace

int main(int argc, char* argv[])
{
    qputenv("QT_QUICK_BACKEND", "software");
    const QGuiApplication application(argc, argv);
    QGuiApplication::setQuitOnLastWindowClosed(false);
    const QStringList list = texts(argc > 1 ? QString(argv[1]).toInt() : 0);
    QQmlEngine engine;
    std::unique_ptr<QQuickView> window;
    const auto open = [&] {
        window = std::make_unique<QQuickView>(&engine, nullptr);
        window->setResizeMode(QQuickView::SizeRootObjectToView);
        window->resize(1200, 720);
        window->setInitialProperties({{"texts", list}});
        window->setSource(QUrl("qrc:/ListWindow.qml"));
        window->show();
    };
    if (argc > 2) {
        open();
        return QGuiApplication::exec();
    }
    QQuickView strip(&engine, nullptr);
    strip.setFlags(Qt::X11BypassWindowManagerHint);
    strip.setSource(QUrl("qrc:/ListStrip.qml"));
    strip.show();
    QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, &application, [&] {
        std::array<char, 64> line{};
        if (read(STDIN_FILENO, line.data(), line.size()) <= 0) {
            QCoreApplication::quit();
        } else if (window) {
            window.reset();
        } else {
            open();
        }
    });
    return QGuiApplication::exec();
}
