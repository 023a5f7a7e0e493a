#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace Kestry {

/// Where a command-line program reads and writes.
class Console {
public:
    Console() = default;
    Console(const Console&) = delete;
    Console& operator=(const Console&) = delete;
    virtual ~Console() = default;

    /// Whether a person can answer a question.
    [[nodiscard]] virtual bool readsFromTerminal() const = 0;
    [[nodiscard]] virtual bool writesToTerminal() const = 0;
    /// The next line of the input, without its end; none at the end of the input.
    [[nodiscard]] virtual std::optional<std::string> readLine() = 0;
    /// Writes all of it to the standard output; fails with a `LedgerError` when that can't be.
    virtual void write(std::string_view text) = 0;
    /// Writes to the standard error; there is nobody to tell when that fails.
    virtual void writeError(std::string_view text) = 0;
};

} // namespace Kestry
