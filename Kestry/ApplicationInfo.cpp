#include "ApplicationInfo.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>

#include "LedgerError.h"
#include "PosixFileSystem.h"
#include "UpdatePrefix.h"

namespace Kestry {

namespace {

/// The path of a program that the next version has too.
QString lastingPath(const QString& program)
{
    KestryCore::PosixFileSystem files;
    try {
        const auto prefix = UpdatePrefix::ofProgram(files, program.toStdString());
        return prefix ? QString::fromStdString(prefix->launcher()) : program;
    } catch (const KestryCore::LedgerError&) {
        return program;
    }
}

} // namespace

ApplicationInfo ApplicationInfo::read(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return {};
    }
    return ApplicationInfo(QJsonDocument::fromJson(file.readAll()).object());
}

QString ApplicationInfo::pathFor(const QString& programDirectory)
{
    return QDir::cleanPath(programDirectory + "/../share/kestry/Info.json");
}

QString ApplicationInfo::bundlePath()
{
    const QString image = qEnvironmentVariable("APPIMAGE");
    return image.isEmpty() ? lastingPath(QFile::symLinkTarget("/proc/self/exe")) : image;
}

KestryCore::InfoValue ApplicationInfo::value(std::string_view key) const
{
    const QJsonValue found =
        keys_.value(QLatin1String(key.data(), static_cast<qsizetype>(key.size())));
    if (found.isBool()) {
        return found.toBool();
    }
    if (found.isString()) {
        return found.toString().toStdString();
    }
    return {};
}

} // namespace Kestry
