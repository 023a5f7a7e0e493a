#pragma once

#include <cstddef>

namespace KestryCore {

/// Counts what `new` hands out, for a test program that links `MemoryMeter.cpp`, which replaces
/// the operators. Counting is not affected by what other programs do meanwhile, and works under
/// the sanitizers, where a limit of the process's memory does not.
class MemoryMeter {
public:
    /// Starts to count from nothing.
    MemoryMeter();
    MemoryMeter(const MemoryMeter&) = delete;
    MemoryMeter& operator=(const MemoryMeter&) = delete;
    ~MemoryMeter();

    /// The most bytes that were held at one moment since the start, beyond those held then.
    [[nodiscard]] std::size_t peakBytes() const;
    /// How often memory was asked for.
    [[nodiscard]] std::size_t requests() const;
    /// From now on memory is refused beyond so many bytes, as on a machine that has no more.
    void refuseBeyond(std::size_t bytes);
};

} // namespace KestryCore
