#include <QGuiApplication>

#include <gtest/gtest.h>

// Windows on a screen that nobody sees, wherever the tests run.
int main(int argc, char* argv[])
{
    ::testing::InitGoogleTest(&argc, argv);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_QUICK_BACKEND", "software");
    const QGuiApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
