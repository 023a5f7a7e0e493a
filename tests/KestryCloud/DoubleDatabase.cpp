#include "DoubleDatabase.h"

#include <QCryptographicHash>

#include <tuple>

#include "DoubleWords.h"

namespace Kestry {

std::string DoubleDocument::winner() const
{
    std::string best;
    bool bestIsDeleted = true;
    for (const std::string& leaf : leaves) {
        const bool isDeleted = versions.at(leaf).isDeleted;
        const auto rank = [](bool deleted, const std::string& revision) {
            return std::tuple(!deleted, doubleGeneration(revision), revision);
        };
        if (best.empty() || rank(isDeleted, leaf) > rank(bestIsDeleted, best)) {
            best = leaf;
            bestIsDeleted = isDeleted;
        }
    }
    return best;
}

QJsonObject DoubleDocument::whole(const std::string& id, const std::string& revision) const
{
    const DoubleVersion& version = versions.at(revision);
    QJsonObject object = version.content;
    object["_id"] = doubleText(id);
    object["_rev"] = doubleText(revision);
    if (version.isDeleted) {
        object["_deleted"] = true;
    }
    return object;
}

void DoubleDocument::addConflicts(QJsonObject& whole) const
{
    QJsonArray others;
    const std::string best = winner();
    for (const std::string& leaf : leaves) {
        if (leaf != best && !versions.at(leaf).isDeleted) {
            others.append(doubleText(leaf));
        }
    }
    if (!others.isEmpty()) {
        whole["_conflicts"] = others;
    }
}

QJsonArray DoubleDocument::history(std::string revision) const
{
    QJsonArray hashes;
    while (!revision.empty()) {
        hashes.append(doubleText(revision.substr(revision.find('-') + 1)));
        const auto version = versions.find(revision);
        revision = version != versions.end() ? version->second.parent : std::string();
    }
    return hashes;
}

std::string DoubleDatabase::add(
    const std::string& id, QJsonObject content, const std::string& parent, const std::string& hash)
{
    DoubleDocument& document = documents[id];
    DoubleVersion version;
    version.parent = parent;
    version.isDeleted = content.take("_deleted").toBool();
    content.remove("_id");
    content.remove("_rev");
    version.content = content;
    const QByteArray told =
        QByteArray::fromStdString(doubleJson(content) + parent + (version.isDeleted ? "d" : ""));
    const std::string digest = hash.empty()
        ? QCryptographicHash::hash(told, QCryptographicHash::Md5).toHex().toStdString()
        : hash;
    const std::string revision = std::to_string(doubleGeneration(parent) + 1) + "-" + digest;
    document.leaves.erase(parent);
    document.leaves.insert(revision);
    document.versions[revision] = version;
    feed.erase(document.sequence);
    document.sequence = ++sequence;
    feed[document.sequence] = id;
    return revision;
}

QJsonObject DoubleDatabase::save(const QJsonObject& document)
{
    const std::string id = document["_id"].toString().toStdString();
    const std::string parent = document["_rev"].toString().toStdString();
    const auto found = documents.find(id);
    const auto refused = QJsonObject{
        {"id", doubleText(id)}, {"error", "conflict"}, {"reason", "Document update conflict."}};
    std::string base = parent;
    if (found != documents.end()) {
        const DoubleDocument& known = found->second;
        const std::string best = known.winner();
        const bool isGone = known.versions.at(best).isDeleted;
        if (parent.empty() && isGone) {
            base = best; // It is made anew over its deletion.
        } else if (!known.leaves.contains(parent) || known.versions.at(parent).isDeleted) {
            return refused;
        }
    }
    const std::string revision = add(id, document, base);
    return QJsonObject{{"ok", true}, {"id", doubleText(id)}, {"rev", doubleText(revision)}};
}

} // namespace Kestry
