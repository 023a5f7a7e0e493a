#include "RealServer.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QNetworkProxy>
#include <QUrl>

#include <stdexcept>

#include "Awaited.h"
#include "Base64.h"
#include "Uuid.h"

namespace Kestry {

RealServerAccess RealServerAccess::current;

namespace {

constexpr const char* userPassword = "of this test alone";

std::string encoded(const std::string& name)
{
    return QUrl::toPercentEncoding(QString::fromStdString(name)).toStdString();
}

std::string newName()
{
    const std::string text = KestryCore::Uuid::random().text();
    return "kestry-test-" + QString::fromStdString(text).toLower().toStdString();
}

QJsonObject object(const std::string& json)
{
    return QJsonDocument::fromJson(QByteArray::fromStdString(json)).object();
}

} // namespace

RealServer::RealServer() : client_(scheduler_, "Kestry-test"), name_(newName())
{
    const QUrl url(QString::fromStdString(RealServerAccess::current.url));
    if (url.scheme() == "http") {
        relay_ = std::make_unique<TcpRelay>(static_cast<quint16>(url.port(80)));
    }
    const QString name = QString::fromStdString(name_);
    require("PUT", "/_users/org.couchdb.user:" + name_,
        QJsonObject{
            {"name", name}, {"password", userPassword}, {"roles", QJsonArray()}, {"type", "user"}});
    makeDatabase();
}

RealServer::~RealServer()
{
    setReachable(true);
    try {
        (void)ask("DELETE", "/" + name_);
        const std::string user = "/_users/org.couchdb.user:" + name_;
        const std::string revision = ask("GET", user)["_rev"].toString().toStdString();
        (void)ask("DELETE", user + "?rev=" + revision);
    } catch (const std::exception&) {
        // The server has gone, and the test has told so.
    }
}

CouchAddress RealServer::address() const
{
    if (relay_) {
        return {"http://127.0.0.1:" + std::to_string(relay_->port()), name_};
    }
    return {RealServerAccess::current.url, name_};
}

void RealServer::setReachable(bool isReachable)
{
    if (relay_) {
        relay_->setOpen(isReachable);
        return;
    }
    const QNetworkProxy nowhere(QNetworkProxy::HttpProxy, "127.0.0.1", 1);
    QNetworkProxy::setApplicationProxy(
        isReachable ? QNetworkProxy(QNetworkProxy::NoProxy) : nowhere);
}

CouchAccount RealServer::account() const
{
    return {name_, userPassword};
}

void RealServer::makeDatabase()
{
    require("PUT", "/" + name_, {});
    const QJsonObject own{{"names", QJsonArray{QString::fromStdString(name_)}}};
    require("PUT", "/" + name_ + "/_security", QJsonObject{{"admins", own}, {"members", own}});
}

void RealServer::remakeDatabase()
{
    (void)ask("DELETE", "/" + name_);
    makeDatabase();
}

QJsonObject RealServer::shown(const std::string& id)
{
    return ask("GET", "/" + name_ + "/" + encoded(id) + "?conflicts=true");
}

void RealServer::removeDocument(const std::string& id)
{
    const std::string revision = shown(id)["_rev"].toString().toStdString();
    (void)ask("DELETE", "/" + name_ + "/" + encoded(id) + "?rev=" + revision);
}

void RealServer::accept(
    QJsonObject document, const std::string& revision, const std::string& parent)
{
    const auto hash = [](const std::string& text) {
        return QString::fromStdString(text.substr(text.find('-') + 1));
    };
    document["_rev"] = QString::fromStdString(revision);
    document["_revisions"] = QJsonObject{
        {"start", std::stoi(revision)}, {"ids", QJsonArray{hash(revision), hash(parent)}}};
    require("POST", "/" + name_ + "/_bulk_docs",
        QJsonObject{{"new_edits", false}, {"docs", QJsonArray{document}}});
}

QJsonObject RealServer::ask(
    const std::string& method, const std::string& path, const std::optional<QJsonObject>& body)
{
    const RealServerAccess& access = RealServerAccess::current;
    HttpRequest request;
    request.method = method;
    request.url = access.url + path;
    request.authorization =
        "Basic " + KestryCore::encodeBase64(access.admin + ":" + access.password);
    if (body) {
        request.body = QJsonDocument(*body).toJson(QJsonDocument::Compact).toStdString();
    }
    const HttpAnswer answer = await(scheduler_, client_.send(std::move(request)));
    status_ = answer.status;
    return object(answer.body);
}

void RealServer::require(
    const std::string& method, const std::string& path, const QJsonObject& body)
{
    const QJsonObject answer = ask(method, path, body);
    if (status_ < 200 || status_ > 299) {
        throw std::runtime_error("The administrator was refused " + method + " " + path + ": "
            + answer["reason"].toString().toStdString());
    }
}

} // namespace Kestry
