#include "PasswordKeeper.h"

#include <utility>

namespace Kestry {

void PasswordKeeper::write(const std::string& key, const std::string& password, Answered answered)
{
    queue([this, key, password](Answered told) { secrets_.write(key, password, std::move(told)); },
        std::move(answered));
}

void PasswordKeeper::remove(const std::string& key, Answered answered)
{
    queue(
        [this, key](Answered told) { secrets_.remove(key, std::move(told)); }, std::move(answered));
}

void PasswordKeeper::queue(std::function<void(Answered)> carryOut, Answered answered)
{
    const auto wait = std::make_shared<Wait>();
    wait->answered = std::move(answered);
    wait->patience = scheduler_.after(patienceSeconds, [this, unanswered = std::weak_ptr(wait)] {
        if (const auto known = unanswered.lock()) {
            tell(*known, SecretAnswer::refused);
        }
    });
    requests_.push_back({std::move(carryOut), wait});
    if (requests_.size() == 1) {
        begin();
    }
}

void PasswordKeeper::begin()
{
    // Out of the queue: an answer that comes at once takes the request from there.
    const auto carryOut = std::move(requests_.front().carryOut);
    carryOut([this, life = std::weak_ptr<void>(life_)](SecretAnswer answer) {
        if (life.expired()) {
            return;
        }
        tell(*requests_.front().wait, answer);
        requests_.pop_front();
        if (!requests_.empty()) {
            begin();
        }
    });
}

void PasswordKeeper::tell(Wait& wait, SecretAnswer answer)
{
    if (auto answered = std::exchange(wait.answered, {})) {
        scheduler_.post(
            [life = std::weak_ptr<void>(life_), answered = std::move(answered), answer] {
                if (!life.expired()) {
                    answered(answer);
                }
            });
    }
}

} // namespace Kestry
