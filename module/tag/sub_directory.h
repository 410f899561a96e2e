// The chain of directories that a pointer tag owns.
#pragma once

#include <memory>

#include "ifd/ifd_id.h"

namespace veltrace::module {

class IFDSet;
class TagFile;

/// Owns a chain, or none. Copying copies the chain.
class SubDirectory {
public:
    SubDirectory() noexcept;
    SubDirectory(const SubDirectory& other);
    SubDirectory(SubDirectory&& other) noexcept;
    SubDirectory& operator=(SubDirectory other) noexcept;
    ~SubDirectory();

    /// Reads the chain that begins at the file's position. Exceptions of the chain pass through.
    /// Throws `StackExhausted` if too little stack is left.
    [[nodiscard]] static SubDirectory read(TagFile& file, IfdId ifdId);

    /// Null when there is no chain.
    [[nodiscard]] IFDSet* get() { return chain_.get(); }
    [[nodiscard]] const IFDSet* get() const { return chain_.get(); }

private:
    std::unique_ptr<IFDSet> chain_;  // IFDSet is complete only in sub_directory.cpp
};

}  // namespace veltrace::module
