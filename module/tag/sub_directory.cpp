#include "tag/sub_directory.h"

#include <utility>

#include "ifd/ifd_set.h"
#include "tagfile/tag_file.h"

namespace veltrace::module {

SubDirectory::SubDirectory() noexcept = default;

SubDirectory::SubDirectory(const SubDirectory& other)
    : chain_(other.chain_ ? std::make_unique<IFDSet>(*other.chain_) : nullptr) {}

SubDirectory::SubDirectory(SubDirectory&& other) noexcept = default;

SubDirectory& SubDirectory::operator=(SubDirectory other) noexcept {
    chain_ = std::move(other.chain_);
    return *this;
}

SubDirectory::~SubDirectory() = default;

SubDirectory SubDirectory::read(TagFile& file, IfdId ifdId) {
    file.stackRoom().require();
    SubDirectory subDirectory;
    subDirectory.chain_ = std::make_unique<IFDSet>(file, ifdId);
    return subDirectory;
}

}  // namespace veltrace::module
