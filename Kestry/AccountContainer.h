#pragma once

#include <memory>
#include <string>
#include <utility>

#include "CloudAccount.h"
#include "CloudDatabase.h"

namespace Kestry {

/// The store of whoever is signed in. Each exchange begins with the question for the account: the
/// store that is found then is that of the whole exchange, even when the user signs in elsewhere
/// meanwhile, so that no record of one account gets into another.
class AccountContainer final : public KestryCore::CloudContainer {
public:
    /// The identifier names the store while nobody is signed in. The account must outlive the
    /// container.
    AccountContainer(CloudAccount& account, std::string identifier)
        : account_(account), identifier_(std::move(identifier)), database_(current_)
    {
    }

    [[nodiscard]] KestryCore::Task<bool> isAccountAvailable() override;
    [[nodiscard]] KestryCore::Task<std::string> userRecordName() override;
    [[nodiscard]] KestryCore::CloudDatabase& privateDatabase() override { return database_; }

private:
    using Container = std::shared_ptr<KestryCore::CloudContainer>;

    /// Hands each operation on to the database of the store in use, which stays until it has ended.
    class Database final : public KestryCore::CloudDatabase {
    public:
        explicit Database(const Container& current) : current_(current) { }

        [[nodiscard]] KestryCore::Task<void> fetchZone(KestryCore::CloudZoneID zone) override;
        [[nodiscard]] KestryCore::Task<void> createZone(KestryCore::CloudZoneID zone) override;
        [[nodiscard]] KestryCore::Task<KestryCore::CloudChanges> changes(
            KestryCore::CloudZoneID zone, std::optional<KestryCore::CloudCursor> since) override;
        [[nodiscard]] KestryCore::Task<std::vector<KestryCore::CloudRecordResult>> save(
            std::vector<KestryCore::CloudRecord> records) override;
        [[nodiscard]] KestryCore::Task<void> discard(
            std::vector<KestryCore::CloudRecord> overruled) override;
        [[nodiscard]] KestryCore::CloudCursor witnessed(
            KestryCore::CloudCursor saved) const override;

    private:
        [[nodiscard]] Container used() const;

        const Container& current_;
    };

    CloudAccount& account_;
    std::string identifier_;
    Container current_; // since the last question for the account
    Database database_;
};

} // namespace Kestry
