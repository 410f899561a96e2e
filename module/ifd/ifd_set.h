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

/// The directories of one chain that hold at least one field. Owns them; points at the reader,
/// which outlives it. Copies are deep.
class IFDSet {
public:
    /// An empty chain of no reader, for containers.
    IFDSet() = default;

    /// Reads the chain that begins at the reader's position and leaves that position anywhere. A
    /// broken link ends the chain with a host warning. What a directory throws leaves the
    /// constructor, and the directories before it are lost.
    IFDSet(TagFile& reader, IfdId ifdId);

    /// The directories that were kept.
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
    /// 0 x 0 double array when no directory holds a field. Failures are raised as host errors.
    [[nodiscard]] qvArray* outputValue();

private:
    friend struct IfdSetPeer;  // tests look at the members

    void readIfdChain();
    /// Moves to the directory that follows one read at `position`; false at the end of the chain.
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
