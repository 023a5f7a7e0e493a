#pragma once

#include <QJsonDocument>
#include <QJsonObject>

#include <string>

#include "CouchDocument.h"

namespace Kestry {

/// The document of a record as a device sends it, without a revision.
inline QJsonObject sentDocument(KestryCore::CloudRecord record)
{
    record.serverVersion.clear();
    const std::string json = couchJson(documentOf(record));
    return QJsonDocument::fromJson(QByteArray::fromStdString(json)).object();
}

/// The revision in a record's version, as the server spells it.
inline std::string revisionOf(const KestryCore::CloudRecord& record)
{
    return record.serverVersion.substr(record.serverVersion.find(':') + 1);
}

} // namespace Kestry
