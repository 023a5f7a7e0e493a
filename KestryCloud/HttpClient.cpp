#include "HttpClient.h"

#include <QIODevice>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QSslError>

#include <algorithm>
#include <cstring>
#include <utility>

#include "PromptConnections.h"
#include "Reply.h"

namespace Kestry {

namespace {

constexpr int silenceMilliseconds = 60'000;
constexpr qint64 readBufferBytes = 1 << 20;

/// A body that can be read once. The toolkit sends a request again when the connection breaks off
/// before the answer, unless it cannot read its body again.
class OneTimeBody final : public QIODevice {
public:
    explicit OneTimeBody(std::string bytes) : bytes_(std::move(bytes)) { open(ReadOnly); }

    [[nodiscard]] bool isSequential() const override { return true; }
    bool seek(qint64 /*position*/) override { return false; }
    [[nodiscard]] qint64 bytesAvailable() const override
    {
        return static_cast<qint64>(bytes_.size() - read_) + QIODevice::bytesAvailable();
    }

protected:
    qint64 readData(char* data, qint64 most) override
    {
        const std::size_t count = std::min(bytes_.size() - read_, static_cast<std::size_t>(most));
        if (count == 0) {
            return -1;
        }
        std::memcpy(data, bytes_.data() + read_, count);
        read_ += count;
        return static_cast<qint64>(count);
    }
    qint64 writeData(const char* /*data*/, qint64 /*most*/) override { return -1; }

private:
    std::string bytes_;
    std::size_t read_ = 0;
};

QNetworkRequest toolkitRequest(const HttpRequest& asked, const std::string& userAgent)
{
    QNetworkRequest request(QUrl(QString::fromStdString(asked.url), QUrl::StrictMode));
    request.setAttribute(
        QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
    request.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
    request.setAttribute(QNetworkRequest::AuthenticationReuseAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(
        QNetworkRequest::CacheLoadControlAttribute, QNetworkRequest::AlwaysNetwork);
    request.setAttribute(QNetworkRequest::CacheSaveControlAttribute, false);
    request.setTransferTimeout(silenceMilliseconds);
    request.setRawHeader("User-Agent", QByteArray::fromStdString(userAgent));
    request.setRawHeader("Accept", "application/json");
    // A small answer could unpack to a huge one.
    request.setRawHeader("Accept-Encoding", "identity");
    if (!asked.authorization.empty()) {
        request.setRawHeader("Authorization", QByteArray::fromStdString(asked.authorization));
    }
    if (asked.body) {
        request.setRawHeader("Content-Type", "application/json");
        request.setHeader(QNetworkRequest::ContentLengthHeader,
            QVariant::fromValue<qlonglong>(static_cast<qlonglong>(asked.body->size())));
        request.setAttribute(QNetworkRequest::DoNotBufferUploadDataAttribute, true);
    }
    return request;
}

/// Whether the server's answer is here to its end. Statuses from 400 are errors to the toolkit; so
/// is a connection that broke off, also after a good status.
bool isWhole(QNetworkReply::NetworkError error, int status)
{
    if (status == 0) {
        return false;
    }
    const bool tellsOfStatus = status >= 400 && error >= QNetworkReply::ContentAccessDenied
        && error != QNetworkReply::ContentReSendError;
    return error == QNetworkReply::NoError || tellsOfStatus;
}

} // namespace

/// One request on its way. Breaks off when it is destroyed.
class HttpClient::Exchange {
public:
    Exchange(HttpClient& client, HttpRequest request)
        : result_(client.scheduler_), sender_(result_.sender()), mostBytes_(request.mostBytes)
    {
        const QNetworkRequest asked = toolkitRequest(request, client.userAgent_);
        const QByteArray method = QByteArray::fromStdString(request.method);
        if (request.body) {
            body_ = std::make_unique<OneTimeBody>(*std::move(request.body));
        }
        reply_ = client.network_.sendCustomRequest(asked, method, body_.get());
        reply_->setReadBufferSize(readBufferBytes);
        QObject::connect(reply_, &QNetworkReply::readyRead, context_.get(), [this] { read(); });
        QObject::connect(reply_, &QNetworkReply::finished, context_.get(), [this] { finish(); });
        QObject::connect(reply_, &QNetworkReply::socketStartedConnecting, context_.get(),
            [this] { hasNewConnection_ = true; });
        QObject::connect(reply_, &QNetworkReply::sslErrors, context_.get(),
            [this](const QList<QSslError>& errors) { distrust_ = errors.first().errorString(); });
        // The toolkit's own time-out counts silence: a server that drips would never reach it.
        limit_ = client.scheduler_.after(
            request.seconds, [this] { breakOff(HttpFailureKind::timedOut, "The time is over."); });
    }
    Exchange(const Exchange&) = delete;
    Exchange& operator=(const Exchange&) = delete;
    ~Exchange()
    {
        context_.reset();
        reply_->abort();
        // It may be what is just delivering a signal, and it reads the body.
        if (body_) {
            body_.release()->setParent(reply_);
        }
        reply_->deleteLater();
    }

    [[nodiscard]] KestryCore::Reply<HttpAnswer>& result() { return result_; }

private:
    void read()
    {
        if (!reply_->isOpen()) {
            return; // It was broken off.
        }
        const QByteArray bytes = reply_->readAll();
        if (answer_.body.size() + static_cast<std::size_t>(bytes.size()) > mostBytes_) {
            breakOff(HttpFailureKind::tooLong, "The answer is too long.");
            return;
        }
        answer_.body.append(bytes.constData(), static_cast<std::size_t>(bytes.size()));
    }

    void finish()
    {
        read();
        limit_.cancel();
        if (hasNewConnection_) {
            // The toolkit sends a body in pieces, and does not give its connections away.
            sendPromptly();
        }
        answer_.status = reply_->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
        for (const auto& [name, value] : reply_->rawHeaderPairs()) {
            answer_.headers[name.toLower().toStdString()] = value.toStdString();
        }
        const QNetworkReply::NetworkError error = reply_->error();
        if (isWhole(error, answer_.status)) {
            sender_.give(std::move(answer_));
        } else if (error == QNetworkReply::SslHandshakeFailedError) {
            fail(HttpFailureKind::notTrusted,
                distrust_.isEmpty() ? "No secure connection." : distrust_.toStdString());
        } else if (error == QNetworkReply::OperationCanceledError) {
            fail(HttpFailureKind::timedOut, "The server is silent.");
        } else {
            fail(HttpFailureKind::unreachable, reply_->errorString().toStdString());
        }
    }

    void breakOff(HttpFailureKind kind, const std::string& detail)
    {
        fail(kind, detail); // Aborting finishes at once, and the first failure counts.
        reply_->abort();
    }
    void fail(HttpFailureKind kind, const std::string& detail) const
    {
        sender_.fail(std::make_exception_ptr(HttpFailure(kind, detail)));
    }

    KestryCore::Reply<HttpAnswer> result_;
    KestryCore::Reply<HttpAnswer>::Sender sender_;
    std::size_t mostBytes_;
    std::unique_ptr<QObject> context_ = std::make_unique<QObject>(); // of what the reply calls
    std::unique_ptr<QIODevice> body_;
    QNetworkReply* reply_ = nullptr;
    QString distrust_;
    bool hasNewConnection_ = false; // It stays open for later requests.
    HttpAnswer answer_;
    KestryCore::Timer limit_;
};

HttpClient::HttpClient(KestryCore::Scheduler& scheduler, std::string userAgent)
    : scheduler_(scheduler), userAgent_(std::move(userAgent))
{
    network_.setAutoDeleteReplies(false);
}

KestryCore::Task<HttpAnswer> HttpClient::send(HttpRequest request)
{
    Exchange exchange(*this, std::move(request));
    KestryCore::Reply<HttpAnswer>& result = exchange.result();
    HttpAnswer answer = co_await result;
    co_return answer;
}

} // namespace Kestry
