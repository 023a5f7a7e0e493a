#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "Descriptor.h"

namespace Kestry {

/// The least that speaks HTTP to a server on this machine: one connection, which stays open, and
/// requests that wait for their answer. What a record store costs is measured beside it.
class BareClient {
public:
    /// The server's address as "http://127.0.0.1:PORT".
    BareClient(const std::string& server, std::string_view user, std::string_view password);

    /// The body of the answer. Throws unless the status tells of success.
    [[nodiscard]] std::string ask(
        std::string_view method, const std::string& path, std::string_view body = {});

private:
    void send(std::string_view bytes) const;
    void receive();

    Descriptor socket_;
    std::string authorization_;
    std::string received_; // of the answer under way
};

} // namespace Kestry
