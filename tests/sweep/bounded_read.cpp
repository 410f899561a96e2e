#include "sweep/bounded_read.h"

#include <algorithm>
#include <ctime>
#include <gtest/gtest.h>
#include <iterator>

#include "support/module_run.h"
#include "sweep/stated_messages.h"
#include "sweep/well_formed.h"

namespace veltrace::test {

namespace {

constexpr std::size_t kBlocks = 512;
constexpr std::size_t kLargestBlock = std::size_t{1} << 20;
constexpr std::time_t kModified = 1'000'000'000;

zephra::Settings boundedHost() {
    zephra::Settings settings = strictHost();
    settings.largestBlock = kLargestBlock;
    settings.blockBudget = kBlocks;
    return settings;
}

bool isJpeg(const Bytes& content) {
    return content.size() >= 2 && content[0] == 0xFF && content[1] == 0xD8;
}

/// Whether an entry may point to an Exif directory (tag 34665), in either byte order.
bool mayHaveExif(const Bytes& content) {
    constexpr std::uint8_t kBig[] = {0x87, 0x69};
    constexpr std::uint8_t kLittle[] = {0x69, 0x87};
    const auto has = [&content](const auto& tag) {
        return std::search(content.begin(), content.end(), std::begin(tag), std::end(tag)) !=
               content.end();
    };
    return has(kBig) || has(kLittle);
}

/// A memory file that is as old as all others.
class AgedFile : public MemoryFile {
public:
    explicit AgedFile(const Bytes& content) : MemoryFile(content) {
        setModificationTime(kModified);
    }
};

std::string shown(const zephra::Message& message) {
    return message.identifier + ": " + testing::PrintToString(message.text);
}

}  // namespace

BoundedRead::BoundedRead(const Bytes& content)
    : BoundedRead(AgedFile(content), content, boundedHost()) {}

BoundedRead::BoundedRead(const MemoryFile& file, const Bytes& content,
                         const zephra::Settings& settings)
    : settings_(settings),
      fileName_(file.name()),
      defaultFields_(isJpeg(content) ? 10 : 34),
      mayLeaveArrays_(!isJpeg(content) && mayHaveExif(content)),
      result_(call()) {}

zephra::CallResult BoundedRead::call() const {
    const zephra::Argument name{fileName_};
    return zephra::Host(settings_).call(moduleUnderTest(), {&name, 1});
}

bool BoundedRead::wasCutShort() const {
    return result_.requests().blocks > settings_.blockBudget;
}

bool BoundedRead::leftNothingUnstated() const {
    const zephra::Leftovers& left = result_.leftovers();
    zephra::Leftovers stated;
    if (result_.error() && result_.error()->identifier == "ZEPHRA:veltrace:unhandledFileFormat") {
        stated = {.blocks = 1, .blockBytes = fileName_.size() + 1, .arrays = 0};
    }
    if (mayLeaveArrays_) {
        stated.arrays = left.arrays;
    }
    return left == stated;
}

std::string BoundedRead::flawOfValue() const {
    if (result_.error()) {
        return result_.output() ? "an error and a value" : "";
    }
    return flawOf(result_.output(), defaultFields_);
}

std::string BoundedRead::unstated() const {
    for (const zephra::Message& warning : result_.warnings()) {
        if (!isStated(warning, Channel::warning)) {
            return "warning " + shown(warning);
        }
    }
    if (result_.error() && !isStated(*result_.error(), Channel::error)) {
        return "error " + shown(*result_.error());
    }
    if (!result_.misuses().empty()) {
        return "misuse of the host: " + result_.misuses().front();
    }
    if (!leftNothingUnstated()) {
        return "left behind: " + std::to_string(result_.leftovers().blocks) + " blocks, " +
               std::to_string(result_.leftovers().arrays) + " arrays";
    }
    return flawOfValue();
}

std::string hexadecimal(const Bytes& content) {
    constexpr const char* kDigits = "0123456789ABCDEF";
    std::string text;
    for (const std::uint8_t byte : content) {
        text += kDigits[byte / 16];
        text += kDigits[byte % 16];
    }
    return text;
}

}  // namespace veltrace::test
