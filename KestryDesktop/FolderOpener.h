#pragma once

#include <QString>

#include <functional>

namespace Kestry {

/// Shows a folder in the desktop's file browser.
class FolderOpener {
public:
    /// Told once whether a file browser has taken the folder.
    using Answered = std::function<void(bool isOpened)>;

    FolderOpener() = default;
    FolderOpener(const FolderOpener&) = delete;
    FolderOpener& operator=(const FolderOpener&) = delete;
    virtual ~FolderOpener() = default;

    /// Opens a folder that exists, by its absolute path. Calls `answered` once, never before it
    /// returns, and not at all once the opener is gone. While one folder is being opened, another
    /// takes its place, and the first is never answered for.
    virtual void open(const QString& folder, Answered answered) = 0;
};

} // namespace Kestry
