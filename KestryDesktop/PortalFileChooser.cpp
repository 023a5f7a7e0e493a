#include "PortalFileChooser.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QFile>
#include <QUrl>

#include <utility>

namespace Kestry {
namespace {

/// One way to tell a type of files, as the portal has it.
struct FileMatch {
    uint kind = 0; ///< 0 for a pattern of names, 1 for a MIME type.
    QString text;
};

struct FileType {
    QString name;
    QList<FileMatch> matches;
};

QDBusArgument& operator<<(QDBusArgument& argument, const FileMatch& match)
{
    argument.beginStructure();
    argument << match.kind << match.text;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, FileMatch& match)
{
    argument.beginStructure();
    argument >> match.kind >> match.text;
    argument.endStructure();
    return argument;
}

QDBusArgument& operator<<(QDBusArgument& argument, const FileType& type)
{
    argument.beginStructure();
    argument << type.name << type.matches;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, FileType& type)
{
    argument.beginStructure();
    argument >> type.name >> type.matches;
    argument.endStructure();
    return argument;
}

QVariantMap options(const FileQuestion& question)
{
    FileType type{question.typeName, {}};
    for (const QString& ending : question.endings) {
        type.matches.append({0, "*" + ending});
    }
    for (const QString& mimeType : question.mimeTypes) {
        type.matches.append({1, mimeType});
    }
    QVariantMap result{{"modal", true}, {"filters", QVariant::fromValue(QList<FileType>{type})},
        {"current_filter", QVariant::fromValue(type)}};
    if (!question.fileName.isEmpty()) {
        result["current_name"] = question.fileName;
    }
    if (!question.folder.isEmpty()) {
        // The portal wants the final zero of a path.
        result["current_folder"] = QFile::encodeName(question.folder) + '\0';
    }
    return result;
}

FileAnswer fileAnswer(const std::optional<PortalAnswer>& answer)
{
    if (!answer) {
        return {FileAnswer::Kind::unavailable};
    }
    const QStringList addresses = answer->results.value("uris").toStringList();
    if (answer->code != 0 || addresses.isEmpty()) {
        return {FileAnswer::Kind::cancelled};
    }
    return {FileAnswer::Kind::chosen, QUrl(addresses.front()).toLocalFile()};
}

} // namespace

PortalFileChooser::PortalFileChooser(PortalRequest::Bus bus, int patienceMilliseconds)
    : request_(std::move(bus), "kestryFiles", patienceMilliseconds)
{
    qDBusRegisterMetaType<FileMatch>();
    qDBusRegisterMetaType<QList<FileMatch>>();
    qDBusRegisterMetaType<FileType>();
    qDBusRegisterMetaType<QList<FileType>>();
}

void PortalFileChooser::ask(const FileQuestion& question, Answered answered)
{
    const bool isSaving = question.purpose == FileQuestion::Purpose::save;
    request_.ask({"org.freedesktop.portal.FileChooser", isSaving ? "SaveFile" : "OpenFile",
                     {PortalRequest::parentWindow(), question.title}, options(question)},
        [answered = std::move(answered)](const auto& answer) { answered(fileAnswer(answer)); });
}

} // namespace Kestry
