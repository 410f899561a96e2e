// The fields of the output that the user selected.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace veltrace::cli {

/// The fields of `RenderOptions::fields`, as a tree of their names. A walk over an output starts at
/// `root()`, asks `field` for each field of a structure array, and goes on into a nested structure
/// array, whatever its number of elements, with `Field::inside`; a cell array keeps the place of
/// its field. Immutable.
class FieldSelection {
    struct Node {
        std::string name;
        std::vector<std::uint32_t> ends;  // the paths that end here, ascending
        std::vector<Node> children;       // by name
    };

public:
    enum class Wanted : std::uint8_t {
        no,
        partly,  ///< only for the wanted fields of its nested directories, if it has such
        whole
    };

    /// A structure array as the selection sees it; valid as long as the selection.
    class Place {
    public:
        Place() = default;  ///< where every field is wanted whole and none is selected

        /// Whether every field is wanted whole and none is selected, also within nested ones.
        [[nodiscard]] bool isPlain() const { return node_ == nullptr; }

    private:
        friend class FieldSelection;
        Place(const Node* node, bool isWhole) : node_(node), isWhole_(isWhole) {}

        const Node* node_ = nullptr;  // nothing below this place is selected by name if null
        bool isWhole_ = true;         // an enclosing field is wanted whole
    };

    struct Field {
        Wanted wanted = Wanted::whole;
        Place inside;
        /// The indices of this field in the selection, ascending: several if it was named twice.
        std::span<const std::uint32_t> indices;
    };

    /// Every field is wanted if `paths` is empty. A path with an empty part, such as "a..b",
    /// matches no field.
    explicit FieldSelection(const std::vector<std::string>& paths);

    /// The number of paths.
    [[nodiscard]] std::size_t size() const { return size_; }

    /// The array of directories.
    [[nodiscard]] Place root() const { return size_ == 0 ? Place() : Place(&root_, false); }

    /// The field `name` of the structure array at `place`.
    [[nodiscard]] static Field field(Place place, std::string_view name);

private:
    void add(std::string_view path, std::uint32_t index);

    Node root_;
    std::size_t size_;
};

/// The selected fields that a walk has found.
class SeenFields {
public:
    explicit SeenFields(const FieldSelection& selection) : isSeen_(selection.size()) {}

    void add(const FieldSelection::Field& field);

    /// Ascending.
    [[nodiscard]] std::vector<std::uint32_t> indices() const;

private:
    std::vector<bool> isSeen_;
};

/// Whether `SeenFields` can return `indices`: ascending, each of a selected field.
[[nodiscard]] bool areIndicesOf(const FieldSelection& selection,
                                std::span<const std::uint32_t> indices);

}  // namespace veltrace::cli
