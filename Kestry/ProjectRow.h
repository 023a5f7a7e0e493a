#pragma once

#include <QString>

#include <vector>

#include "Ledger.h"
#include "TextForms.h"

namespace Kestry {

/// What a client's dashboard says of a project.
struct ProjectRow {
    KestryCore::Uuid id;
    QString name;
    QString count;  ///< "3 saved sessions", in the plural for any number.
    QString rate;   ///< "$150.00 / hr", or that it is not set.
    QString spoken; ///< All of it in one line, for a screen reader.

    friend bool operator==(const ProjectRow&, const ProjectRow&) = default;
};

/// The projects of a client without the hidden one, in the order of the ledger. Walks through all
/// saved sessions once.
[[nodiscard]] std::vector<ProjectRow> projectRows(const KestryCore::LedgerData& ledger,
    const KestryCore::Uuid& clientID, const KestryCore::MoneyText& money);

} // namespace Kestry
