#include <QCoreApplication>
#include <QSocketNotifier>

#include <iostream>
#include <string>

#include "CouchDouble.h"

// The server of our own as a program, for tests that run real programs: prints its address, takes
// the user "anna" with the password "secret", and does what lines on standard input say:
//
//     unreachable | reachable | backup | restore | remove DATABASE | user NAME PASSWORD
//
// It ends with its input, so that no test leaves one behind.

namespace {

void carryOut(Kestry::CouchDouble& server, const std::string& line)
{
    if (line == "unreachable" || line == "reachable") {
        server.setReachable(line == "reachable");
    } else if (line == "backup") {
        server.backUp();
    } else if (line == "restore") {
        server.restore();
    } else if (line.starts_with("remove ")) {
        server.removeDatabase(line.substr(7));
    } else if (line.starts_with("user ")) {
        const std::size_t space = line.find(' ', 5);
        server.passwords[line.substr(5, space - 5)] = line.substr(space + 1);
    }
    std::cout << "done" << std::endl;
}

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication application(argc, argv);
    Kestry::CouchDouble server;
    std::cout << server.url() << std::endl;
    QSocketNotifier input(0, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, &application, [&] {
        std::string line;
        if (!std::getline(std::cin, line)) {
            QCoreApplication::quit();
            return;
        }
        carryOut(server, line);
    });
    return QCoreApplication::exec();
}
