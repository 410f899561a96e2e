// One directory entry of any content between two sound ones, in every kind of directory.
#include <algorithm>
#include <optional>
#include <span>
#include <string>

#include "finding.h"
#include "fuzz_target.h"
#include "image_check.h"
#include "parameters.h"
#include "support/tiff_builder.h"

namespace veltrace::fuzz {

namespace {

using test::Flavour;
using test::Order;
using test::TiffBuilder;
using test::TiffDirectory;

/// A kind of directory: the tag that points to it (0 for the main chain) and the field it becomes,
/// and two tags that it may have, of which none is a default field.
struct Kind {
    std::uint16_t pointer;
    const char* field;
    std::uint16_t before;
    const char* beforeName;
    std::uint16_t after;
    const char* afterName;
};

constexpr Kind kKinds[] = {
    {0, "", 297, "PageNumber", 33434, "ExposureTime"},
    {330, "SubIFDs", 297, "PageNumber", 33434, "ExposureTime"},
    {34665, "DigitalCamera", 297, "PageNumber", 33434, "ExposureTime"},
    {34853, "GPSInfo", 0, "GPSVersionID", 2, "GPSLatitude"},
    {40965, "InteroperabilityIFD", 1, "InteroperabilityIndex", 4097, "RelatedImageWidth"},
};

constexpr std::uint16_t kTags[] = {0,   1,   2,   254, 256, 257, 258,   259,   262,   270,   274,
                                   277, 281, 282, 284, 290, 296, 317,   320,   330,   332,   339,
                                   512, 531, 700, 297, 274, 271, 33434, 34665, 34675, 34853, 40965};

/// Where an offset leads.
enum class Place { given, here, image, sound, end };

struct EntryCase {
    Order order;
    bool isJpeg;
    Flavour flavour;
    Kind kind;
    std::uint16_t tag;
    std::uint16_t type;
    std::optional<Place> place;  ///< none: the value follows
    std::uint32_t offset;
    std::uint32_t count;
    Bytes value;
};

std::uint32_t naturalCount(std::uint16_t type, std::size_t bytes) {
    constexpr std::size_t kSizes[] = {1, 1, 1, 2, 4, 8, 1, 1, 2, 4, 8, 4, 8, 4};
    return static_cast<std::uint32_t>(bytes / (type < std::size(kSizes) ? kSizes[type] : 1));
}

EntryCase caseOf(Parameters parameters) {
    const auto flags = parameters.value<std::uint8_t>();
    EntryCase result{};
    result.order = (flags & 1) != 0 ? Order::big : Order::little;
    result.isJpeg = (flags & 6) == 6;
    result.flavour = (flags & 6) == 2 ? Flavour::big : Flavour::classic;
    result.kind = parameters.oneOf(kKinds);
    const auto tag = parameters.value<std::uint16_t>();
    result.tag = (flags & 8) != 0 ? kTags[tag % std::size(kTags)] : tag;
    const auto type = parameters.value<std::uint16_t>();
    result.type = (flags & 16) != 0 ? static_cast<std::uint16_t>(type % 15) : type;
    const auto place = parameters.upTo(7);
    if (place <= static_cast<std::size_t>(Place::end)) {
        result.place = Place{static_cast<int>(place)};
    }
    result.offset = parameters.value<std::uint32_t>();
    const auto count = parameters.value<std::uint32_t>();
    const std::string_view value = parameters.bytes(2048);
    result.value.assign(value.begin(), value.end());
    result.count = (flags & 32) != 0 ? naturalCount(result.type, result.value.size()) : count;
    return result;
}

struct EntryFile {
    Bytes bytes;
    std::uint32_t here = 0;
    std::uint32_t image = 0;
    std::uint32_t sound = 0;
};

/// The file with this offset in the entry, if it has one.
EntryFile built(const EntryCase& entryCase, std::uint32_t offset) {
    TiffBuilder file(entryCase.order, entryCase.flavour);
    const Kind& kind = entryCase.kind;
    TiffDirectory& image = file.image();
    TiffDirectory& sound = file.child().shorts(37383, {5});
    TiffDirectory& directory = kind.pointer == 0 ? image : file.child();
    TiffDirectory& parent = kind.pointer == 40965 ? file.child() : image;
    directory.shorts(kind.before, {1, 2});
    if (entryCase.place) {
        directory.entryAt(entryCase.tag, entryCase.type, entryCase.count, offset);
    } else {
        directory.entry(entryCase.tag, entryCase.type, entryCase.count, entryCase.value);
    }
    directory.rationals(kind.after, {{1, 4}});
    if (kind.pointer != 0) {
        parent.sub(kind.pointer, directory);
    }
    if (&parent != &image) {
        image.sub(34665, parent);
    }
    const auto positionOf = [&file](const TiffDirectory& of) {
        return static_cast<std::uint32_t>(file.positionOf(of));
    };
    return {entryCase.isJpeg ? test::jpegWithExif(file.bytes()) : file.bytes(),
            positionOf(directory), positionOf(image), positionOf(sound)};
}

Bytes fileOf(const EntryCase& entryCase) {
    EntryFile file = built(entryCase, entryCase.offset);
    switch (entryCase.place.value_or(Place::given)) {
        case Place::given:
            return file.bytes;
        case Place::here:
            return built(entryCase, file.here).bytes;
        case Place::image:
            return built(entryCase, file.image).bytes;
        case Place::sound:
            return built(entryCase, file.sound).bytes;
        case Place::end:
            return built(entryCase, static_cast<std::uint32_t>(file.bytes.size())).bytes;
    }
    return file.bytes;
}

zephra::Value directoryOf(zephra::Value output, const Kind& kind) {
    if (kind.pointer == 0) {
        return output;
    }
    if (kind.pointer == 40965) {
        output = output.field(0, "DigitalCamera");
    }
    return output.field(0, kind.field);
}

void checkNeighbour(zephra::Value directory, const char* name, std::span<const double> expected) {
    const zephra::Value value = directory.field(0, name);
    if (!value || !std::ranges::equal(value.numbers(), expected)) {
        reportFinding(std::string("a sound entry beside the damaged one is lost: ") + name);
    }
}

/// A SubIFDs directory whose count cannot be read may end the whole read; endless nesting uses up
/// what the host grants.
void checkNeighbours(const EntryCase& entryCase, const test::BoundedRead& read) {
    if (read.wasCutShort() || (read.result().error() && entryCase.tag == 330)) {
        return;
    }
    if (read.result().error()) {
        reportFinding("an entry ended the whole read: " + read.result().error()->text);
    }
    constexpr double kBefore[] = {1, 2};
    constexpr double kAfter[] = {0.25};
    const zephra::Value directory = directoryOf(read.result().output(), entryCase.kind);
    if (entryCase.tag != entryCase.kind.before) {
        checkNeighbour(directory, entryCase.kind.beforeName, kBefore);
    }
    if (entryCase.tag != entryCase.kind.after) {
        checkNeighbour(directory, entryCase.kind.afterName, kAfter);
    }
}

}  // namespace

}  // namespace veltrace::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace veltrace::fuzz;
    const EntryCase entryCase = caseOf(Parameters(data, size));
    const Bytes content = fileOf(entryCase);
    const veltrace::test::BoundedRead read = readImage(content);
    checkStated(read);
    checkNeighbours(entryCase, read);
    return 0;
}
