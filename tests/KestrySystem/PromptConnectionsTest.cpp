#include "PromptConnections.h"

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>

#include "Descriptor.h"

namespace Kestry {
namespace {

bool isPrompt(const Descriptor& connection)
{
    int value = 0;
    socklen_t size = sizeof value;
    EXPECT_EQ(getsockopt(connection.number(), IPPROTO_TCP, TCP_NODELAY, &value, &size), 0);
    return value != 0;
}

TEST(PromptConnections, EachConnectionOverTheNetworkBecomesPrompt)
{
    const Descriptor old(socket(AF_INET, SOCK_STREAM, 0));
    const Descriptor modern(socket(AF_INET6, SOCK_STREAM, 0));
    ASSERT_FALSE(isPrompt(old));
    sendPromptly();
    EXPECT_TRUE(isPrompt(old));
    if (modern) { // Some machines have none of these.
        EXPECT_TRUE(isPrompt(modern));
    }
}

TEST(PromptConnections, OtherDescriptorsAreLeftAlone)
{
    const Descriptor local(socket(AF_UNIX, SOCK_STREAM, 0));
    const Descriptor datagrams(socket(AF_INET, SOCK_DGRAM, 0));
    sendPromptly();
    const char byte = 'x';
    EXPECT_EQ(send(datagrams.number(), &byte, 1, MSG_NOSIGNAL), -1) << "it has no address";
    EXPECT_EQ(send(local.number(), &byte, 1, MSG_NOSIGNAL), -1);
}

} // namespace
} // namespace Kestry
