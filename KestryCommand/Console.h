#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace Kestry {

/// The standard streams of a command-line program.
class Console {
public:
    Console() = default;
    Console(const Console&) = delete;
    Console& operator=(const Console&) = delete;
    virtual ~Console() = default;

    /// Whether a person can answer a question.
    [[nodiscard]] virtual bool readsFromTerminal() const = 0;
    [[nodiscard]] virtual bool writesToTerminal() const = 0;
    /// The next line of the input, without its line feed; nullopt at the end of the input.
    [[nodiscard]] virtual std::optional<std::string> readLine() = 0;
    /// The same, of which a terminal shows nothing while it is typed. The prompt goes to the
    /// standard error, where a terminal is read from.
    [[nodiscard]] virtual std::optional<std::string> readSecret(std::string_view prompt) = 0;
    /// Writes the text to the standard output. Throws a `LedgerError` when not all of it was
    /// written.
    virtual void write(std::string_view text) = 0;
    /// Writes to the standard error. Failures are ignored: there is nowhere to report them.
    virtual void writeError(std::string_view text) = 0;
};

} // namespace Kestry
