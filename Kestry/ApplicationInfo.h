#pragma once

#include <QJsonObject>
#include <QString>

namespace Kestry {

/// What the build decided, read from `Info.json` beside the installed program. No file, or one
/// that is no JSON object, is the same as an empty one: the keys have defaults.
class ApplicationInfo {
public:
    ApplicationInfo() = default;
    explicit ApplicationInfo(QJsonObject keys) : keys_(std::move(keys)) { }

    [[nodiscard]] static ApplicationInfo read(const QString& path);
    /// The place of the file for a program in `programDirectory`, the prefix's `bin`.
    [[nodiscard]] static QString pathFor(const QString& programDirectory);
    /// The file that an update replaces: the running program, or the image that it comes in.
    [[nodiscard]] static QString bundlePath();

    /// `KestryDemoMode`: anything but the boolean true, the text "true" included, is false.
    [[nodiscard]] bool demoMode() const { return keys_.value("KestryDemoMode").toBool(false); }

private:
    QJsonObject keys_;
};

} // namespace Kestry
