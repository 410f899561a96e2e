#include "ifd/ifd_set.h"

#include <utility>

#include "entry/host_messages.h"
#include "entry/message.h"
#include "tagfile/tag_file.h"

namespace veltrace::module {

IFDSet::IFDSet(TagFile& reader, IfdId ifdId) : reader_(&reader), ifdId_(ifdId) {
    readIfdChain();
}

// Kept: no limit on the number of directories and no search for loops. A chain that points back
// is read until memory runs out.
void IFDSet::readIfdChain() {
    for (;;) {
        const std::int64_t position = reader_->position();
        IFD ifd(*reader_, ifdId_);
        ifd.readIfd();
        const std::uint32_t tableSize = ifd.tableSize();
        if (ifd.getNumFields() != 0) {
            addIfd(std::move(ifd));
        }
        if (ifdId_ != IfdId::image || reader_->formatType() == FormatType::jpeg) {
            return;
        }
        if (!moveToNext(position, tableSize)) {
            return;
        }
    }
}

bool IFDSet::moveToNext(std::int64_t position, std::uint32_t tableSize) const {
    // Kept: the sum is narrowed to 32 bits, so past 2 GiB the seek fails or goes to the wrapped
    // position.
    const std::uint64_t link = static_cast<std::uint64_t>(static_cast<std::uint32_t>(position)) +
                               static_cast<std::uint64_t>(reader_->countSize()) + tableSize;
    if (!reader_->seek(static_cast<std::int32_t>(link))) {
        issueHostWarning("ZEPHRA:veltrace:IFDSet:badNextIfdPointer",
                         message("Could not seek to the next image file directory pointer, "
                                 "the image file ",
                                 inQuotes(reader_->fileName()), " is probably corrupt."));
        return false;
    }
    const std::uint64_t next = readNextIfdOffset();
    if (next == 0) {
        return false;
    }
    const std::int64_t target = reader_->absolutePosition(next);
    if (target > reader_->fileSize()) {
        issueHostWarning("ZEPHRA:veltrace:badNextIfdPointer",
                         message("The pointer to a secondary IFD exceeds the size of "
                                 "the image file ",
                                 inQuotes(reader_->fileName()),
                                 " and therefore cannot be valid.  Some "
                                 "metadata might not be returned. "));
        return false;
    }
    if (!reader_->seek(target)) {
        issueHostWarning("ZEPHRA:veltrace:badNextIfdPointer",
                         message("Could not seek to the next image file directory, some metadata "
                                 "in the image file ",
                                 inQuotes(reader_->fileName()), " might not have been retrieved."));
        return false;
    }
    return true;
}

std::uint64_t IFDSet::readNextIfdOffset() const {
    const std::int64_t position = reader_->position();
    std::uint64_t offset = 0;
    if (reader_->readOffset(&offset) == 0) {
        issueHostWarning("ZEPHRA:veltrace:TagFile:nextIfdOffsetReadError",
                         message("Unable to read the offset value at byte position ", position,
                                 " to a following image file directory, the metadata in ",
                                 inQuotes(reader_->fileName()), " may be corrupt."));
        return 0;
    }
    return offset;
}

void IFDSet::addIfd(IFD ifd) {
    for (const TiffTag& tag : ifd.knownTags()) {
        // At the end is where the next one belongs when tags ascend, as they should.
        fieldNames_.insert_or_assign(fieldNames_.end(), tag.tagId(), tag.name());
    }
    hasUnknownTags_ = hasUnknownTags_ || !ifd.unknownTags().empty();
    directories_.push_back(std::move(ifd));
}

}  // namespace veltrace::module
