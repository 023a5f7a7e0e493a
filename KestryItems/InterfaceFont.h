#pragma once

#include <QFont>

#include <string>

#include "DesktopPreferences.h"

namespace Kestry {

/// Makes the desktop's interface font that of the application, from now on and for all that is
/// shown already. Where the desktop names none it is Inter.
class InterfaceFont {
public:
    /// The preferences must outlive the font, and the application must exist.
    explicit InterfaceFont(const DesktopPreferences& preferences);

private:
    void use(const std::string& family) const;

    QString fallback_; ///< Of the toolkit.
    KestryCore::Subscription subscription_;
};

} // namespace Kestry
