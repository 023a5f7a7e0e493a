#pragma once

#include <QTcpServer>
#include <QTcpSocket>

#include <cstddef>
#include <functional>
#include <string>

namespace Kestry {

/// A way to a server on this machine that is as long as a real one: what goes through it arrives
/// after a while. It knows of the requests that pass.
class LongWire {
public:
    /// `milliseconds` is what each direction takes.
    LongWire(const std::string& server, int milliseconds);

    /// The address at this end.
    [[nodiscard]] std::string address() const;
    /// Requests that were sent so far.
    [[nodiscard]] std::size_t requests() const { return requests_; }

    /// Is called when the server has answered a request whose first line has this in it, before the
    /// answer arrives.
    void whenAnswered(const std::string& word, std::function<void()> observer);

private:
    void accept();
    void pass(QTcpSocket& from, QTcpSocket& to);
    void seeRequest(QTcpSocket& near, const QByteArray& bytes);
    void seeAnswer(QTcpSocket& near);

    quint16 serverPort_;
    int milliseconds_;
    QTcpServer listener_;
    std::size_t requests_ = 0;
    std::string word_;
    std::function<void()> observer_;
};

} // namespace Kestry
