#include "KeychainSecrets.h"

#include <qt6keychain/keychain.h>

#include <utility>

namespace Kestry {
namespace {

const QString keeper = QStringLiteral("org.kestry.Kestry");

/// Starts a job, which deletes itself once it has called back.
template <class Job, class Finished>
void run(Job* job, const std::string& key, Finished finished)
{
    job->setKey(QString::fromStdString(key));
    job->setAutoDelete(true);
    job->setInsecureFallback(false);
    QObject::connect(job, &QKeychain::Job::finished, job,
        [finished = std::move(finished)](
            QKeychain::Job* ended) { finished(*static_cast<Job*>(ended)); });
    job->start();
}

} // namespace

void KeychainSecrets::read(
    const std::string& key, std::function<void(std::optional<std::string>)> answered)
{
    run(new QKeychain::ReadPasswordJob(keeper), key,
        [answered = std::move(answered)](const QKeychain::ReadPasswordJob& job) {
            answered(job.error() == QKeychain::NoError ? std::optional(job.textData().toStdString())
                                                       : std::nullopt);
        });
}

void KeychainSecrets::write(
    const std::string& key, const std::string& secret, std::function<void(bool isKept)> answered)
{
    auto* job = new QKeychain::WritePasswordJob(keeper);
    job->setTextData(QString::fromStdString(secret));
    run(job, key, [answered = std::move(answered)](const QKeychain::WritePasswordJob& ended) {
        answered(ended.error() == QKeychain::NoError);
    });
}

void KeychainSecrets::remove(const std::string& key)
{
    run(new QKeychain::DeletePasswordJob(keeper), key,
        [](const QKeychain::DeletePasswordJob& /*job*/) {});
}

} // namespace Kestry
