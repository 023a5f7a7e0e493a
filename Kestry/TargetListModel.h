#pragma once

#include <QAbstractListModel>
#include <QtQml/qqmlregistration.h>

#include <vector>

namespace Kestry {

/// Something that the next session can be for.
struct TargetRow {
    QString recordID; ///< Empty for the project that is made on first need.
    QString name;
    QString color; ///< As "#A2A5AA"; empty when it has none.
    bool isChosen = false;

    friend bool operator==(const TargetRow&, const TargetRow&) = default;
};

/// The clients, or the projects of one client, to choose from.
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

    /// Rows that stay in their places are only updated, so that a view keeps its own.
    void setRows(std::vector<TargetRow> rows);

private:
    std::vector<TargetRow> rows_;
};

} // namespace Kestry
