#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "UpdateSignature.h"
#include "UpdateVersion.h"

namespace Kestry {

/// What a feed says of one version that can be downloaded. Nothing of it is signed: it is believed
/// only as far as the archive itself confirms it.
struct AppcastItem {
    UpdateVersion version;
    std::string
        shortVersion{};     ///< As people read it; the version where the feed has no other words.
    std::string url{};      ///< Of the archive: https, with a host and no user.
    std::int64_t bytes = 0; ///< Of the archive; at least 1.
    UpdateSignature signature{};                  ///< Ed25519, over the whole archive.
    std::optional<UpdateVersion> minimumSystem{}; ///< The oldest kernel that it runs on.
    std::string releaseNotes{};                   ///< A page, by https; empty without one.
};

/// How large a feed may be.
inline constexpr std::size_t maximumAppcastBytes = std::size_t{1} << 20U;

/// The versions that a feed announces, in its order: the `item`s of the `channel` of an `rss`
/// document. Of names only the part behind a prefix counts. An item has one `enclosure`, with the
/// attributes `url`, `length`, `edSignature`, `version`, `shortVersionString` and `os`, and the
/// elements `minimumSystemVersion` and `releaseNotesLink`; the versions may also be elements. Of
/// elements of one name the first counts.
///
/// An item that is meant for another system, or lacks a sound version, link, length or signature,
/// is left out: no other program can be harmed by it, and the other items are worth having. Throws
/// LedgerError, in words for people, when the bytes are no such document, when it declares a
/// document type, or when it is larger than a feed ever is.
[[nodiscard]] std::vector<AppcastItem> readAppcast(std::string_view bytes);

} // namespace Kestry
