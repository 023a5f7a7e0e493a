#include "ClientLogos.h"

#include <algorithm>

namespace Kestry {
namespace {

// The largest avatar on the densest screen. A stored logo may have four times as many pixels.
constexpr int largestSide = 128;

} // namespace

QImage ClientLogos::logo(const Clients& clients, const KestryCore::Uuid& id)
{
    follow(clients);
    const auto known = images_.find(id);
    if (known != images_.end()) {
        return known->second;
    }
    const KestryCore::Client* client = clients.find(id);
    if (!client || !client->logoData) {
        return {};
    }
    return images_.emplace(id, decoded(*client->logoData)).first->second;
}

void ClientLogos::follow(const Clients& clients)
{
    if (clients.sharesAllWith(clients_)) {
        return;
    }
    std::erase_if(images_, [&](const auto& image) {
        const KestryCore::Client* before = clients_.find(image.first);
        const KestryCore::Client* after = clients.find(image.first);
        return !before || !after || before->logoData != after->logoData;
    });
    clients_ = clients;
}

QImage ClientLogos::decoded(std::string_view bytes)
{
    const QImage image =
        QImage::fromData(QByteArrayView(bytes.data(), static_cast<qsizetype>(bytes.size())), "PNG");
    if (std::max(image.width(), image.height()) <= largestSide) {
        return image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    }
    return image.scaled(largestSide, largestSide, Qt::KeepAspectRatio, Qt::SmoothTransformation)
        .convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

} // namespace Kestry
