#include "AutostartFile.h"

#include <QDir>
#include <QFile>
#include <QSaveFile>

#include <algorithm>
#include <optional>
#include <utility>

#include "LedgerError.h"

namespace Kestry {
namespace {

// The second is what the manual told people to copy.
const QStringList& fileNames()
{
    static const QStringList names{
        "org.kestry.Kestry.desktop", "org.kestry.Kestry.autostart.desktop"};
    return names;
}

constexpr auto hiddenKey = "Hidden";
constexpr auto enabledKey = "X-GNOME-Autostart-enabled";

QByteArray contentsOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// The key of a line of the first group; empty for any other line.
QByteArray keyOf(const QByteArray& line)
{
    const auto end = line.indexOf('=');
    return end < 0 || line.trimmed().startsWith('#') ? QByteArray() : line.left(end).trimmed();
}

/// Where the lines of the group "Desktop Entry" are: those after its head, up to the next group.
std::pair<qsizetype, qsizetype> mainGroup(const QList<QByteArray>& lines)
{
    qsizetype begin = 0;
    while (begin < lines.size() && lines[begin].trimmed() != "[Desktop Entry]") {
        ++begin;
    }
    qsizetype end = begin + 1;
    while (end < lines.size() && !lines[end].trimmed().startsWith('[')) {
        ++end;
    }
    return {begin + 1, std::min(end, lines.size())};
}

std::optional<bool> flag(const QByteArray& contents, const QByteArray& key)
{
    const QList<QByteArray> lines = contents.split('\n');
    const auto [begin, end] = mainGroup(lines);
    for (qsizetype index = begin; index < end; ++index) {
        if (keyOf(lines[index]) == key) {
            return lines[index].mid(lines[index].indexOf('=') + 1).trimmed() == "true";
        }
    }
    return std::nullopt;
}

/// Whether it is a desktop entry at all. The desktop starts nothing by another file.
bool isEntry(const QByteArray& contents)
{
    const QList<QByteArray> lines = contents.split('\n');
    return mainGroup(lines).first <= lines.size();
}

bool starts(const QByteArray& contents)
{
    return isEntry(contents) && !flag(contents, hiddenKey).value_or(false)
        && flag(contents, enabledKey).value_or(true);
}

/// The same with a key set, in its place or at the end of the group.
QByteArray withFlag(const QByteArray& contents, const QByteArray& key, bool value)
{
    QList<QByteArray> lines = contents.split('\n');
    const auto [begin, end] = mainGroup(lines);
    const QByteArray line = key + (value ? "=true" : "=false");
    for (qsizetype index = begin; index < end; ++index) {
        if (keyOf(lines[index]) == key) {
            lines[index] = line;
            return lines.join('\n');
        }
    }
    qsizetype place = end;
    while (place > begin && lines[place - 1].trimmed().isEmpty()) {
        --place;
    }
    lines.insert(place, line);
    return lines.join('\n');
}

[[noreturn]] void refuse(const QString& path, const QString& reason)
{
    throw KestryCore::LedgerError("Whether Kestry starts with the desktop could not be stored in "
        + path.toStdString() + ": " + reason.toStdString() + ".");
}

void write(const QString& path, const QByteArray& contents)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(contents) != contents.size()
        || !file.commit()) {
        refuse(path, file.errorString());
    }
}

QByteArray switchedOn(QByteArray contents)
{
    if (flag(contents, hiddenKey)) {
        contents = withFlag(contents, hiddenKey, false);
    }
    return flag(contents, enabledKey) ? withFlag(contents, enabledKey, true) : contents;
}

} // namespace

QByteArray execText(const QString& program)
{
    QByteArray text = "\"";
    for (const char letter : QFile::encodeName(program)) {
        switch (letter) {
        case '"':
        case '`':
        case '$':
            text += "\\\\"; // a backslash, as values of text write it
            text += letter;
            break;
        case '\\':
            text += "\\\\\\\\";
            break;
        case '%':
            text += "%%";
            break;
        default:
            text += letter;
        }
    }
    return text + '"';
}

AutostartFile::AutostartFile(const QString& configuration, const QString& program)
    : configuration_(configuration), directory_(configuration + "/autostart"), program_(program)
{
    connect(&watcher_, &QFileSystemWatcher::fileChanged, this, &AutostartFile::changedOutside);
    connect(&watcher_, &QFileSystemWatcher::directoryChanged, this, &AutostartFile::changedOutside);
}

QByteArray AutostartFile::ownContents() const
{
    return "[Desktop Entry]\nType=Application\nVersion=1.4\nName=Kestry\n"
           "Comment=Keep track of the time that you bill by the hour\nIcon=org.kestry.Kestry\nExec="
        + execText(program_) + "\nTerminal=false\nNoDisplay=true\nX-GNOME-Autostart-enabled=true\n";
}

QStringList AutostartFile::present() const
{
    QStringList paths;
    for (const QString& name : fileNames()) {
        const QString path = directory_ + '/' + name;
        if (QFile::exists(path)) {
            paths << path;
        }
    }
    return paths;
}

bool AutostartFile::isOn() const
{
    const QStringList paths = present();
    return std::any_of(
        paths.begin(), paths.end(), [](const QString& path) { return starts(contentsOf(path)); });
}

void AutostartFile::set(bool isOn)
{
    const QStringList paths = present();
    if (isOn == this->isOn()) {
        return;
    }
    if (isOn && paths.isEmpty()) {
        if (!QDir().mkpath(directory_)) {
            refuse(directory_, "the folder cannot be made");
        }
        write(directory_ + '/' + fileNames().front(), ownContents());
    } else if (isOn) {
        const QByteArray contents = contentsOf(paths.front());
        write(paths.front(), isEntry(contents) ? switchedOn(contents) : ownContents());
    } else {
        for (const QString& path : paths) {
            const QByteArray contents = contentsOf(path);
            QFile file(path);
            if (!isEntry(contents)) {
                continue;
            }
            if (contents != ownContents()) {
                write(path, withFlag(contents, hiddenKey, true));
            } else if (!file.remove()) {
                refuse(path, file.errorString());
            }
        }
    }
    changedOutside();
}

void AutostartFile::follow(std::function<void()> changed)
{
    changed_ = std::move(changed);
    wasOn_ = isOn();
    watch();
}

void AutostartFile::watch()
{
    // A file that is replaced is watched no longer, and a directory that is missing may come.
    for (const QString& path : QStringList{configuration_, directory_} + present()) {
        if (QFile::exists(path)) {
            watcher_.addPath(path);
        }
    }
}

void AutostartFile::changedOutside()
{
    if (!changed_) {
        return;
    }
    watch();
    if (std::exchange(wasOn_, isOn()) != isOn()) {
        changed_();
    }
}

} // namespace Kestry
