// A few names to look names up in.
#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace veltrace::module {

/// A set of static, non-empty names. There is room for `kMost` of them: a search stays short as
/// long as half of the slots are free.
class NameSet {
public:
    static constexpr std::size_t kMost = 64;

    void insert(std::string_view name) { slots_[slotOf(name)] = name; }
    [[nodiscard]] bool contains(std::string_view name) const {
        return !slots_[slotOf(name)].empty();
    }

private:
    /// The slot that holds `name`, or the free one where it belongs.
    [[nodiscard]] std::size_t slotOf(std::string_view name) const {
        // Names of one length rarely begin alike.
        std::size_t slot =
            (name.size() + std::size_t{8} * static_cast<unsigned char>(name.front())) %
            slots_.size();
        while (!slots_[slot].empty() && slots_[slot] != name) {
            slot = (slot + 1) % slots_.size();
        }
        return slot;
    }

    std::array<std::string_view, 2 * kMost> slots_{};
};

}  // namespace veltrace::module
