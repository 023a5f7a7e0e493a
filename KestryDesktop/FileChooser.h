#pragma once

#include <QString>

#include <functional>

namespace Kestry {

/// What a person is asked when a file is to be saved.
struct SaveQuestion {
    QString title;
    QString fileName; ///< The proposed name, without a folder.
    QString folder;   ///< Where the choice begins; empty for wherever the desktop begins.
    QString typeName; ///< The one type of files, in words.
    QString mimeType;
    QString ending; ///< As ".csv".
};

/// What became of the question.
struct SaveAnswer {
    enum class Kind {
        chosen,
        cancelled,
        unavailable, ///< Nobody was asked: there is no file chooser.
    };

    Kind kind = Kind::cancelled;
    QString path{}; ///< Of the chosen file; empty when it was chosen somewhere without a path.
};

/// The desktop's dialog for files.
class FileChooser {
public:
    using Answered = std::function<void(const SaveAnswer& answer)>;

    FileChooser() = default;
    FileChooser(const FileChooser&) = delete;
    FileChooser& operator=(const FileChooser&) = delete;
    virtual ~FileChooser() = default;

    /// Asks where to save a file, in front of the program's window. Calls `answered` once, never
    /// before it returns, and not at all once the chooser is gone. A question that is asked while
    /// another is open takes its place, and the other is never answered.
    virtual void askWhereToSave(const SaveQuestion& question, Answered answered) = 0;
};

} // namespace Kestry
