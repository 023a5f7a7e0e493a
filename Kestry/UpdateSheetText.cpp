#include "UpdateSheetText.h"

#include <algorithm>

namespace Kestry {
namespace {

using Step = UpdateStage::Step;

constexpr const char* installLabel = "Install and Relaunch";

QString programName(const std::string& version)
{
    return "Kestry " + QString::fromStdString(version);
}

QString sizeText(std::int64_t bytes, const QLocale& locale)
{
    return locale.formattedDataSize(bytes, 1, QLocale::DataSizeSIFormat);
}

QString upToDateText(const QString& version)
{
    return (version.isEmpty() ? QString("This") : "Kestry " + version) + " is the newest version.";
}

QString foundText(const AnnouncedUpdate& update, const QString& version, const QLocale& locale)
{
    QString text = programName(update.version);
    if (update.bytes > 0) {
        text += " · " + sizeText(update.bytes, locale);
    }
    return version.isEmpty() ? text : text + "\nYou have Kestry " + version + ".";
}

QString receivedText(const UpdateStage& stage, const QLocale& locale)
{
    const QString received = sizeText(stage.received, locale);
    return stage.update.bytes > 0 ? received + " of " + sizeText(stage.update.bytes, locale)
                                  : received;
}

std::optional<double> progressOf(const UpdateStage& stage)
{
    if (stage.update.bytes <= 0) {
        return std::nullopt;
    }
    const double part =
        static_cast<double>(stage.received) / static_cast<double>(stage.update.bytes);
    return std::clamp(part, 0.0, 1.0);
}

QString failedTitle(const AnnouncedUpdate& update)
{
    return update.version.empty() ? "Updates could not be checked."
                                  : programName(update.version) + " could not be installed.";
}

} // namespace

UpdateSheetText UpdateSheetText::of(const UpdateStage& stage, const QString& version,
    const std::optional<std::string>& failure, const QLocale& locale)
{
    const QString name = programName(stage.update.version);
    switch (stage.step) {
    case Step::nothing:
        return {};
    case Step::checking:
        return {.title = "Checking for updates…", .dismiss = "Cancel"};
    case Step::upToDate:
        return {.title = "You’re up to date.", .message = upToDateText(version), .dismiss = "OK"};
    case Step::found:
        return {.title = "An update is available.",
            .message = foundText(stage.update, version, locale),
            .install = installLabel,
            .dismiss = "Later"};
    case Step::downloading:
        return {.title = "Downloading " + name,
            .message = receivedText(stage, locale),
            .dismiss = "Cancel",
            .progress = progressOf(stage)};
    case Step::unpacking:
        return {.title = "Installing " + name,
            .message = "What was downloaded is verified first.",
            .dismiss = "Cancel",
            .canDismiss = false,
            .progress = 1.0};
    case Step::ready:
        return {.title = name + " is ready.",
            .message = QString::fromStdString(
                failure.value_or("Kestry quits and starts again as the new version.")),
            .install = installLabel,
            .dismiss = "Later"};
    case Step::failed:
        return {.title = failedTitle(stage.update),
            .message = QString::fromStdString(stage.failure),
            .dismiss = "OK"};
    }
    return {};
}

} // namespace Kestry
