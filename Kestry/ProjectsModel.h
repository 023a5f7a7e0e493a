#pragma once

#include <QtQml/qqmlregistration.h>

#include <vector>

#include "ProjectRow.h"
#include "SteppedListModel.h"

namespace Kestry {

/// The projects of a client's dashboard. A change comes in steps, so that views keep their place.
class ProjectsModel : public Kestry::SteppedListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The list comes from the bridge.")
public:
    enum Role { RecordIDRole = Qt::UserRole, NameRole, CountRole, RateRole, SpokenRole };

    /// Shows these projects.
    void show(std::vector<ProjectRow> rows);

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

private:
    std::vector<ProjectRow> rows_;
};

} // namespace Kestry
