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

SecretAnswer answerOf(const QKeychain::ReadPasswordJob& job)
{
    switch (job.error()) {
    case QKeychain::NoError:
        return {job.textData().toStdString()};
    case QKeychain::EntryNotFound:
    case QKeychain::AccessDenied:
    case QKeychain::AccessDeniedByUser:
        return {};
    default:
        return {.mayComeLater = true};
    }
}

} // namespace

void KeychainSecrets::read(const std::string& key, std::function<void(SecretAnswer)> answered)
{
    run(new QKeychain::ReadPasswordJob(keeper), key,
        [answered = std::move(answered)](
            const QKeychain::ReadPasswordJob& job) { answered(answerOf(job)); });
}

void KeychainSecrets::write(
    const std::string& key, const std::string& secret, std::function<void(bool isKept)> answered)
{
    auto* job = new QKeychain::WritePasswordJob(keeper);
    job->setTextData(QString::fromStdString(secret));
    // A desktop whose user does not unlock it tells of a success.
    run(job, key,
        [this, key, secret, answered = std::move(answered)](
            const QKeychain::WritePasswordJob& ended) {
            if (ended.error() != QKeychain::NoError) {
                answered(false);
                return;
            }
            read(key,
                [secret, answered](const SecretAnswer& kept) { answered(kept.secret == secret); });
        });
}

void KeychainSecrets::remove(const std::string& key)
{
    run(new QKeychain::DeletePasswordJob(keeper), key,
        [](const QKeychain::DeletePasswordJob& /*job*/) {});
}

} // namespace Kestry
