#include "BareClient.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>

#include <array>
#include <stdexcept>

#include "Base64.h"
#include "Measurement.h"

namespace Kestry {

using KestryCore::require;

namespace {

constexpr std::string_view scheme = "http://127.0.0.1:";

[[noreturn]] void refuse(const std::string& what)
{
    throw std::runtime_error("The server's answer is of no use: " + what.substr(0, 200));
}

std::size_t lengthIn(const std::string& head)
{
    constexpr std::string_view name = "\r\nContent-Length: ";
    const std::size_t found = head.find(name);
    if (found == std::string::npos) {
        refuse(head);
    }
    return std::stoul(head.substr(found + name.size()));
}

} // namespace

BareClient::BareClient(const std::string& server, std::string_view user, std::string_view password)
    : socket_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)),
      authorization_(KestryCore::encodeBase64(std::string(user) + ":" + std::string(password)))
{
    require(static_cast<bool>(socket_) && server.starts_with(scheme), "socket");
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<std::uint16_t>(std::stoi(server.substr(scheme.size()))));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    require(connect(socket_.number(), reinterpret_cast<const sockaddr*>(&address), sizeof(address))
            == 0,
        "connect");
    const int on = 1;
    require(
        setsockopt(socket_.number(), IPPROTO_TCP, TCP_NODELAY, &on, sizeof(on)) == 0, "setsockopt");
}

void BareClient::send(std::string_view bytes) const
{
    while (!bytes.empty()) {
        const ssize_t sent = ::send(socket_.number(), bytes.data(), bytes.size(), MSG_NOSIGNAL);
        require(sent > 0, "send");
        bytes.remove_prefix(static_cast<std::size_t>(sent));
    }
}

void BareClient::receive()
{
    static std::array<char, std::size_t{1} << 18U> buffer;
    const ssize_t count = recv(socket_.number(), buffer.data(), buffer.size(), 0);
    require(count > 0, "recv");
    received_.append(buffer.data(), static_cast<std::size_t>(count));
}

std::string BareClient::ask(std::string_view method, const std::string& path, std::string_view body)
{
    std::string request = std::string(method) + " " + path + " HTTP/1.1\r\nHost: 127.0.0.1\r\n"
        + "Authorization: Basic " + authorization_ + "\r\nContent-Type: application/json\r\n"
        + "Content-Length: " + std::to_string(body.size()) + "\r\n\r\n";
    request += body;
    send(request);
    received_.clear();
    std::size_t end = std::string::npos;
    while (end == std::string::npos) {
        receive();
        end = received_.find("\r\n\r\n");
    }
    const std::string head = received_.substr(0, end + 2);
    const std::size_t whole = end + 4 + lengthIn(head);
    while (received_.size() < whole) {
        receive();
    }
    if (!head.starts_with("HTTP/1.1 20")) {
        refuse(received_);
    }
    return received_.substr(end + 4);
}

} // namespace Kestry
