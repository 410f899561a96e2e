// What the module makes of a grid file, computed in plain steps and independently of the module.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "zephra/host/call_result.h"

#include "grid/expected.h"
#include "grid/grid_file.h"

namespace veltrace::test {

/// Which table of names a directory has.
enum class DirectoryKind { image, gps, interoperability, exif };

/// What is known of a file before it is read.
struct FileFacts {
    std::string name;
    std::size_t size;
};

class Model {
public:
    /// `file` must have been written by `GridFile::bytes`, and outlive the model.
    Model(const GridFile& file, FileFacts facts);

    [[nodiscard]] const Expected& output() const { return output_; }
    /// In order.
    [[nodiscard]] const std::vector<zephra::Message>& warnings() const { return warnings_; }
    /// Arrays that find no place in the output: of tags with the name of a default field, in
    /// directories of a TIFF file that have no default fields.
    [[nodiscard]] std::size_t homelessArrays() const { return homelessArrays_; }
    [[nodiscard]] std::size_t entries() const { return entries_; }

private:
    struct Directory;

    /// What an entry was decoded to.
    struct Tag {
        std::uint16_t id = 0;
        std::string name;  // empty: unknown
        std::vector<double> numbers;
        std::string text;
        std::string word;  // shown instead of both
        double offset = 0;
        std::vector<Directory> chain;  // of a pointer tag: none or one
        bool isPointer = false;
    };

    struct Directory {
        DirectoryKind kind = DirectoryKind::image;
        std::vector<Tag> tags;  // in order of entries; fallback values last
        double width = 0;
        double height = 0;
        std::int64_t photometric = -1;
        bool hasColormap = false;
        std::vector<double> bitsPerSample;
        std::size_t samples = 1;
    };

    void warn(const std::string& identifier, const std::string& text);
    [[nodiscard]] bool isTiff() const { return file_.container() != Container::jpeg; }

    [[nodiscard]] std::vector<Directory> read(const GridDirectory& directory, DirectoryKind kind);
    [[nodiscard]] std::optional<Tag> decode(const GridEntry& entry, DirectoryKind kind);
    [[nodiscard]] bool decodePointer(Tag& tag, const GridEntry& entry, DirectoryKind kind);
    [[nodiscard]] bool decodeValue(Tag& tag, const GridEntry& entry);
    void divide(Tag& tag, const GridEntry& entry);
    static void note(Directory& directory, const Tag& tag);
    static void addFallbackValues(Directory& directory);

    [[nodiscard]] Expected outputOf(const std::vector<Directory>& chain, DirectoryKind kind);
    [[nodiscard]] std::vector<std::string> fieldsOf(const Directory& directory) const;
    void fillGeneralFields(Expected& structure, const Directory& directory) const;
    [[nodiscard]] Expected valueOf(const Tag& tag);
    [[nodiscard]] Expected unknownTagsOf(const Directory& directory);

    const GridFile& file_;
    FileFacts facts_;
    std::vector<zephra::Message> warnings_;
    Expected output_;
    std::size_t homelessArrays_ = 0;
    std::size_t entries_ = 0;
};

}  // namespace veltrace::test
