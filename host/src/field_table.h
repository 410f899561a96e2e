// The field names of a structure array.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>
#include <optional>
#include <span>
#include <string_view>

namespace zephra {

/// Field names in creation order, found by name in constant time unless many differ in their middle
/// alone. One table serves all elements of a structure array. Of two fields with one name, the name
/// finds the first.
class FieldTable {
public:
    /// Copies `names`, none of which may be null. Throws std::bad_alloc.
    explicit FieldTable(std::span<const char* const> names);

    [[nodiscard]] std::size_t size() const { return size_; }
    /// Name of field `index`, which must be less than `size()`.
    [[nodiscard]] std::string_view name(std::size_t index) const {
        return {&text_[fields_[index].begin], fields_[index + 1].begin - fields_[index].begin - 1};
    }
    [[nodiscard]] std::optional<std::size_t> find(std::string_view name) const;

    /// As `find`, for names that come in the same order again and again, element by element: what
    /// followed the last name is looked at first. `kNone` for a name that is none. Not for several
    /// threads at once.
    [[nodiscard]] std::size_t findNext(const char* name) {
        const std::size_t likely = last_ < size_ ? fields_[last_].successor : 0;
        if (likely < size_ && std::strcmp(&text_[fields_[likely].begin], name) == 0) {
            last_ = likely;
            return likely;
        }
        return findAnew(name);
    }
    static constexpr std::size_t kNone = std::numeric_limits<std::size_t>::max();

private:
    struct Field {
        std::size_t begin;      // of its name in `text_`
        std::size_t successor;  // the field whose name was asked for after this one
    };
    struct Slot {
        std::uint32_t field = 0;  // its index + 1; 0 where the slot is free
        std::uint32_t hash = 0;
    };

    [[nodiscard]] std::size_t findAnew(const char* name);
    /// The slot that holds a name, or the free one where it belongs.
    [[nodiscard]] std::size_t slotOf(std::string_view wanted, std::uint32_t hash) const;

    // Three small blocks in all, where a map would take one for each name of each of a million
    // structures.
    std::size_t size_;
    std::unique_ptr<Field[]> fields_;  // and one more, where `text_` ends
    std::unique_ptr<char[]> text_;     // all names, each with its NUL
    std::size_t slotCount_;
    std::unique_ptr<Slot[]> slots_;  // open addressing, at most half full
    std::size_t last_ = 0;
};

}  // namespace zephra
