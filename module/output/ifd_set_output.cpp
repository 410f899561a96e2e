// The structure array of a chain of directories.
#include <algorithm>
#include <array>
#include <cstring>
#include <ctime>
#include <iterator>
#include <string>
#include <vector>

#include "entry/host_messages.h"
#include "ifd/ifd_set.h"
#include "tag/host_values.h"
#include "tagfile/tag_file.h"

namespace veltrace::module {

namespace {

std::string localDate(std::time_t time) {
    // localtime reads TZ at each call; localtime_r need not.
    tzset();
    std::tm local{};
    std::array<char, 25> text{};
    if (localtime_r(&time, &local) == nullptr ||
        std::strftime(text.data(), text.size(), "%d-%b-%Y %H:%M:%S", &local) == 0) {
        raiseHostError("ZEPHRA:veltrace:IFDSet:strftimeFailure",
                       "Failed to create file modification time string.");
    }
    return text.data();
}

const char* formatWord(FormatType formatType) {
    switch (formatType) {
        case FormatType::jpeg:
            return "jpg";
        case FormatType::classicTiff:
        case FormatType::bigTiff:
            return "tif";
    }
    raiseFormattedHostError("ZEPHRA:veltrace:setDefaultQvFields:unknownFileFormat",
                            "File format type %d is unknown", static_cast<int>(formatType));
}

bool isTiff(const TagFile& reader) {
    return reader.formatType() == FormatType::classicTiff ||
           reader.formatType() == FormatType::bigTiff;
}

/// The byte-order mark as stored in the file, then the version in this computer's byte order.
qvArray* formatSignature(const TagFile& reader) {
    if (!isTiff(reader)) {
        return qvCreateNumericArray(0, nullptr, qvClassDouble, qvReal);
    }
    const std::uint16_t version = reader.version();
    std::array<unsigned char, sizeof version> versionBytes{};
    std::memcpy(versionBytes.data(), &version, sizeof version);
    const auto& mark = reader.byteOrderMark();
    const double bytes[] = {static_cast<double>(mark[0]), static_cast<double>(mark[1]),
                            static_cast<double>(versionBytes[0]),
                            static_cast<double>(versionBytes[1])};
    return doubleMatrix(1, std::size(bytes), bytes);
}

}  // namespace

qvArray* IFDSet::outputValue() {
    if (fieldNames_.empty() && !hasUnknownTags_) {
        return qvCreateNumericArray(0, nullptr, qvClassDouble, qvReal);
    }
    qvArray* structure = createStructure();
    if (ifdId_ == IfdId::image) {
        setDefaultQvFields(structure);
    }
    for (std::size_t i = 0; i < directories_.size(); ++i) {
        IFD& ifd = directories_[i];
        if (ifdId_ == IfdId::image) {
            storeField(structure, i, "Width", qvCreateDoubleScalar(ifd.width()));
            storeField(structure, i, "Height", qvCreateDoubleScalar(ifd.height()));
            ifd.outputColorType(structure, i);
            ifd.outputBitDepth(structure, i);
        }
        ifd.outputTags(structure, i);
    }
    return structure;
}

qvArray* IFDSet::createStructure() const {
    const std::vector<const char*> names = outputFieldNames();
    const std::size_t dimensions[] = {directories_.size(), 1};
    qvArray* structure = qvCreateStructArray(std::size(dimensions), dimensions,
                                             static_cast<int>(names.size()), names.data());
    if (structure == nullptr) {
        raiseHostError("ZEPHRA:veltrace:IFDSet:infoStructAllocationFailure",
                       "Could not allocate enough memory for the output structure.");
    }
    return structure;
}

std::vector<const char*> IFDSet::outputFieldNames() const {
    const std::vector<std::string>& defaults = reader_->defaultFieldNames();
    std::vector<const char*> names;
    names.reserve(defaults.size() + fieldNames_.size() + 1);
    if (ifdId_ == IfdId::image) {
        std::ranges::transform(defaults, std::back_inserter(names), &std::string::c_str);
    }
    for (const auto& [tagId, name] : fieldNames_) {
        // Kept: in a TIFF file the default names take precedence in every chain, even in those
        // that do not have them.
        if (!isTiff(*reader_) || std::ranges::find(defaults, name) == defaults.end()) {
            names.push_back(name.c_str());
        }
    }
    if (hasUnknownTags_) {
        names.push_back("UnknownTags");
    }
    return names;
}

void IFDSet::setDefaultQvFields(qvArray* structure) const {
    const std::string date = localDate(reader_->modificationTime());
    const char* format = formatWord(reader_->formatType());
    const std::string fileName = reader_->fileName();
    const char* byteOrder =
        reader_->headerByteOrder() == HeaderByteOrder::big ? "big-endian" : "little-endian";
    for (std::size_t i = 0; i < directories_.size(); ++i) {
        storeField(structure, i, "Filename", qvCreateString(fileName.c_str()));
        storeField(structure, i, "FileModDate", qvCreateString(date.c_str()));
        storeField(structure, i, "FileSize",
                   qvCreateDoubleScalar(static_cast<double>(reader_->fileSize())));
        storeField(structure, i, "Format", qvCreateString(format));
        storeField(structure, i, "FormatSignature", formatSignature(*reader_));
        if (isTiff(*reader_)) {
            storeField(structure, i, "ByteOrder", qvCreateString(byteOrder));
        }
    }
}

}  // namespace veltrace::module
