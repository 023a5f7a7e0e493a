#pragma once

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QString>

#include <map>
#include <string>

namespace Kestry {

// What the parts of the server of our own say and read.

inline std::string doubleJson(const QJsonObject& object)
{
    return QJsonDocument(object).toJson(QJsonDocument::Compact).toStdString();
}

inline std::string doubleJson(const QJsonArray& array)
{
    return QJsonDocument(array).toJson(QJsonDocument::Compact).toStdString();
}

inline QString doubleText(const std::string& bytes)
{
    return QString::fromStdString(bytes);
}

/// 0 for no revision.
inline int doubleGeneration(const std::string& revision)
{
    return revision.empty() ? 0 : std::stoi(revision);
}

/// Empty where there is none.
inline std::string doubleValue(
    const std::map<std::string, std::string>& all, const std::string& name)
{
    const auto found = all.find(name);
    return found != all.end() ? found->second : std::string();
}

} // namespace Kestry
