#include "AppcastFeed.h"

#include <QUrl>
#include <QXmlStreamReader>

#include <algorithm>
#include <charconv>
#include <utility>

#include "Base64.h"
#include "LedgerError.h"

namespace Kestry {

namespace {

constexpr std::size_t mostItems = 1000;
constexpr int mostDepth = 32;
constexpr qsizetype mostTextLength = 2000;
constexpr qsizetype mostVersionLength = 40;

[[noreturn]] void refuseFeed()
{
    throw KestryCore::LedgerError("The list of new versions could not be read.");
}

/// What an item says, as it stands there.
struct RawItem {
    QString version;
    QString shortVersion;
    QString minimumSystem;
    QString releaseNotes;
    std::vector<QXmlStreamAttributes> enclosures;
};

QString attribute(const QXmlStreamAttributes& attributes, QLatin1String name)
{
    const auto found = std::ranges::find_if(
        attributes, [&](const QXmlStreamAttribute& each) { return each.name() == name; });
    return found == attributes.end() ? QString() : found->value().toString();
}

QString orElse(QString first, const QString& second)
{
    return first.isEmpty() ? second : first;
}

/// A link by https to a host, without a user name; empty for any other text.
std::string secureLink(const QString& text)
{
    const QUrl url(text, QUrl::StrictMode);
    const bool isSecure = url.isValid() && url.scheme() == QLatin1String("https")
        && !url.host().isEmpty() && url.userInfo().isEmpty();
    return isSecure && text.size() <= mostTextLength ? url.toEncoded().toStdString()
                                                     : std::string();
}

std::int64_t parseLength(const std::string& text)
{
    std::int64_t length = 0;
    const char* const end = text.data() + text.size();
    const auto [rest, failure] = std::from_chars(text.data(), end, length);
    return failure == std::errc() && rest == end ? length : 0;
}

bool isShownAsItIs(const QString& text)
{
    return text.size() <= mostVersionLength
        && std::ranges::all_of(text, [](QChar each) { return each.isPrint(); });
}

/// The item that the texts make up; nullopt when it is not one for this program.
std::optional<AppcastItem> itemOf(const RawItem& raw)
{
    if (raw.enclosures.size() != 1) {
        return std::nullopt;
    }
    const QXmlStreamAttributes& enclosure = raw.enclosures.front();
    const QString system = attribute(enclosure, QLatin1String("os"));
    const QString words = orElse(attribute(enclosure, QLatin1String("version")), raw.version);
    const auto version = UpdateVersion::parse(words.toStdString());
    const auto signature =
        KestryCore::decodeBase64(attribute(enclosure, QLatin1String("edSignature")).toStdString());
    const auto minimum = UpdateVersion::parse(raw.minimumSystem.toStdString());
    const bool isForUs = system.isEmpty() || system == QLatin1String("linux");
    if (!isForUs || !version || !signature || (!minimum && !raw.minimumSystem.isEmpty())) {
        return std::nullopt;
    }
    AppcastItem item{.version = *version};
    const QString shown =
        orElse(attribute(enclosure, QLatin1String("shortVersionString")), raw.shortVersion);
    item.shortVersion =
        !shown.isEmpty() && isShownAsItIs(shown) ? shown.toStdString() : version->text();
    item.url = secureLink(attribute(enclosure, QLatin1String("url")));
    item.bytes = parseLength(attribute(enclosure, QLatin1String("length")).toStdString());
    item.minimumSystem = minimum;
    item.releaseNotes = secureLink(raw.releaseNotes);
    if (item.url.empty() || item.bytes < 1 || signature->size() != item.signature.size()) {
        return std::nullopt;
    }
    std::ranges::copy(*signature, item.signature.begin());
    return item;
}

/// Reads with one token of lookahead and no recursion, so that nesting costs nothing.
class AppcastReader {
public:
    explicit AppcastReader(std::string_view bytes)
        : reader_(QByteArray::fromRawData(bytes.data(), static_cast<qsizetype>(bytes.size())))
    {
    }

    std::vector<AppcastItem> read()
    {
        while (!reader_.atEnd()) {
            switch (reader_.readNext()) {
            case QXmlStreamReader::DTD:
            case QXmlStreamReader::EntityReference:
                refuseFeed(); // A few bytes of them stand for any number.
            case QXmlStreamReader::StartElement:
                begin();
                break;
            case QXmlStreamReader::Characters:
                add();
                break;
            case QXmlStreamReader::EndElement:
                end();
                break;
            default:
                break;
            }
        }
        if (reader_.hasError() || !hasChannel_) {
            refuseFeed();
        }
        return std::move(items_);
    }

private:
    // Depths of the elements: 1 is `rss`, 2 is `channel`, 3 an `item`, 4 what it says.
    void begin()
    {
        ++depth_;
        const auto name = reader_.name();
        if (depth_ > mostDepth || (depth_ == 1 && name != QLatin1String("rss"))) {
            refuseFeed();
        }
        if (depth_ == 2) {
            isInChannel_ = name == QLatin1String("channel");
            hasChannel_ = hasChannel_ || isInChannel_;
        } else if (depth_ == 3 && isInChannel_ && name == QLatin1String("item")) {
            item_.emplace();
        } else if (depth_ == 4 && item_) {
            text_ = textOf(name);
            if (text_ != nullptr && !text_->isEmpty()) {
                text_ = nullptr; // The first of a name counts.
            }
            if (name == QLatin1String("enclosure")) {
                item_->enclosures.push_back(reader_.attributes());
            }
        }
    }

    void add()
    {
        if (depth_ == 4 && text_ != nullptr) {
            *text_ += reader_.text();
            if (text_->size() > mostTextLength) {
                refuseFeed();
            }
        }
    }

    void end()
    {
        if (depth_ == 4 && text_ != nullptr) {
            *text_ = text_->trimmed();
            text_ = nullptr;
        } else if (depth_ == 3 && item_) {
            finishItem();
        }
        --depth_;
    }

    void finishItem()
    {
        if (++seenItems_ > mostItems) {
            refuseFeed();
        }
        if (std::optional<AppcastItem> item = itemOf(*item_)) {
            items_.push_back(*std::move(item));
        }
        item_.reset();
    }

    QString* textOf(QStringView name)
    {
        if (name == QLatin1String("version")) {
            return &item_->version;
        }
        if (name == QLatin1String("shortVersionString")) {
            return &item_->shortVersion;
        }
        if (name == QLatin1String("minimumSystemVersion")) {
            return &item_->minimumSystem;
        }
        return name == QLatin1String("releaseNotesLink") ? &item_->releaseNotes : nullptr;
    }

    QXmlStreamReader reader_;
    int depth_ = 0;
    bool hasChannel_ = false;
    bool isInChannel_ = false;
    std::optional<RawItem> item_; // the one that is being read
    QString* text_ = nullptr;     // of it, what the characters belong to
    std::size_t seenItems_ = 0;
    std::vector<AppcastItem> items_;
};

} // namespace

std::vector<AppcastItem> readAppcast(std::string_view bytes)
{
    if (bytes.size() > maximumAppcastBytes) {
        refuseFeed();
    }
    return AppcastReader(bytes).read();
}

} // namespace Kestry
