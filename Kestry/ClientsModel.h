#pragma once

#include <QtQml/qqmlregistration.h>

#include <optional>
#include <vector>

#include "ClientLogos.h"
#include "Ledger.h"
#include "SteppedListModel.h"

namespace Kestry {

/// The clients in the order of the ledger, and which one is chosen. A change comes in steps, so
/// that views keep their place.
class ClientsModel final : public Kestry::SteppedListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The list comes from the bridge.")
public:
    enum Role { RecordIDRole = Qt::UserRole, NameRole, LogoRole, IsChosenRole };

    /// The logos must outlive the model.
    explicit ClientsModel(ClientLogos& logos) : logos_(logos) { }

    /// Shows these clients. No row is chosen when `chosen` is none of them.
    void show(const ClientLogos::Clients& clients, const std::optional<KestryCore::Uuid>& chosen);

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

private:
    using Rows = std::vector<const KestryCore::Client*>;

    void reportChanges(const Rows& before, const std::optional<KestryCore::Uuid>& chosenBefore);

    ClientLogos& logos_;
    ClientLogos::Clients clients_;
    Rows rows_; ///< Records of `clients_`.
    std::optional<KestryCore::Uuid> chosen_;
};

} // namespace Kestry
