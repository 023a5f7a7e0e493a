#include "UpdateDownload.h"

#include <QNetworkReply>
#include <QNetworkRequest>
#include <QSslError>
#include <QUrl>

#include <exception>
#include <memory>
#include <optional>
#include <utility>

#include "AppcastFeed.h"
#include "LedgerError.h"
#include "Reply.h"

namespace Kestry {

using namespace KestryCore;

namespace {

constexpr qint64 readBufferBytes = 1 << 20;
constexpr qsizetype mostUrlLength = 4000;

[[noreturn]] void failDownload(const std::string& words)
{
    throw LedgerError(words);
}

/// The address that a redirect leads to, by https; throws for any other.
std::string redirected(const std::string& from, const std::string& location)
{
    const QUrl base(QString::fromStdString(from), QUrl::StrictMode);
    const QUrl relative(QString::fromStdString(location), QUrl::StrictMode);
    const QUrl url = base.resolved(relative);
    const bool isSecure = !location.empty() && relative.isValid()
        && url.scheme() == QLatin1String("https") && !url.host().isEmpty()
        && url.userInfo().isEmpty();
    if (!isSecure || url.toString().size() > mostUrlLength) {
        failDownload("The update server leads to a connection that isn't secure.");
    }
    return url.toEncoded().toStdString();
}

bool isRedirect(int status)
{
    return status == 301 || status == 302 || status == 303 || status == 307 || status == 308;
}

/// A new file that is gone again unless it was finished.
class NewFile {
public:
    NewFile(FileSystem& files, std::string path)
        : files_(files), path_(std::move(path)), handle_(files.open(path_, FileUse::create))
    {
    }
    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;
    ~NewFile()
    {
        if (isFinished_) {
            return;
        }
        if (!isClosed_) {
            closeQuietly(files_, handle_);
        }
        try {
            files_.remove(path_);
        } catch (const LedgerError&) {
            return; // It lies where the next update clears.
        }
    }

    void write(std::string_view bytes)
    {
        while (!bytes.empty()) {
            bytes.remove_prefix(files_.write(handle_, std::span(&bytes, 1)));
        }
    }
    void finish()
    {
        isClosed_ = true;
        files_.close(handle_); // Some file systems report a failed write only now.
        isFinished_ = true;
    }

private:
    FileSystem& files_;
    std::string path_;
    FileSystem::Handle handle_;
    bool isClosed_ = false;
    bool isFinished_ = false;
};

} // namespace

/// One request on its way. Breaks off when it is destroyed.
class UpdateDownload::Exchange {
public:
    Exchange(UpdateDownload& owner, const std::string& url, double seconds, Sink sink)
        : result_(owner.scheduler_), sender_(result_.sender()), sink_(std::move(sink)),
          reply_(owner.network_.get(request(owner, url)))
    {
        reply_->setReadBufferSize(readBufferBytes);
        QObject::connect(reply_, &QNetworkReply::readyRead, context_.get(), [this] { read(); });
        QObject::connect(reply_, &QNetworkReply::finished, context_.get(), [this] { finish(); });
        // The toolkit's own time-out counts silence: a server that drips would never reach it.
        limit_ = owner.scheduler_.after(seconds, [this] { breakOff(tooSlow()); });
    }
    Exchange(const Exchange&) = delete;
    Exchange& operator=(const Exchange&) = delete;
    ~Exchange()
    {
        context_.reset();
        reply_->abort();
        reply_->deleteLater();
    }

    [[nodiscard]] Reply<Answer>& result() { return result_; }

private:
    static QNetworkRequest request(const UpdateDownload& owner, const std::string& url)
    {
        constexpr double milliseconds = 1000.0;
        QNetworkRequest request(QUrl(QString::fromStdString(url), QUrl::StrictMode));
        request.setSslConfiguration(owner.security_);
        request.setAttribute(
            QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
        request.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
        request.setAttribute(
            QNetworkRequest::AuthenticationReuseAttribute, QNetworkRequest::Manual);
        request.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
        request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
        request.setAttribute(
            QNetworkRequest::CacheLoadControlAttribute, QNetworkRequest::AlwaysNetwork);
        request.setAttribute(QNetworkRequest::CacheSaveControlAttribute, false);
        request.setTransferTimeout(static_cast<int>(owner.limits_.silenceSeconds * milliseconds));
        // The same words from everybody, whatever their version and language.
        request.setRawHeader("User-Agent", "Kestry");
        request.setRawHeader("Accept-Language", "en");
        // A small answer could unpack to a huge one.
        request.setRawHeader("Accept-Encoding", "identity");
        return request;
    }

    static std::exception_ptr failure(const std::string& words)
    {
        return std::make_exception_ptr(LedgerError(words));
    }
    static std::exception_ptr tooSlow()
    {
        return failure("The update server takes too long to answer.");
    }

    [[nodiscard]] int status() const
    {
        return reply_->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    }

    void read()
    {
        if (!reply_->isOpen()) {
            return; // It was broken off.
        }
        const QByteArray bytes = reply_->readAll();
        if (status() != 200 || bytes.isEmpty()) {
            return; // What a refusal or a redirect says besides is for nobody.
        }
        try {
            sink_({bytes.constData(), static_cast<std::size_t>(bytes.size())});
        } catch (...) {
            breakOff(std::current_exception());
        }
    }

    void finish()
    {
        read();
        limit_.cancel();
        const QNetworkReply::NetworkError error = reply_->error();
        // Statuses from 400 are errors to the toolkit; so is a connection that broke off, also
        // after a good status.
        const bool isRefusal = status() >= 400 && error >= QNetworkReply::ContentAccessDenied;
        if (error == QNetworkReply::NoError || isRefusal) {
            sender_.give(Answer{status(), reply_->rawHeader("Location").toStdString()});
        } else if (error == QNetworkReply::SslHandshakeFailedError) {
            sender_.fail(failure("The update server's certificate isn't trusted."));
        } else if (error == QNetworkReply::OperationCanceledError) {
            sender_.fail(tooSlow());
        } else {
            sender_.fail(failure("The update server can't be reached. Try again later."));
        }
    }

    void breakOff(std::exception_ptr why)
    {
        sender_.fail(std::move(why)); // Aborting finishes at once, and the first failure counts.
        reply_->abort();
    }

    Reply<Answer> result_;
    Reply<Answer>::Sender sender_;
    Sink sink_;
    std::unique_ptr<QObject> context_ = std::make_unique<QObject>(); // of what the reply calls
    QNetworkReply* reply_;
    Timer limit_;
};

UpdateDownload::UpdateDownload(Scheduler& scheduler, FileSystem& files, DownloadLimits limits,
    const std::string& moreCertificates)
    : scheduler_(scheduler), files_(files), limits_(limits),
      security_(QSslConfiguration::defaultConfiguration())
{
    network_.setAutoDeleteReplies(false);
    if (!moreCertificates.empty()) {
        security_.addCaCertificates(QString::fromStdString(moreCertificates));
    }
}

Task<UpdateDownload::Answer> UpdateDownload::ask(std::string url, double seconds, Sink sink)
{
    Exchange exchange(*this, url, seconds, std::move(sink));
    Reply<Answer>& result = exchange.result();
    Answer answer = co_await result;
    co_return answer;
}

Task<void> UpdateDownload::fetch(std::string url, double seconds, Sink sink)
{
    const double end = scheduler_.now() + seconds;
    url = redirected(url, url); // The first address is held to what the others are.
    for (int redirects = 0; redirects <= limits_.redirects; ++redirects) {
        const double left = end - scheduler_.now();
        Task<Answer> asking = ask(url, left > 0.0 ? left : 0.0, sink);
        const Answer answer = co_await asking;
        if (answer.status == 200) {
            co_return;
        }
        if (!isRedirect(answer.status)) {
            failDownload("The update server answers with an error (" + std::to_string(answer.status)
                + "). Try again later.");
        }
        url = redirected(url, answer.location);
    }
    failDownload("The update server leads from one address to another without end.");
}

Task<std::string> UpdateDownload::feed(std::string url)
{
    std::string bytes;
    const Sink sink = [&bytes](std::string_view more) {
        if (bytes.size() + more.size() > maximumAppcastBytes) {
            failDownload("The list of new versions could not be read.");
        }
        bytes += more;
    };
    Task<void> fetching = fetch(std::move(url), limits_.feedSeconds, sink);
    co_await fetching;
    co_return bytes;
}

Task<void> UpdateDownload::archive(ArchiveRequest request)
{
    NewFile file(files_, request.path);
    std::int64_t received = 0;
    const Sink sink = [&file, &received, &request](std::string_view bytes) {
        received += static_cast<std::int64_t>(bytes.size());
        if (received > request.bytes) {
            failDownload("The new version was refused: it is larger than announced.");
        }
        file.write(bytes);
        if (request.progress) {
            request.progress(received);
        }
    };
    Task<void> fetching = fetch(request.url, limits_.archiveSeconds, sink);
    co_await fetching;
    if (received != request.bytes) {
        failDownload("The new version was refused: it is smaller than announced.");
    }
    file.finish();
}

} // namespace Kestry
