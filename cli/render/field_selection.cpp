#include "render/field_selection.h"

#include <algorithm>
#include <functional>

namespace veltrace::cli {

FieldSelection::FieldSelection(const std::vector<std::string>& paths) : size_(paths.size()) {
    for (std::uint32_t index = 0; index < paths.size(); ++index) {
        add(paths[index], index);
    }
}

void FieldSelection::add(std::string_view path, std::uint32_t index) {
    Node* node = &root_;
    for (std::size_t start = 0; start <= path.size();) {
        const std::size_t end = std::min(path.find('.', start), path.size());
        const std::string_view name = path.substr(start, end - start);
        auto child = std::ranges::lower_bound(node->children, name, {}, &Node::name);
        if (child == node->children.end() || child->name != name) {
            child = node->children.insert(child, Node{std::string(name), {}, {}});
        }
        node = &*child;
        start = end + 1;
    }
    node->ends.push_back(index);
}

FieldSelection::Field FieldSelection::field(Place place, std::string_view name) {
    if (place.isPlain()) {
        return {};
    }
    const auto& children = place.node_->children;
    const auto child = std::ranges::lower_bound(children, name, {}, &Node::name);
    if (child == children.end() || child->name != name) {
        return {place.isWhole_ ? Wanted::whole : Wanted::no, Place(), {}};
    }
    const bool isWhole = place.isWhole_ || !child->ends.empty();
    const bool isPlainInside = isWhole && child->children.empty();
    return {isWhole ? Wanted::whole : Wanted::partly,
            isPlainInside ? Place() : Place(&*child, isWhole), child->ends};
}

void SeenFields::add(const FieldSelection::Field& field) {
    for (const std::uint32_t index : field.indices) {
        isSeen_[index] = true;
    }
}

std::vector<std::uint32_t> SeenFields::indices() const {
    std::vector<std::uint32_t> indices;
    for (std::uint32_t index = 0; index < isSeen_.size(); ++index) {
        if (isSeen_[index]) {
            indices.push_back(index);
        }
    }
    return indices;
}

bool areIndicesOf(const FieldSelection& selection, std::span<const std::uint32_t> indices) {
    const bool isAscending =
        std::ranges::adjacent_find(indices, std::greater_equal<>()) == indices.end();
    return isAscending && (indices.empty() || indices.back() < selection.size());
}

}  // namespace veltrace::cli
