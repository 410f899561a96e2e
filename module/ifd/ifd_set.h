// A chain of directories.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "zephra/qv.h"

#include "ifd/ifd.h"
#include "ifd/ifd_id.h"

namespace veltrace::module {

class TagFile;

/// The directories of one chain that have at least one field. Owns them; points at the reader,
/// which outlives it. Copies are deep.
class IFDSet {
public:
    /// An empty chain without a reader, for containers.
    IFDSet() = default;

    /// Reads the chain that begins at the reader's position; the position afterwards is
    /// unspecified. A broken link ends the chain with a host warning. Exceptions of a directory
    /// pass through, and the directories before it are lost.
    IFDSet(TagFile& reader, IfdId ifdId);

    /// Number of directories.
    [[nodiscard]] std::uint32_t getNumIfds() const {
        return static_cast<std::uint32_t>(directories_.size());
    }
    [[nodiscard]] const TagFile* reader() const { return reader_; }
    [[nodiscard]] IfdId ifdId() const { return ifdId_; }
    [[nodiscard]] const std::vector<IFD>& directories() const { return directories_; }
    /// One name for each tag id among the known tags of all directories.
    [[nodiscard]] const std::map<std::uint16_t, std::string>& fieldNames() const {
        return fieldNames_;
    }
    [[nodiscard]] bool hasUnknownTags() const { return hasUnknownTags_; }

    /// A new host value: an N x 1 structure array with one element for each directory, or an empty
    /// 0 x 0 double array when no directory has a field. Failures are raised as host errors.
    [[nodiscard]] qvArray* outputValue();

private:
    friend struct IfdSetPeer;  // tests check the members

    void readIfdChain();
    /// Seeks to the directory after the one at `position`; returns false at the end of the chain.
    [[nodiscard]] bool moveToNext(std::int64_t position, std::uint32_t tableSize) const;
    [[nodiscard]] std::uint64_t readNextIfdOffset() const;
    void addIfd(IFD ifd);

    [[nodiscard]] qvArray* createStructure() const;
    [[nodiscard]] std::vector<const char*> outputFieldNames() const;
    void setDefaultQvFields(qvArray* structure) const;

    TagFile* reader_ = nullptr;
    IfdId ifdId_ = IfdId::image;
    std::vector<IFD> directories_;
    std::map<std::uint16_t, std::string> fieldNames_;
    bool hasUnknownTags_ = false;
};

}  // namespace veltrace::module
