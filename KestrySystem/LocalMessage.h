#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Kestry {

// What processes of one user say to the application that has the data directory, and what it
// answers. Each message is a frame: four letters that name protocol and version, one for the kind,
// the length of the rest in four bytes, and the rest. The first message that is not understood ends
// the conversation.

enum class LocalMessageKind : char {
    command = 'C',  ///< A command line to carry out: a `LocalCommand`.
    activate = 'A', ///< Another start of the program: an `LocalActivation`.
    declined = 'D', ///< The answer to what the listener leaves to the caller; nothing was done.
    taken = 'T',    ///< From here on the listener carries out what was asked.
    answer = 'R',   ///< What came of it: a `LocalAnswer`.
};

/// Beyond what any request has with all its fields at their limits.
inline constexpr std::size_t maximumRequestBytes = std::size_t{3} << 20;
/// Beyond what any ledger that can be read exports.
inline constexpr std::size_t maximumAnswerBytes = (std::size_t{2} << 30) - 1;

/// The most that each field of a message may hold, so that none can keep the listener busy: more
/// than anybody types. Sizes are in bytes.
struct LocalMessageLimits {
    static constexpr std::size_t words = 64;
    static constexpr std::size_t word = 16'384; ///< Titles and names too.
    static constexpr std::size_t path = 4'096;  ///< The system takes none that is longer.
    static constexpr std::size_t settings = 16;
    static constexpr std::size_t setting = 256; ///< A locale, a time zone, a terminal's name.
    static constexpr std::size_t file = std::size_t{1} << 20;
    static constexpr std::size_t urls = 64;
};

/// A command line and what it means where it was typed. Files that it names are the caller's to
/// read and to write: those of another process, on another mount or behind another descriptor are
/// not the same.
struct LocalCommand {
    std::vector<std::string> words;            ///< Without the program's own name.
    std::string dataDirectory;                 ///< The folder that the caller found to be meant.
    std::optional<std::string> namedDirectory; ///< The folder that the words name, if they do.
    /// The variables that matter to a command; one that is not set is not there.
    std::map<std::string, std::string> environment;
    std::string timeZone; ///< The caller's, for local times: a name, or the rule of the clocks.
    bool writesToTerminal = false;
    /// Whether the caller has read the words, and has done or will do what is not for the listener:
    /// what follows here, and writing the file of the answer.
    bool isPrepared = false;
    bool isAgreed = false;              ///< A person was asked, and has agreed.
    std::optional<std::string> session; ///< The identifier of the session that the words name.
    std::optional<std::string> logo;    ///< What is in the picture file that they name.

    friend bool operator==(const LocalCommand&, const LocalCommand&) = default;
};

/// A program that was started again.
struct LocalActivation {
    std::vector<std::string> urls; ///< To be opened; none just brings the window up.
    std::string activationToken;   ///< The desktop's permission to take the focus, if any.

    friend bool operator==(const LocalActivation&, const LocalActivation&) = default;
};

/// A file that whoever typed a command has named, and what is to be in it.
struct FileToWrite {
    std::string name; ///< As typed.
    std::string bytes;

    friend bool operator==(const FileToWrite&, const FileToWrite&) = default;
};

/// What a command wrote, and its exit status.
struct LocalAnswer {
    int status = 0;
    bool hasChanged = false; ///< The ledger, which can't be taken back.
    std::string output;      ///< To be written once the file has been.
    std::string errors;
    std::optional<FileToWrite> file{}; ///< For the caller to write.

    friend bool operator==(const LocalAnswer&, const LocalAnswer&) = default;
};

/// Whether no field of a request holds more than it may. One that does is no message.
[[nodiscard]] bool isWithinLimits(const LocalCommand& command);
[[nodiscard]] bool isWithinLimits(const LocalActivation& activation);

[[nodiscard]] std::string encodeMessage(const LocalCommand& command);
[[nodiscard]] std::string encodeMessage(const LocalActivation& activation);
[[nodiscard]] std::string encodeMessage(const LocalAnswer& answer);
/// A message that its kind says all of.
[[nodiscard]] std::string encodeMessage(LocalMessageKind kind);

// The content of a frame; none when it is not exactly what the kind says.

[[nodiscard]] std::optional<LocalCommand> decodeCommand(std::string_view content);
[[nodiscard]] std::optional<LocalActivation> decodeActivation(std::string_view content);
[[nodiscard]] std::optional<LocalAnswer> decodeAnswer(std::string_view content);

/// Takes frames out of a stream of bytes as they come in.
class LocalFrameReader {
public:
    struct Frame {
        LocalMessageKind kind = LocalMessageKind::declined;
        std::string content;
    };

    explicit LocalFrameReader(std::size_t mostBytes) : mostBytes_(mostBytes) { }

    void add(std::string_view bytes) { bytes_ += bytes; }
    /// The next whole frame, once it is there.
    [[nodiscard]] std::optional<Frame> next();
    /// Whether the stream is none of ours: no frame comes any more.
    [[nodiscard]] bool isBroken() const { return isBroken_; }

private:
    std::size_t mostBytes_;
    std::string bytes_;
    bool isBroken_ = false;
};

} // namespace Kestry
