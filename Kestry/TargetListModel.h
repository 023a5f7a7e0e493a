#pragma once

#include <QAbstractListModel>
#include <QtQml/qqmlregistration.h>

#include <vector>

namespace Kestry {

/// A client or a project that the next session can be for.
struct TargetRow {
    QString recordID; ///< Empty for a project that is created on first use.
    QString name;
    QString color; ///< As "#A2A5AA"; empty without a colour.
    bool isChosen = false;

    friend bool operator==(const TargetRow&, const TargetRow&) = default;
};

/// A list of clients, or of the projects of one client.
class TargetListModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Lists come from the bridge.")
public:
    enum Role { RecordIDRole = Qt::UserRole, NameRole, ColorRole, IsChosenRole };

    using QAbstractListModel::QAbstractListModel;

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

    /// Replaces the rows. Rows that keep their places are updated, so that views keep their state.
    void setRows(std::vector<TargetRow> rows);

private:
    std::vector<TargetRow> rows_;
};

} // namespace Kestry
