#include "PromptConnections.h"

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>

#include <charconv>
#include <filesystem>
#include <string>
#include <system_error>

namespace Kestry {

namespace {

/// An option of a socket; -1 for a descriptor of another kind.
int socketOption(int descriptor, int name)
{
    int value = -1;
    socklen_t size = sizeof value;
    return getsockopt(descriptor, SOL_SOCKET, name, &value, &size) == 0 ? value : -1;
}

bool isTcp(int descriptor)
{
    return socketOption(descriptor, SO_PROTOCOL) == IPPROTO_TCP
        && socketOption(descriptor, SO_TYPE) == SOCK_STREAM;
}

} // namespace

void sendPromptly()
{
    std::error_code ignored;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd", ignored)) {
        const std::string name = entry.path().filename();
        int descriptor = -1;
        std::from_chars(name.data(), name.data() + name.size(), descriptor);
        if (descriptor >= 0 && isTcp(descriptor)) {
            // One that was closed meanwhile needs nothing.
            const int on = 1;
            (void)setsockopt(descriptor, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
        }
    }
}

} // namespace Kestry
