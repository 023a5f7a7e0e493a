#pragma once

#include <QNetworkAccessManager>
#include <QSslConfiguration>

#include <functional>
#include <string>
#include <string_view>

#include "FileSystem.h"
#include "Scheduler.h"
#include "UpdateSource.h"

namespace Kestry {

struct DownloadLimits {
    double feedSeconds = 60.0;      ///< For the feed, however busy the line is.
    double archiveSeconds = 3600.0; ///< For an archive, likewise.
    double silenceSeconds = 60.0;   ///< Without a byte.
    int redirects = 5;
};

/// Fetches over https alone. A redirect is followed by hand, to https and no further than the
/// limit; certificates are verified against those that the system trusts. An answer is bounded in
/// bytes and time, across all redirects. It sends no cookie, no referrer and nothing that tells one
/// user from another, and resumes nothing.
class UpdateDownload final : public UpdateSource {
public:
    /// The scheduler and the files must outlive it. `moreCertificates` is the path of a file of
    /// authorities that are trusted besides the system's; empty for none.
    UpdateDownload(KestryCore::Scheduler& scheduler, KestryCore::FileSystem& files,
        DownloadLimits limits = {}, const std::string& moreCertificates = {});

    [[nodiscard]] KestryCore::Task<std::string> feed(std::string url) override;
    [[nodiscard]] KestryCore::Task<void> archive(ArchiveRequest request) override;

private:
    class Exchange;
    /// Takes bytes of an answer; throws to break off.
    using Sink = std::function<void(std::string_view bytes)>;
    /// What a server has answered, besides the bytes.
    struct Answer {
        int status = 0;
        std::string location{}; ///< Where a redirect leads.
    };

    [[nodiscard]] KestryCore::Task<void> fetch(std::string url, double seconds, Sink sink);
    [[nodiscard]] KestryCore::Task<Answer> ask(std::string url, double seconds, Sink sink);

    KestryCore::Scheduler& scheduler_;
    KestryCore::FileSystem& files_;
    DownloadLimits limits_;
    QSslConfiguration security_;
    QNetworkAccessManager network_;
};

} // namespace Kestry
