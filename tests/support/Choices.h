#pragma once

#include <cstddef>
#include <cstdint>
#include <random>
#include <vector>

namespace KestryCore {

/// Where something may turn out one way or another: asked each time, it settles which.
class Choices {
public:
    Choices() = default;
    Choices(const Choices&) = delete;
    Choices& operator=(const Choices&) = delete;
    virtual ~Choices() = default;

    /// A number below `count`, which is at least 1.
    virtual std::size_t below(std::size_t count) = 0;
    /// A place to cut `count` blocks in two, from 1 to `count` - 1; `count` is at least 2.
    virtual std::size_t cut(std::size_t count) { return 1 + below(count - 1); }
};

/// The same answer every time.
class SameChoice final : public Choices {
public:
    explicit SameChoice(std::size_t answer) : answer_(answer) { }
    std::size_t below(std::size_t count) override { return answer_ < count ? answer_ : 0; }

private:
    std::size_t answer_;
};

/// The same answer every time but at one question, which gets each of its other answers:
///
///     OneApart choices(1);
///     do { … ask choices … } while (choices.next());
///
/// The first time, no question is apart. Far fewer than all combinations, yet with each question
/// that is asked settled each way, alone.
class OneApart final : public Choices {
public:
    explicit OneApart(std::size_t answer) : answer_(answer) { }

    std::size_t below(std::size_t count) override
    {
        const std::size_t usual = answer_ < count ? answer_ : 0;
        const std::size_t question = asked_++;
        if (isFirst_) {
            counts_.push_back(count);
        }
        if (isFirst_ || question != place_) {
            return usual;
        }
        return other_ < usual ? other_ : other_ + 1;
    }

    /// Moves on to the next way to be apart; false when all were given.
    [[nodiscard]] bool next()
    {
        asked_ = 0;
        other_ = isFirst_ ? 0 : other_ + 1;
        isFirst_ = false;
        while (place_ < counts_.size() && other_ + 1 >= counts_[place_]) {
            ++place_;
            other_ = 0;
        }
        return place_ < counts_.size();
    }

private:
    std::size_t answer_;
    std::vector<std::size_t> counts_; // of the answers to each question, the first time
    bool isFirst_ = true;
    std::size_t place_ = 0;
    std::size_t other_ = 0;
    std::size_t asked_ = 0;
};

/// Answers drawn from a seed: equal seeds answer alike.
class SeededChoices final : public Choices {
public:
    explicit SeededChoices(std::uint64_t seed) : random_(seed) { }
    /// Not the library's distribution, which may differ between machines.
    std::size_t below(std::size_t count) override { return random_() % count; }

private:
    std::mt19937_64 random_;
};

/// Every combination of answers, one after another:
///
///     EveryChoice choices;
///     do { … ask choices … } while (choices.next());
///
/// Of the places to cut, the first, the middle and the last are tried.
class EveryChoice final : public Choices {
public:
    std::size_t below(std::size_t count) override
    {
        if (asked_ == answers_.size()) {
            answers_.push_back({0, count});
        }
        return answers_[asked_++].answer;
    }

    std::size_t cut(std::size_t count) override
    {
        const std::size_t place = below(count < 4 ? count - 1 : 3);
        if (count < 4 || place == 0) {
            return 1 + place;
        }
        return place == 1 ? count / 2 : count - 1;
    }

    /// Moves on to the next combination; false when all were given.
    [[nodiscard]] bool next()
    {
        asked_ = 0;
        while (!answers_.empty() && answers_.back().answer + 1 == answers_.back().count) {
            answers_.pop_back();
        }
        if (answers_.empty()) {
            return false;
        }
        ++answers_.back().answer;
        return true;
    }

private:
    struct Answer {
        std::size_t answer;
        std::size_t count;
    };
    std::vector<Answer> answers_;
    std::size_t asked_ = 0;
};

} // namespace KestryCore
