#include <QCoreApplication>

#include <gtest/gtest.h>

#include <iostream>
#include <string>

#include "RealServer.h"

// The contract of cloud stores, and the traps of clusters, on a real server:
//
//     kestry_couch_server_tests --server URL --admin NAME < password
//
// Each test makes a user and a database of its own and removes them.

int main(int argc, char* argv[])
{
    ::testing::InitGoogleTest(&argc, argv);
    const QCoreApplication application(argc, argv);
    Kestry::RealServerAccess& access = Kestry::RealServerAccess::current;
    const QStringList words = QCoreApplication::arguments();
    for (qsizetype index = 1; index + 1 < words.size(); index += 2) {
        std::string& value = words[index] == "--server" ? access.url : access.admin;
        value = words[index + 1].toStdString();
    }
    while (access.url.ends_with('/')) {
        access.url.pop_back();
    }
    if (access.url.empty() || access.admin.empty() || !std::getline(std::cin, access.password)) {
        std::cerr << "Usage: kestry_couch_server_tests --server URL --admin NAME < password\n";
        return 2;
    }
    return RUN_ALL_TESTS();
}
