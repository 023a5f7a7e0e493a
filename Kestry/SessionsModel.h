#pragma once

#include <QtQml/qqmlregistration.h>

#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "ClientLogos.h"
#include "DayText.h"
#include "Ledger.h"
#include "RecordIndex.h"
#include "SteppedListModel.h"
#include "TextForms.h"

namespace Kestry {

/// The saved sessions of a list, in its order. It keeps the ledger and points to its records; the
/// texts of a row are made when a view asks for them.
class SessionsModel : public Kestry::SteppedListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Lists come from the bridge.")
    Q_PROPERTY(bool keepsPlace READ keepsPlace CONSTANT)
public:
    enum Role {
        LabelRole = Qt::UserRole,
        DetailRole,
        DateRole,
        DurationRole,
        ValueRole,
        ClientNameRole,
        ClientLogoRole,
        SpokenRole
    };

    /// The words in which rows are shown.
    struct Words {
        KestryCore::DayText days;
        KestryCore::MoneyText money;
    };

    SessionsModel();

    using Entries = std::vector<const KestryCore::TimeEntry*>;

    /// Shows other sessions, from the top. `entries` are records of `ledger`, of which a copy is
    /// kept.
    void show(const KestryCore::LedgerData& ledger, Entries entries);
    /// Shows the same list after the ledger has changed, with a change for each row that differs,
    /// so that views keep their place. After a change of very many rows it is shown anew.
    void update(const KestryCore::LedgerData& ledger, Entries entries);
    /// Called before the first session is shown.
    void setWords(Words words);
    /// Called before the first session is shown; without logos the rows have none. They must
    /// outlive the model.
    void setLogos(ClientLogos* logos) { logos_ = logos; }

    /// The ledger that the rows are of.
    [[nodiscard]] const KestryCore::LedgerData& ledger() const { return ledger_; }
    /// Null when there is no such row. Valid until the next change.
    [[nodiscard]] const KestryCore::TimeEntry* entry(int row) const;
    /// The name of the session in a row, which must exist.
    [[nodiscard]] std::string_view label(int row) const;
    /// -1 when the session has no row.
    [[nodiscard]] int row(const KestryCore::Uuid& id) const;
    /// Whether a reset of the model shows the same list after a change, so that a view should keep
    /// its place.
    [[nodiscard]] bool keepsPlace() const { return keepsPlace_; }
    /// The identifier of the session in a row; empty for a row that does not exist.
    Q_INVOKABLE [[nodiscard]] QString recordID(int row) const;
    /// The row of the session with an identifier; -1 for none.
    Q_INVOKABLE [[nodiscard]] int rowOf(const QString& recordID) const;

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

private:
    void take(const KestryCore::LedgerData& ledger, Entries entries);
    void reportChanges(const Entries& before);
    void reportAllChanged();

    std::optional<Words> words_;
    ClientLogos* logos_ = nullptr;
    KestryCore::LedgerData ledger_;
    std::unique_ptr<KestryCore::RecordIndex> index_; ///< Of `ledger_`.
    Entries entries_;                                ///< Records of `ledger_`.
    bool keepsPlace_ = false;
};

} // namespace Kestry
