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

/// No command line that the system passes on is longer.
inline constexpr std::size_t maximumRequestBytes = std::size_t{8} << 20;
/// Beyond what any ledger that can be read exports.
inline constexpr std::size_t maximumAnswerBytes = (std::size_t{2} << 30) - 1;

/// A command line and what it means where it was typed.
struct LocalCommand {
    std::vector<std::string> words;            ///< Without the program's own name.
    std::string dataDirectory;                 ///< The folder that the caller found to be meant.
    std::optional<std::string> namedDirectory; ///< The folder that the words name, if they do.
    std::string workingDirectory;
    /// The variables that matter to a command; one that is not set is not there.
    std::map<std::string, std::string> environment;
    std::string timeZone; ///< The caller's, for local times: a name, or the rule of the clocks.
    bool writesToTerminal = false;
    /// That a person has agreed: the saved session that may be deleted, or an empty text.
    std::optional<std::string> agreed;

    friend bool operator==(const LocalCommand&, const LocalCommand&) = default;
};

/// A program that was started again.
struct LocalActivation {
    std::vector<std::string> urls; ///< To be opened; none just brings the window up.
    std::string activationToken;   ///< The desktop's permission to take the focus, if any.

    friend bool operator==(const LocalActivation&, const LocalActivation&) = default;
};

/// What a command wrote, and its exit status.
struct LocalAnswer {
    int status = 0;
    bool hasChanged = false; ///< The ledger, which can't be taken back.
    std::string output;
    std::string errors;

    friend bool operator==(const LocalAnswer&, const LocalAnswer&) = default;
};

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
