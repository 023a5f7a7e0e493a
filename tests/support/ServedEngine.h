#pragma once

#include <QQmlEngine>

#include "AppearanceBridge.h"

namespace Kestry {

/// An engine with all that views ask of one.
class ServedEngine final : public QQmlEngine {
public:
    explicit ServedEngine(AppearanceBridge& appearance)
    {
        addImportPath("qrc:/");
        appearance.serve(*this);
    }
};

} // namespace Kestry
