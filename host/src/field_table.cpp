#include "field_table.h"

#include <algorithm>

namespace zephra {

FieldTable::FieldTable(std::span<const char* const> names)
    : names_(names.begin(), names.end()), followers_(size() + 1, size()), last_(size()) {}

std::optional<std::size_t> FieldTable::find(std::string_view name) const {
    const auto found = std::ranges::find(names_, name);
    return found != names_.end() ? std::optional<std::size_t>(found - names_.begin())
                                 : std::nullopt;
}

std::optional<std::size_t> FieldTable::findNext(std::string_view name) {
    std::size_t& follower = followers_[last_];
    if (follower == size() || names_[follower] != name) {
        const std::optional<std::size_t> field = find(name);
        if (!field) {
            return std::nullopt;
        }
        follower = *field;
    }
    last_ = follower;
    return last_;
}

}  // namespace zephra
