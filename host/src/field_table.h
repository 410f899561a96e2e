// The field names of a structure array.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace zephra {

/// Field names in creation order, found by name in constant time. One table serves all elements of
/// a structure array. Of two fields with one name, the name finds the first.
class FieldTable {
public:
    /// Copies `names`, none of which may be null. Throws std::bad_alloc.
    explicit FieldTable(std::span<const char* const> names);

    [[nodiscard]] std::size_t size() const { return ends_.size(); }
    /// Name of field `index`, which must be less than `size()`.
    [[nodiscard]] std::string_view name(std::size_t index) const;
    [[nodiscard]] std::optional<std::size_t> find(std::string_view name) const;

private:
    [[nodiscard]] std::size_t slotOf(std::string_view wanted) const;

    std::string text_;               // all names, one after the other
    std::vector<std::size_t> ends_;  // where each name ends in `text_`
    // Open addressing, at most half full: field index + 1, or 0 for a free slot. Two small blocks
    // in all, where a map would take one for each name of each of a million structures.
    std::vector<std::uint32_t> slots_;
};

}  // namespace zephra
