#include "CouchAddress.h"

#include <QHostAddress>
#include <QUrl>

#include <algorithm>
#include <string_view>

#include "CloudError.h"
#include "Text.h"

namespace Kestry {

using KestryCore::CloudError;

namespace {

constexpr std::size_t longestName = 238; // more is no file name on the server

bool isLoopback(const QString& host)
{
    return host == QLatin1String("localhost") || QHostAddress(host).isLoopback();
}

bool isDatabaseName(std::string_view name)
{
    constexpr std::string_view others = "0123456789_$()+-/";
    const auto isLetter = [](char letter) { return letter >= 'a' && letter <= 'z'; };
    return !name.empty() && name.size() <= longestName && isLetter(name.front())
        && std::ranges::all_of(name,
            [&](char letter) { return isLetter(letter) || others.find(letter) != others.npos; });
}

void requireSound(const QUrl& url)
{
    if (!url.isValid() || url.host().isEmpty()) {
        throw CloudError("This is not the address of a record store. Enter one that begins with "
                         "https://, such as https://example.org/hours.");
    }
    if (!url.userInfo().isEmpty() || url.authority().contains(QLatin1Char('@'))) {
        throw CloudError("Leave the user name and the password out of the address. They have "
                         "fields of their own.");
    }
    if (url.hasQuery() || url.hasFragment()) {
        throw CloudError("Leave out what stands after ? or # in the address.");
    }
    const bool isPlain = url.scheme() == QLatin1String("http");
    if (url.scheme() != QLatin1String("https") && !(isPlain && isLoopback(url.host()))) {
        throw CloudError("Kestry sends your records only over a secure connection. Enter an "
                         "address that begins with https://.");
    }
}

} // namespace

std::string userDatabase(const std::string& user)
{
    return "userdb-" + QByteArray::fromStdString(user).toHex().toStdString();
}

CouchAddress CouchAddress::parse(const std::string& entered, const std::string& user)
{
    const std::string text(KestryCore::trimmed(entered));
    const QUrl url(QString::fromStdString(text), QUrl::StrictMode);
    requireSound(url);
    const QString path = url.path(QUrl::FullyEncoded);
    const auto slash = path.lastIndexOf(QLatin1Char('/'));
    const QString name = QUrl::fromPercentEncoding(path.mid(slash + 1).toLatin1());
    CouchAddress address;
    address.server = url.toString(QUrl::FullyEncoded | QUrl::RemovePath).toStdString();
    address.server += path.left(std::max<qsizetype>(slash, 0)).toStdString();
    while (address.server.ends_with('/')) {
        address.server.pop_back();
    }
    address.isOwn = name.isEmpty();
    address.database = address.isOwn ? userDatabase(user) : name.toStdString();
    if (user.find(':') != std::string::npos) {
        throw CloudError("The name of a user on the server has no colon in it. Enter the name "
                         "alone; the password has a field of its own.");
    }
    if (address.isOwn && user.empty()) {
        throw CloudError("Enter your user name, or an address that ends in the name of your "
                         "database.");
    }
    if (!isDatabaseName(address.database)) {
        throw CloudError("The address ends in a name that no database can have. Names begin with "
                         "a small letter and consist of small letters, digits and _$()+-/.");
    }
    return address;
}

std::string CouchAddress::ofDatabase(const std::string& path) const
{
    const QByteArray name = QUrl::toPercentEncoding(QString::fromStdString(database));
    return server + "/" + name.toStdString() + path;
}

std::string CouchAddress::explained(const std::string& words) const
{
    const QString path = QUrl(QString::fromStdString(server)).path(QUrl::FullyEncoded);
    const QByteArray last = path.mid(path.lastIndexOf(QLatin1Char('/')) + 1).toLatin1();
    const std::string name = QUrl::fromPercentEncoding(last).toStdString();
    if (!isOwn || !isDatabaseName(name)) {
        return words;
    }
    return words + " Because the address ends in a slash, Kestry looked for a server at " + server
        + " and for your own database, " + database + ", on it. If your database is " + name
        + ", leave out the slash: " + server;
}

} // namespace Kestry
