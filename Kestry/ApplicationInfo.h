#pragma once

#include <QJsonObject>
#include <QString>

#include <string_view>

#include "CloudConfiguration.h"

namespace Kestry {

/// What the build decided, read from `Info.json` beside the installed program. A missing file, or
/// one that is not a JSON object, counts as empty: every key has a default.
class ApplicationInfo {
public:
    ApplicationInfo() = default;
    explicit ApplicationInfo(QJsonObject keys) : keys_(std::move(keys)) { }

    [[nodiscard]] static ApplicationInfo read(const QString& path);
    /// The path of the file for a program in `programDirectory`, the `bin` of an installation.
    [[nodiscard]] static QString pathFor(const QString& programDirectory);
    /// The file that an update replaces, and with which the program is started again: the running
    /// program, the image that it comes in, or the launcher of an installation with several
    /// versions.
    [[nodiscard]] static QString bundlePath();

    /// `KestryDemoMode`. True only for the JSON boolean; the text "true" is false.
    [[nodiscard]] bool demoMode() const { return keys_.value("KestryDemoMode").toBool(false); }
    /// `CFBundleShortVersionString`, such as "1.2.0"; empty when it is missing or no text.
    [[nodiscard]] QString shortVersion() const
    {
        return keys_.value("CFBundleShortVersionString").toString();
    }

    /// The value of a key, its type kept; nothing for what is neither a boolean nor a text.
    [[nodiscard]] KestryCore::InfoValue value(std::string_view key) const;

private:
    QJsonObject keys_;
};

} // namespace Kestry
