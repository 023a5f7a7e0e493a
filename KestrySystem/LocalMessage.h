#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Kestry {

// The messages between other processes of the user and the application that has the data directory.
// Each is a frame: four letters that name the protocol and its version, one letter for the kind,
// the length of the content in four bytes, and the content. A message that can't be read ends the
// conversation. docs/local-protocol.md describes every field.

enum class LocalMessageKind : char {
    command = 'C',  ///< A command line to carry out: a `LocalCommand`.
    activate = 'A', ///< Another start of the program: a `LocalActivation`.
    declined = 'D', ///< The listener leaves the command to the caller; nothing was done.
    taken = 'T',    ///< The listener is about to carry the command out, or still does.
    answer = 'R',   ///< The result: a `LocalAnswer`.
};

/// More than a request with all its fields at their limits.
inline constexpr std::size_t maximumRequestBytes = std::size_t{3} << 20;
/// More than the export of the largest ledger that can be read.
inline constexpr std::size_t maximumAnswerBytes = (std::size_t{2} << 30) - 1;

/// The limits of each field of a request, so that none can keep the listener busy. They are beyond
/// what people type. Sizes are in bytes.
struct LocalMessageLimits {
    static constexpr std::size_t words = 64;
    static constexpr std::size_t word = 16'384; ///< Titles and names too.
    static constexpr std::size_t path = 4'096;  ///< The system's own limit.
    static constexpr std::size_t settings = 16;
    static constexpr std::size_t setting = 256; ///< A locale, a time zone, a terminal's name.
    static constexpr std::size_t file = std::size_t{1} << 20;
    static constexpr std::size_t secret = 4'096;
    static constexpr std::size_t urls = 64;
};

/// A command line together with the circumstances of its caller, which affect its meaning. The
/// caller reads and writes the files that it names: for another process the same path may lead to
/// another file.
struct LocalCommand {
    std::vector<std::string> words;            ///< Without the program's own name.
    std::string dataDirectory;                 ///< As the caller has found it.
    std::optional<std::string> namedDirectory; ///< As the words name it, if they do.
    /// The environment variables that affect a command; those that are not set are left out.
    std::map<std::string, std::string> environment;
    std::string timeZone; ///< The caller's: a name, or a rule such as "XYZ-3".
    bool writesToTerminal = false;
    /// Whether the caller has parsed the words, has filled in the fields below, and will write the
    /// file of the answer.
    bool isPrepared = false;
    bool isConfirmed = false;           ///< A person was asked and said yes.
    std::optional<std::string> session; ///< The ID of the session that the words name.
    std::optional<std::string> logo;    ///< Made of the picture file that they name.
    std::optional<std::string> secret;  ///< The password that the words need; never one of them.

    friend bool operator==(const LocalCommand&, const LocalCommand&) = default;
};

/// Another start of the application.
struct LocalActivation {
    std::vector<std::string> urls; ///< To be opened; when empty, the window is shown.
    std::string activationToken;   ///< The desktop's permission to take the focus, if any.

    friend bool operator==(const LocalActivation&, const LocalActivation&) = default;
};

/// A file that the words of a command name, and its new content.
struct FileToWrite {
    std::string name; ///< As typed.
    std::string bytes;

    friend bool operator==(const FileToWrite&, const FileToWrite&) = default;
};

/// The result of a command.
struct LocalAnswer {
    int status = 0;                    ///< The exit status.
    bool hasChanged = false;           ///< Whether the ledger has changed.
    std::string output;                ///< For the standard output, once the file is written.
    std::string errors;                ///< For the standard error, before everything else.
    std::optional<FileToWrite> file{}; ///< For the caller to write.

    friend bool operator==(const LocalAnswer&, const LocalAnswer&) = default;
};

/// Whether every field is within `LocalMessageLimits`. Requests beyond them can't be decoded.
[[nodiscard]] bool isWithinLimits(const LocalCommand& command);
[[nodiscard]] bool isWithinLimits(const LocalActivation& activation);

[[nodiscard]] std::string encodeMessage(const LocalCommand& command);
[[nodiscard]] std::string encodeMessage(const LocalActivation& activation);
[[nodiscard]] std::string encodeMessage(const LocalAnswer& answer);
/// A message without content: `declined` or `taken`.
[[nodiscard]] std::string encodeMessage(LocalMessageKind kind);

// The content of a frame; nullopt unless it is complete, without any bytes after it.

[[nodiscard]] std::optional<LocalCommand> decodeCommand(std::string_view content);
[[nodiscard]] std::optional<LocalActivation> decodeActivation(std::string_view content);
[[nodiscard]] std::optional<LocalAnswer> decodeAnswer(std::string_view content);

/// Splits a stream of bytes into frames.
class LocalFrameReader {
public:
    struct Frame {
        LocalMessageKind kind = LocalMessageKind::declined;
        std::string content;
    };

    explicit LocalFrameReader(std::size_t mostBytes) : mostBytes_(mostBytes) { }

    void add(std::string_view bytes) { bytes_ += bytes; }
    /// The next frame; nullopt while it is incomplete.
    [[nodiscard]] std::optional<Frame> next();
    /// Whether the stream has another protocol or version, or a frame that is too long. No frame
    /// can be read any more.
    [[nodiscard]] bool isBroken() const { return isBroken_; }

private:
    std::size_t mostBytes_;
    std::string bytes_;
    bool isBroken_ = false;
};

} // namespace Kestry
