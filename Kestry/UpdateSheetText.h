#pragma once

#include <QLocale>
#include <QString>

#include <optional>
#include <string>

#include "UpdateStage.h"

namespace Kestry {

/// What the sheet of an update says and offers at one stage.
struct UpdateSheetText {
    QString title{}; ///< Empty when there is nothing to show.
    QString message{};
    QString install{}; ///< Of the button that goes on with it; empty without one.
    QString dismiss{}; ///< Of the button that leaves it.
    bool canDismiss = true;
    /// From 0 to 1; nullopt while nothing can be measured.
    std::optional<double> progress{};

    /// `version` is that of the running program, empty for a build without one. `failure` says why
    /// the last relaunch was refused, if it was.
    [[nodiscard]] static UpdateSheetText of(const UpdateStage& stage, const QString& version,
        const std::optional<std::string>& failure, const QLocale& locale);

    friend bool operator==(const UpdateSheetText&, const UpdateSheetText&) = default;
};

} // namespace Kestry
