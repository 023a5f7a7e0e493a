#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <vector>

#include "SyncState.h"

namespace KestryCore {

/// What one fetch from the cloud has brought, in its order. Each record is checked when it is
/// added, so that a long fetch can be taken in over several turns of the loop.
class FetchedRecords {
public:
    struct Item {
        SyncRecord record;
        bool isSound = false; ///< It has passed `validateRecord`.
    };

    FetchedRecords() = default;
    /// Records that were not checked yet, and the cloud's metadata by `recordID`.
    FetchedRecords(const std::vector<SyncRecord>& records,
        const std::map<std::string, std::string>& systemFields);

    /// A record that is not valid is kept as such: who applies the fetch is told of it then.
    void add(SyncRecord record, std::string systemFields);

    [[nodiscard]] std::size_t size() const { return items_.size(); }
    [[nodiscard]] const std::vector<Item>& items() const { return items_; }
    [[nodiscard]] const std::map<std::string, std::string>& systemFields() const
    {
        return systemFields_;
    }

private:
    std::vector<Item> items_;
    std::map<std::string, std::string> systemFields_;
};

} // namespace KestryCore
