#pragma once

#include <QImage>

#include <string_view>
#include <unordered_map>

#include "Ledger.h"

namespace Kestry {

/// The logos of the clients as images. Each is decoded when it is first asked for, and again only
/// after its bytes have changed.
class ClientLogos {
public:
    using Clients = KestryCore::RecordList<KestryCore::Client>;

    /// The logo of a client of the list; a null image for a client without one, or whose bytes are
    /// no image, or that is not in the list. Copies of the image share its pixels.
    [[nodiscard]] QImage logo(const Clients& clients, const KestryCore::Uuid& id);

    /// The image of a logo's bytes, no larger than views need it; null when they are no image.
    [[nodiscard]] static QImage decoded(std::string_view bytes);

private:
    void follow(const Clients& clients);

    Clients clients_; ///< Those that the images are of.
    std::unordered_map<KestryCore::Uuid, QImage> images_;
};

} // namespace Kestry
