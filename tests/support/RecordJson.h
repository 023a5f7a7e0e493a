#pragma once

#include <string>
#include <string_view>
#include <vector>

/// JSON texts of records, put together by hand, so that a test can leave out a key, put a wrong
/// value in its place, or write the keys in another order.
namespace KestryCore {

/// What a key holds, which tells what would be wrong in its place.
enum class JsonForm { identifier, text, integer, number, flag, bytes, array, object };

enum class Presence { required, optional };

struct JsonField {
    std::string_view key;
    std::string value; ///< A right one, as JSON.
    JsonForm form = JsonForm::text;
    Presence presence = Presence::required;
};

/// One kind of record: its keys in their declared order, and the ledger around an object of it.
struct RecordJson {
    std::string_view kind;
    std::vector<JsonField> fields;
    std::string before; ///< The document up to the object.
    std::string after;  ///< The document after it.

    /// The object with the value of one key replaced, or the key left out when it is empty.
    [[nodiscard]] std::string object(
        std::string_view changedKey = {}, std::string_view changedValue = {}) const;
    /// The whole document around such an object.
    [[nodiscard]] std::string document(
        std::string_view changedKey = {}, std::string_view changedValue = {}) const;
};

/// Every kind of record that stands in a ledger, the ledger itself included, with all its keys.
[[nodiscard]] const std::vector<RecordJson>& recordForms();
[[nodiscard]] const RecordJson& recordForm(std::string_view kind);

/// JSON values of every wrong kind for a form.
[[nodiscard]] std::vector<std::string_view> wrongValues(JsonForm form);

} // namespace KestryCore
