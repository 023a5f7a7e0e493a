#pragma once

#include <QString>
#include <QStringList>

#include <functional>

namespace Kestry {

/// What a person is asked for: one file, of one type.
struct FileQuestion {
    enum class Purpose { save, open };

    Purpose purpose = Purpose::save;
    QString title{};
    QString fileName{}; ///< The proposed name to save by, without a folder.
    QString folder{};   ///< Where the choice begins; empty for wherever the desktop begins.
    QString typeName{}; ///< The type of files, in words.
    QStringList mimeTypes{};
    QStringList endings{}; ///< As ".csv".
};

/// What became of the question.
struct FileAnswer {
    enum class Kind {
        chosen,
        cancelled,
        unavailable, ///< There is no dialog for files, or it has gone without an answer.
    };

    Kind kind = Kind::cancelled;
    QString path{}; ///< Of the chosen file; empty when it was chosen somewhere without a path.
};

/// Lets the user choose a file.
class FileChooser {
public:
    using Answered = std::function<void(const FileAnswer& answer)>;

    FileChooser() = default;
    FileChooser(const FileChooser&) = delete;
    FileChooser& operator=(const FileChooser&) = delete;
    virtual ~FileChooser() = default;

    /// Asks in front of the program's window. Calls `answered` once, never before it returns, and
    /// not at all once the chooser is gone. A question that is asked while another is open takes
    /// its place, and the other is never answered.
    virtual void ask(const FileQuestion& question, Answered answered) = 0;
};

} // namespace Kestry
