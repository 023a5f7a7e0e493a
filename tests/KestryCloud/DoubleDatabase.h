#pragma once

#include <QJsonArray>
#include <QJsonObject>

#include <cstdint>
#include <map>
#include <set>
#include <string>

namespace Kestry {

/// One version of a document, by its revision.
struct DoubleVersion {
    std::string parent;
    QJsonObject content; ///< Without its identifier and revision.
    bool isDeleted = false;
};

/// A document with all versions that were ever accepted.
struct DoubleDocument {
    /// The revision of the version that is shown.
    [[nodiscard]] std::string winner() const;
    /// A version as it is told, without its overruled ones.
    [[nodiscard]] QJsonObject whole(const std::string& id, const std::string& revision) const;
    void addConflicts(QJsonObject& whole) const;
    [[nodiscard]] QJsonArray history(std::string revision) const;

    std::map<std::string, DoubleVersion> versions;
    std::set<std::string> leaves;
    std::int64_t sequence = 0;
};

/// The documents of a database and the order in which they changed.
struct DoubleDatabase {
    /// Accepts a version over a parent, whatever else there is. Gives its revision.
    std::string add(const std::string& id, QJsonObject content, const std::string& parent,
        const std::string& hash = {});
    /// Saves a document as a server does: over the version that is shown, or not at all. Gives the
    /// answer.
    [[nodiscard]] QJsonObject save(const QJsonObject& document);

    std::map<std::string, DoubleDocument> documents;
    std::map<std::int64_t, std::string> feed;
    std::map<std::string, std::string> oldVersions; ///< Told by the feed in place of the newest.
    std::int64_t sequence = 0;
};

} // namespace Kestry
