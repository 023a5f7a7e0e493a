#pragma once

#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <utility>

#include "SecretStore.h"

namespace Kestry {

/// A desktop that keeps passwords, or does what it is told to do instead: keep none, refuse, or
/// answer only later.
class FakeSecrets final : public SecretStore {
public:
    void read(const std::string& key,
        std::function<void(SecretAnswer, const std::string& secret)> answered) override
    {
        ++reads;
        request([this, key, answered = std::move(answered)] {
            const auto found = secrets.find(key);
            const auto none = found == secrets.end() ? SecretAnswer::noEntry : SecretAnswer::done;
            const SecretAnswer answer = refusal().value_or(none);
            answered(answer, answer == SecretAnswer::done ? found->second : "");
        });
    }
    void write(const std::string& key, const std::string& secret, Answered answered) override
    {
        request([this, key, secret, answered = std::move(answered)] {
            if (!refusal()) {
                secrets[key] = secret;
            }
            answered(refusal().value_or(SecretAnswer::done));
        });
    }
    void remove(const std::string& key, Answered answered) override
    {
        request([this, key, answered = std::move(answered)] {
            if (!refusal()) {
                secrets.erase(key);
            }
            answered(refusal().value_or(SecretAnswer::done));
        });
    }

    /// Answers what was asked first.
    void answer()
    {
        const auto first = std::move(asked.front());
        asked.pop_front();
        first();
    }

    bool keeps = true;         ///< Else there is no such service.
    bool isLocked = false;     ///< Everything is refused.
    bool answersLater = false; ///< Waits for `answer`.
    int reads = 0;
    std::map<std::string, std::string> secrets;
    std::deque<std::function<void()>> asked; ///< And not answered.

private:
    [[nodiscard]] std::optional<SecretAnswer> refusal() const
    {
        if (!keeps) {
            return SecretAnswer::noService;
        }
        return isLocked ? std::optional(SecretAnswer::refused) : std::nullopt;
    }
    void request(std::function<void()> carryOut)
    {
        asked.push_back(std::move(carryOut));
        if (!answersLater) {
            answer();
        }
    }
};

} // namespace Kestry
