#include <QCoreApplication>

#include <gtest/gtest.h>

// Timers, sockets and item models want an application object; none of the tests wants a window.
int main(int argc, char* argv[])
{
    ::testing::InitGoogleTest(&argc, argv);
    const QCoreApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
