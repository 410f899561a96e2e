#include "twin_plan.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace veltrace::fuzz {

namespace {

using test::Flavour;
using test::Order;
using test::TiffBuilder;
using test::TiffDirectory;

constexpr std::uint16_t kPointerTags[] = {330, 34665, 34853, 40965};
constexpr std::uint16_t kTags[] = {
    0,   1,   2,   254,  256,  257,   258,   259,   262,   263,   266,   270,   271,   274,
    277, 280, 281, 282,  284,  290,   296,   297,   317,   318,   320,   332,   338,   339,
    512, 531, 700, 4096, 4097, 33432, 33434, 34675, 36864, 37383, 37510, 50000, 50001, 65535};

/// Types of one width, and types that no value has, which are refused whatever the width.
struct Element {
    std::size_t size;
    std::size_t width;
    std::uint16_t types[8];
};

constexpr Element kElements[] = {
    {1, 1, {1, 2, 6, 7, 2, 7, 0, 14}},       {2, 2, {3, 8, 3, 8, 3, 3, 16, 0x300}},
    {4, 4, {4, 9, 11, 13, 4, 9, 0, 0xFFFF}}, {8, 4, {5, 10, 5, 10, 5, 10, 14, 0x500}},
    {8, 8, {12, 12, 12, 12, 12, 12, 0, 18}},
};

// Of so many no value is in a file: the read fails or the host refuses.
constexpr std::uint32_t kHugeCounts[] = {0x10000,    0x1FFFFFFF, 0x20000000, 0x40000000,
                                         0x7FFFFFFF, 0x80000000, 0xFFFFFFFF};
constexpr std::uint64_t kEntryCounts[] = {0, 0x7FFF, 0x8000, 0xFFFF, 0x7FFFFFFF, 0x80000000};
constexpr std::uint64_t kOutside[] = {0x100000,   0x7FFFFFFF,         0x80000000,
                                      0xFFFFFFFF, 0x7FFFFFFFFFFFFFFF, 0xFFFFFFFFFFFFFFFF};
constexpr std::uint64_t kNumbers[] = {0, 1, 2, 0x7F, 0x80, 0xFF, 0x8000, 0xFFFF, 0x80000000};

std::size_t inlineSize(Flavour flavour) {
    return flavour == Flavour::big ? 8 : 4;
}

TwinPlace place(Parameters& parameters) {
    const auto choice = parameters.value<std::uint8_t>();
    return {choice % 4 != 0, choice / 4U, kOutside[choice / 4U % std::size(kOutside)]};
}

TwinEntry pointer(Parameters& parameters) {
    TwinEntry entry{};
    entry.tag = parameters.oneOf(kPointerTags);
    const auto choice = parameters.value<std::uint8_t>();
    // No value is read, so any type and count will do.
    entry.type = choice % 4 != 0 ? 4 : static_cast<std::uint16_t>(choice / 4 % 16);
    entry.count = choice % 8 != 0 ? 1 : kHugeCounts[choice / 8 % std::size(kHugeCounts)];
    entry.offset = place(parameters);
    return entry;
}

void readNumbers(Parameters& parameters, TwinEntry& entry, std::size_t perElement) {
    constexpr std::size_t kMostElements = 12;
    const std::size_t elements = parameters.upTo(kMostElements);
    const bool areExtremes = parameters.flag();
    for (std::size_t i = 0; i < elements * perElement; ++i) {
        entry.numbers.push_back(areExtremes ? parameters.oneOf(kNumbers)
                                            : parameters.value<std::uint64_t>());
    }
    entry.count = static_cast<std::uint32_t>(elements);
}

/// Fewer elements than there are, as long as the value stays where it is; none; or far too many.
void damageCount(Parameters& parameters, TwinEntry& entry, std::size_t size, Flavour flavour) {
    const std::size_t whole = size * entry.count;
    const bool isInside = whole <= inlineSize(flavour);
    switch (parameters.upTo(7)) {
        case 0:
            entry.count = parameters.oneOf(kHugeCounts);
            if (isInside) {
                // What stands inside would be taken for the offset of so many.
                entry.offset = TwinPlace{false, 0, parameters.oneOf(kOutside)};
            }
            break;
        case 1:
            entry.count = 0;
            break;
        case 2:
            if (entry.count > 0 && (isInside || whole - size > inlineSize(flavour))) {
                --entry.count;
            }
            break;
        case 3:
            if (!isInside) {
                entry.offset = TwinPlace{false, 0, parameters.oneOf(kOutside)};
            }
            break;
        default:
            break;
    }
}

bool isPointer(std::uint16_t tag) {
    return std::ranges::find(kPointerTags, tag) != std::end(kPointerTags);
}

TwinEntry value(Parameters& parameters, Flavour flavour) {
    TwinEntry entry{};
    entry.tag =
        parameters.upTo(7) != 0 ? parameters.oneOf(kTags) : parameters.value<std::uint16_t>();
    if (isPointer(entry.tag)) {
        return pointer(parameters);  // what a value states would be taken for an offset
    }
    const Element& element = kElements[parameters.upTo(std::size(kElements) - 1)];
    entry.type = parameters.oneOf(element.types);
    entry.width = element.width;
    readNumbers(parameters, entry, element.size / element.width);
    damageCount(parameters, entry, element.size, flavour);
    return entry;
}

TwinDirectory directory(Parameters& parameters, Flavour flavour) {
    TwinDirectory result;
    const std::size_t entries = parameters.upTo(7);
    for (std::size_t i = 0; i < entries; ++i) {
        result.entries.push_back(parameters.upTo(3) == 0 ? pointer(parameters)
                                                         : value(parameters, flavour));
    }
    const std::size_t damage = parameters.upTo(15);
    if (damage == 1) {
        result.statedCount = parameters.oneOf(kEntryCounts);
    } else if (damage <= 3 && damage != 0) {
        result.next = place(parameters);
    }
    return result;
}

/// One writing of a plan. Offsets of directories are known only once the file is laid out, and
/// take the same room whatever they state, so every file is written twice.
class Writing {
public:
    Writing(const TwinPlan& plan, Order order, std::vector<std::uint64_t> positions)
        : plan_(plan), order_(order), positions_(std::move(positions)), file_(order, plan.flavour) {
        for (const TwinDirectory& image : plan.images) {
            add(image, file_.addImage());
        }
        for (const TwinDirectory& child : plan.children) {
            add(child, file_.child());
        }
        if (plan.first) {
            file_.firstOffset(offsetOf(*plan.first));
        }
    }

    [[nodiscard]] std::vector<std::uint64_t> positions() const {
        std::vector<std::uint64_t> all;
        for (const TiffDirectory* written : written_) {
            all.push_back(file_.positionOf(*written));
        }
        return all;
    }

    [[nodiscard]] Bytes bytes() const {
        return plan_.isJpeg ? test::jpegWithExif(file_.bytes()) : file_.bytes();
    }

private:
    [[nodiscard]] std::uint64_t offsetOf(const TwinPlace& place) const {
        if (!place.isDirectory) {
            return place.outside;
        }
        return positions_.empty() ? 0 : positions_[place.directory % positions_.size()];
    }

    void add(const TwinDirectory& plan, TiffDirectory& directory) {
        for (const TwinEntry& entry : plan.entries) {
            if (entry.offset) {
                const std::uint64_t offset = offsetOf(*entry.offset);
                directory.entryAt(entry.tag, entry.type, entry.count,
                                  static_cast<std::uint32_t>(offset));
            } else {
                directory.entry(entry.tag, entry.type, entry.count, valueOf(entry));
            }
        }
        if (plan.statedCount) {
            directory.statedCount(*plan.statedCount);
        }
        if (plan.next) {
            directory.next(offsetOf(*plan.next));
        }
        written_.push_back(&directory);
    }

    [[nodiscard]] Bytes valueOf(const TwinEntry& entry) const {
        Bytes bytes;
        for (const std::uint64_t number : entry.numbers) {
            switch (entry.width) {
                case 1:
                    bytes.push_back(static_cast<std::uint8_t>(number));
                    break;
                case 2:
                    test::append(bytes, order_, static_cast<std::uint16_t>(number));
                    break;
                case 4:
                    test::append(bytes, order_, static_cast<std::uint32_t>(number));
                    break;
                default:
                    test::append(bytes, order_, number);
            }
        }
        return bytes;
    }

    const TwinPlan& plan_;
    Order order_;
    std::vector<std::uint64_t> positions_;
    TiffBuilder file_;
    std::vector<const TiffDirectory*> written_;
};

}  // namespace

TwinPlan twinPlanOf(Parameters parameters) {
    TwinPlan plan{};
    const std::size_t format = parameters.upTo(3);
    plan.flavour = format == 1 ? Flavour::big : Flavour::classic;
    plan.isJpeg = format == 2;
    const std::size_t images = 1 + parameters.upTo(2);
    const std::size_t children = parameters.upTo(3);
    if (parameters.upTo(15) == 1) {
        plan.first = place(parameters);
    }
    for (std::size_t i = 0; i < images; ++i) {
        plan.images.push_back(directory(parameters, plan.flavour));
    }
    for (std::size_t i = 0; i < children; ++i) {
        plan.children.push_back(directory(parameters, plan.flavour));
    }
    return plan;
}

Twins twinsOf(const TwinPlan& plan) {
    const std::vector<std::uint64_t> positions = Writing(plan, Order::little, {}).positions();
    return {Writing(plan, Order::little, positions).bytes(),
            Writing(plan, Order::big, positions).bytes()};
}

}  // namespace veltrace::fuzz
