#pragma once

#include <utility>

#include "FolderOpener.h"

namespace Kestry {

/// A desktop whose file browser is answered for by the test.
class FakeFolders final : public FolderOpener {
public:
    void open(const QString& folder, Answered answered) override
    {
        opened = folder;
        answer = std::move(answered);
    }

    QString opened; ///< The folder that was asked for last; empty without one.
    Answered answer;
};

} // namespace Kestry
