#include "KeychainSecrets.h"

#include <qt6keychain/keychain.h>

#include <utility>

namespace Kestry {
namespace {

SecretAnswer answerOf(const QKeychain::Job& job)
{
    switch (job.error()) {
    case QKeychain::NoError:
        return SecretAnswer::done;
    case QKeychain::EntryNotFound:
        return SecretAnswer::noEntry;
    case QKeychain::NoBackendAvailable:
    case QKeychain::NotImplemented:
        return SecretAnswer::noService;
    default:
        return SecretAnswer::refused;
    }
}

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

QString keeper()
{
    return QStringLiteral("org.kestry.Kestry");
}

void readSecret(
    const std::string& key, std::function<void(SecretAnswer, const std::string& secret)> answered)
{
    run(new QKeychain::ReadPasswordJob(keeper()), key,
        [answered = std::move(answered)](const QKeychain::ReadPasswordJob& job) {
            answered(answerOf(job), job.textData().toStdString());
        });
}

} // namespace

void KeychainSecrets::read(
    const std::string& key, std::function<void(SecretAnswer, const std::string& secret)> answered)
{
    readSecret(key, std::move(answered));
}

void KeychainSecrets::write(const std::string& key, const std::string& secret, Answered answered)
{
    auto* job = new QKeychain::WritePasswordJob(keeper());
    job->setTextData(QString::fromStdString(secret));
    // A desktop whose user does not unlock it tells of a success.
    run(job, key,
        [key, secret, answered = std::move(answered)](const QKeychain::WritePasswordJob& ended) {
            if (ended.error() != QKeychain::NoError) {
                answered(answerOf(ended));
                return;
            }
            readSecret(key, [secret, answered](SecretAnswer answer, const std::string& kept) {
                const bool isKept = answer == SecretAnswer::done && kept == secret;
                answered(isKept ? SecretAnswer::done : SecretAnswer::refused);
            });
        });
}

void KeychainSecrets::remove(const std::string& key, Answered answered)
{
    run(new QKeychain::DeletePasswordJob(keeper()), key,
        [answered = std::move(answered)](
            const QKeychain::DeletePasswordJob& job) { answered(answerOf(job)); });
}

} // namespace Kestry
