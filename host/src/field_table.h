// The field names of a structure array.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace zephra {

/// Field names in creation order; one table serves all elements of a structure array. When several
/// fields have the same name, the name finds the first of them.
class FieldTable {
public:
    /// Copies `names`, none of which may be null. Throws std::bad_alloc.
    explicit FieldTable(std::span<const char* const> names);

    [[nodiscard]] std::size_t size() const { return names_.size(); }
    /// Name of field `index`, which must be less than `size()`.
    [[nodiscard]] std::string_view name(std::size_t index) const { return names_[index]; }
    [[nodiscard]] std::optional<std::size_t> find(std::string_view name) const;

    /// As `find`, but looks first at the field that followed last time: modules fill the elements
    /// of a structure array in the same order. Not for several threads at once.
    [[nodiscard]] std::optional<std::size_t> findNext(std::string_view name);

private:
    std::vector<std::string> names_;
    std::vector<std::size_t> followers_;  // of each field, and of none; `size()`: not known yet
    std::size_t last_;                    // the field found last; `size()`: none
};

}  // namespace zephra
