#include "LogoImport.h"

#include <QFile>

#include <exception>
#include <utility>

#include "LedgerError.h"

namespace Kestry {
namespace {

LogoResult readLogo(
    const std::string& path, const std::function<LogoResult(const std::string& picture)>& normalise)
{
    QFile file(QString::fromStdString(path));
    if (!file.open(QIODevice::ReadOnly)) {
        return {.failure = file.errorString().toStdString()};
    }
    // One byte more tells a larger file, which is never read whole.
    const QByteArray bytes = file.read(LogoImport::maximumPictureBytes + 1);
    if (file.error() != QFileDevice::NoError) {
        return {.failure = file.errorString().toStdString()};
    }
    if (static_cast<std::size_t>(bytes.size()) > LogoImport::maximumPictureBytes) {
        return {.failure = "Choose an image smaller than 20 MB."};
    }
    return normalise(bytes.toStdString());
}

} // namespace

LogoImport::LogoImport(const LogoSource& source, Finished finished)
    : source_(source), finished_(std::move(finished))
{
}

void LogoImport::start(const std::string& path)
{
    if (!isPossible()) {
        return;
    }
    const auto result = std::make_shared<LogoResult>();
    const auto work = [result, path, normalise = source_.normalise] {
        try {
            *result = readLogo(path, normalise);
        } catch (const std::exception& failure) { // it may not leave the other thread
            *result = {.failure = KestryCore::failureText(failure)};
        }
    };
    // The token goes with the import, with a later start and when cancelled.
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
