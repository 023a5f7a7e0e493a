#include "FormLogo.h"

#include <exception>
#include <utility>

#include "LedgerError.h"

namespace Kestry {

FormLogo::FormLogo(const LogoSource& source, Finished finished)
    : source_(source), finished_(std::move(finished))
{
}

void FormLogo::start(const std::string& path)
{
    if (!isPossible()) {
        return;
    }
    const auto result = std::make_shared<LogoResult>();
    const auto work = [result, path, import = source_.import] {
        try {
            result->logo = import(path);
        } catch (const std::exception& failure) { // it may not leave the other thread
            result->failure = KestryCore::failureText(failure);
        }
    };
    // The token goes with this, with a later start and when cancelled.
    running_ = std::make_shared<bool>();
    const auto done = [this, result, token = std::weak_ptr<bool>(running_)] {
        if (!token.expired()) {
            running_.reset();
            finished_(*result);
        }
    };
    source_.runBeside(work, done);
}

} // namespace Kestry
