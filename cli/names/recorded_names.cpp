#include "names/recorded_names.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <fcntl.h>
#include <optional>
#include <rapidjson/reader.h>
#include <system_error>

#include "base64.h"
#include "names/name_source.h"
#include "names/record_lines.h"
#include "render/escape.h"

namespace veltrace::cli {
namespace {

/// Finds the name among the members of a record and stops there.
class NameFinder : public rapidjson::BaseReaderHandler<rapidjson::UTF8<>, NameFinder> {
public:
    [[nodiscard]] const std::optional<std::string>& name() const { return name_; }

    // NOLINTBEGIN(readability-identifier-naming): RapidJSON's names
    bool StartObject() {
        ++depth_;
        return true;
    }
    bool EndObject(rapidjson::SizeType /*members*/) {
        --depth_;
        return true;
    }
    bool StartArray() {
        ++depth_;
        return depth_ > 1;  // a record is an object
    }
    bool EndArray(rapidjson::SizeType /*elements*/) {
        --depth_;
        return true;
    }
    bool Key(const char* text, rapidjson::SizeType size, bool /*isCopied*/) {
        if (depth_ == 1) {
            key_.assign(text, size);
        }
        return true;
    }
    bool String(const char* text, rapidjson::SizeType size, bool /*isCopied*/) {
        if (depth_ != 1 || (key_ != "path" && key_ != "path_b64")) {
            return true;
        }
        const std::string_view value(text, size);
        name_ = key_ == "path" ? std::string(value) : decodeBase64(value);
        return false;
    }
    // NOLINTEND(readability-identifier-naming)

private:
    std::size_t depth_ = 0;
    std::string key_;
    std::optional<std::string> name_;
};

std::optional<std::string> nameOf(RecordLines& lines) {
    NameFinder finder;
    rapidjson::Reader reader;
    // Iterative: a deeply nested line must not use up the stack.
    reader.Parse<rapidjson::kParseIterativeFlag | rapidjson::kParseStopWhenDoneFlag>(lines, finder);
    return finder.name();
}

[[noreturn]] void failToRead(const std::string& path, const std::string& reason) {
    throw NamesError("cannot read the records of " + visible(path) + ": " + reason);
}

std::vector<NameHash> hashesIn(RecordLines& lines, const std::string& path) {
    std::vector<NameHash> hashes;
    for (std::uint64_t line = 1; lines.hasLine(); ++line) {
        const auto name = nameOf(lines);
        if (!lines.skipLine()) {
            break;
        }
        if (!name) {
            failToRead(path, "line " + std::to_string(line) + " is not a record");
        }
        hashes.push_back(hashOf(*name));
    }
    return hashes;
}

}  // namespace

RecordedNames::RecordedNames(const std::string& path) {
    Descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY));
    if (!file.isOpen()) {
        failToRead(path, std::generic_category().message(errno));
    }
    RecordLines lines(std::move(file));
    try {
        hashes_ = hashesIn(lines, path);
    } catch (const std::system_error& error) {
        failToRead(path, error.code().message());
    }
    std::ranges::sort(hashes_);
    hashes_.shrink_to_fit();
}

bool RecordedNames::contains(std::string_view name) const {
    return std::ranges::binary_search(hashes_, hashOf(name));
}

}  // namespace veltrace::cli
