#pragma once

#include <string>

#include "LedgerError.h"
#include "Require.h"

namespace KestryCore {

/// The sentence with which an action was refused; empty when it was not. Any failure but a
/// `LedgerError` goes through and ends the program, and so does a sentence too long to be shown.
template <class Action>
std::string verdictOn(Action action)
{
    constexpr std::size_t longestSentence = 4096;
    try {
        action();
    } catch (const LedgerError& refusal) {
        const std::string sentence = refusal.what();
        require(!sentence.empty(), "a refusal has words");
        require(sentence.size() <= longestSentence, "a refusal is short enough to be shown");
        return sentence;
    }
    return {};
}

} // namespace KestryCore
