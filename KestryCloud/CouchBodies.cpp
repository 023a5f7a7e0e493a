#include "CouchBodies.h"

#include <algorithm>
#include <utility>

namespace Kestry {

using namespace KestryCore;

namespace {

std::vector<std::string> part(
    const std::vector<std::string>& ids, std::size_t first, std::size_t size)
{
    const auto begin = ids.begin() + static_cast<std::ptrdiff_t>(first);
    const std::size_t count = std::min(size, ids.size() - first);
    return {begin, begin + static_cast<std::ptrdiff_t>(count)};
}

} // namespace

std::size_t fieldBytes(const CouchDocument& document)
{
    std::size_t bytes = 0;
    for (const auto& [name, value] : document.fields) {
        if (const auto* const text = std::get_if<std::string>(&value)) {
            bytes += text->size();
        } else if (const auto* const data = std::get_if<CloudBytes>(&value)) {
            bytes += data->bytes.size();
        }
    }
    return bytes;
}

Task<CouchBodies> readBodies(
    CouchServer& server, std::vector<std::string> ids, CouchBodiesLimits limits)
{
    CouchBodies bodies;
    std::size_t size = std::max<std::size_t>(1, limits.rows);
    std::size_t bytes = 0;
    while (bodies.asked < ids.size() && bytes < limits.bytes) {
        std::vector<std::string> group = part(ids, bodies.asked, size);
        const std::size_t count = group.size();
        Task<std::vector<CouchRow>> asking = server.documents(std::move(group), true);
        try {
            std::vector<CouchRow> rows = co_await asking;
            bodies.asked += count;
            for (CouchRow& row : rows) {
                bytes += row.document ? fieldBytes(*row.document) : 0;
                bodies.rows.push_back(std::move(row));
            }
        } catch (const CouchAnswerTooLong&) {
            if (count == 1) {
                throw;
            }
            size = std::max<std::size_t>(1, count / 4);
        }
    }
    co_return bodies;
}

} // namespace Kestry
