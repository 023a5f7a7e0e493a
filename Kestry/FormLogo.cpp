#include "FormLogo.h"

#include <exception>
#include <memory>
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
    cancel();
    running_ = std::stop_source();
    const auto result = std::make_shared<LogoResult>();
    const auto stop = running_.get_token();
    const auto work = [result, path, stop, import = source_.import] {
        if (stop.stop_requested()) {
            return;
        }
        try {
            result->logo = import(path, stop);
        } catch (const std::exception& failure) { // it may not leave the other thread
            result->failure = KestryCore::failureText(failure);
        }
    };
    const auto done = [this, result, stop] {
        if (!stop.stop_requested()) { // else this may have gone
            running_ = std::stop_source(std::nostopstate);
            finished_(*result);
        }
    };
    source_.runBeside(work, done);
}

void FormLogo::cancel()
{
    running_.request_stop();
    running_ = std::stop_source(std::nostopstate);
}

} // namespace Kestry
