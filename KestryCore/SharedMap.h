#pragma once

#include <cstddef>
#include <initializer_list>
#include <map>
#include <memory>
#include <string>
#include <utility>

#include "LedgerBytes.h"

namespace KestryCore {

/// A map from texts that is a value, yet costs nothing to copy: copies share it until one of them
/// is changed. It remembers its JSON until then, so that it is encoded once.
///
/// Not for use from several threads.
template <class Value>
class SharedMap {
public:
    using Map = std::map<std::string, Value>;

    SharedMap() = default;
    SharedMap(Map map) : content_(std::make_shared<Content>(std::move(map))) { }
    SharedMap(std::initializer_list<typename Map::value_type> values) : SharedMap(Map(values)) { }
    // Copies in place of moves: what was moved from would have no content at all.
    SharedMap(const SharedMap&) = default;
    SharedMap& operator=(const SharedMap&) = default;
    ~SharedMap() = default;

    [[nodiscard]] auto begin() const { return content_->map.cbegin(); }
    [[nodiscard]] auto end() const { return content_->map.cend(); }
    [[nodiscard]] std::size_t size() const { return content_->map.size(); }
    [[nodiscard]] bool empty() const { return content_->map.empty(); }
    [[nodiscard]] auto find(const std::string& key) const { return content_->map.find(key); }
    [[nodiscard]] bool contains(const std::string& key) const
    {
        return content_->map.contains(key);
    }
    [[nodiscard]] const Value& at(const std::string& key) const { return content_->map.at(key); }

    /// The value for changing, made when it is missing. Good until the map is next used.
    Value& operator[](const std::string& key) { return editable()[key]; }

    /// Removes the value, if there is one.
    void erase(const std::string& key)
    {
        if (contains(key)) {
            editable().erase(key);
        }
    }
    void clear() { *this = SharedMap(); }

    /// Where whoever encodes the map keeps its JSON; empty after any change.
    [[nodiscard]] SharedBytes& rememberedJson() const { return content_->json; }

    friend bool operator==(const SharedMap& left, const SharedMap& right)
    {
        return left.content_ == right.content_ || left.content_->map == right.content_->map;
    }

private:
    struct Content {
        Content() = default;
        explicit Content(Map values) : map(std::move(values)) { }

        Map map;
        SharedBytes json;
    };

    Map& editable()
    {
        if (content_.use_count() > 1) {
            content_ = std::make_shared<Content>(content_->map);
        }
        content_->json = {};
        return content_->map;
    }

    std::shared_ptr<Content> content_ = std::make_shared<Content>();
};

} // namespace KestryCore
