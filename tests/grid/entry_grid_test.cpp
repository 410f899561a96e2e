// Entries of every tag, type and count, at every place, against an independent computation.
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iostream>
#include <set>
#include <span>

#include "grid/grid_file.h"
#include "grid/grid_values.h"
#include "grid/model.h"
#include "grid/words.h"
#include "support/dictionary_rows.h"
#include "support/memory_file.h"
#include "support/module_run.h"

namespace veltrace::test {

namespace {

/// The pointer tag that leads to the directory under test; 0 for the first directory.
using Place = std::uint16_t;

struct Setting {
    Container container;
    Order order;
    Place place;
};

std::vector<Setting> everySetting() {
    std::vector<Setting> all;
    for (const Container container : {Container::classic, Container::bigTiff, Container::jpeg}) {
        for (const Order order : {Order::little, Order::big}) {
            for (const Place place : std::vector<Place>{0, 330, 34665, 34853, 40965}) {
                all.push_back({container, order, place});
            }
        }
    }
    return all;
}

std::string nameOfSetting(const testing::TestParamInfo<Setting>& info) {
    const Setting& setting = info.param;
    const std::string container = setting.container == Container::classic   ? "Classic"
                                  : setting.container == Container::bigTiff ? "BigTiff"
                                                                            : "Jpeg";
    return container + (setting.order == Order::little ? "Little" : "Big") + "At" +
           std::to_string(setting.place);
}

constexpr std::uint16_t kTypes[] = {0, 1,  2,  3,  4,  5,  6,  7,  8,
                                    9, 10, 11, 12, 13, 14, 16, 18, 65535};

/// Tags with a treatment of their own, pointers, and some without either, known and unknown.
const std::vector<std::uint16_t> kChosenTags{
    0,     1,     2,     30,    31,    254,   256,   257,   258,   259,  262,  263,
    270,   271,   273,   274,   277,   280,   281,   282,   284,   290,  296,  317,
    320,   330,   332,   333,   339,   340,   512,   531,   700,   4096, 4097, 33434,
    34665, 34675, 34853, 37383, 37510, 40965, 50000, 50834, 50835, 65535};

/// All tags of all tables, and neighbours that are in none.
std::vector<std::uint16_t> everyTag() {
    std::set<std::uint16_t> tags(kChosenTags.begin(), kChosenTags.end());
    for (const auto rows : {std::span<const NameRow>(kMainRows), std::span<const NameRow>(kGpsRows),
                            std::span<const NameRow>(kInteroperabilityRows)}) {
        for (const NameRow& row : rows) {
            tags.insert(row.id);
        }
    }
    for (const std::uint16_t unknown :
         std::vector<std::uint16_t>{253, 260, 261, 276, 329, 331, 516, 4099, 34666, 40966}) {
        tags.insert(unknown);
    }
    return {tags.begin(), tags.end()};
}

void PrintTo(const Setting& setting, std::ostream* out) {
    *out << "place " << setting.place;
}

/// An entry of a type that does not exist fails whatever its count.
bool decidesNothing(std::uint16_t type, std::uint32_t count) {
    return elementSizeOf(type) == 0 && count > 1;
}

/// Into the directory that VELTRACE_GRID_FILES names, for other readings of the same files.
void keepFile(const Bytes& content, std::size_t number) {
    if (const char* const directory = std::getenv("VELTRACE_GRID_FILES")) {
        std::ofstream file(std::filesystem::path(directory) / std::to_string(number),
                           std::ios::binary);
        file.write(reinterpret_cast<const char*>(content.data()),
                   static_cast<std::streamsize>(content.size()));
        ASSERT_TRUE(file.flush()) << "cannot write to " << directory;
    }
}

class EntryGrid : public testing::TestWithParam<Setting> {
protected:
    static void TearDownTestSuite() {
        std::cout << "grid: " << entries << " entries in " << files << " files\n";
    }

    /// With a directory for pointers to lead to.
    struct File : GridFile {
        File() : GridFile(GetParam().container, GetParam().order) {
            innermost.entries.push_back(variedEntry(1, 4, 1, GetParam().order, 0));
            innermost.entries.push_back(variedEntry(271, 2, 6, GetParam().order, 0));
            innermost.entries.push_back(variedEntry(37383, 3, 3, GetParam().order, 0));
        }
    };

    [[nodiscard]] static GridDirectory& directoryUnderTest(GridFile& file) {
        return GetParam().place == 0 ? file.image : file.inner;
    }

    static bool isPointer(std::uint16_t tag) {
        return tag == 330 || tag == 34665 || tag == 34853 || tag == 40965;
    }

    /// Adds an entry; a pointer leads to the innermost directory, whatever its type and count.
    static void add(GridFile& file, GridEntry entry) {
        if (isPointer(entry.tag)) {
            entry.target = &file.innermost;
        }
        directoryUnderTest(file).entries.push_back(std::move(entry));
    }

    static void expectTheModel(GridFile& file) {
        if (GetParam().place != 0) {
            GridEntry pointer{.tag = GetParam().place, .type = 4, .count = 1};
            pointer.target = &file.inner;
            file.image.entries.push_back(pointer);
        }
        const Bytes content = file.bytes();
        const ModuleRun run(content);
        const Model model(file, {run.fileName(), content.size()});
        ASSERT_NO_FATAL_FAILURE(keepFile(content, files));
        ++files;
        entries += model.entries();
        ASSERT_EQ(run.error(), std::nullopt);
        ASSERT_EQ(run.warnings(), model.warnings());
        ASSERT_EQ(mismatchOf(run.output(), model.output()), "");
        ASSERT_EQ(run.leftovers().blocks, 0U);
        ASSERT_EQ(run.leftovers().arrays, model.homelessArrays());
    }

    static void expectTheModelForAll(const std::vector<std::uint16_t>& tags, std::uint16_t type,
                                     std::uint32_t count, bool losesValues) {
        if (decidesNothing(type, count)) {
            return;
        }
        File file;
        for (const std::uint16_t tag : tags) {
            GridEntry entry = variedEntry(tag, type, count, GetParam().order, count);
            entry.lostValue = losesValues && tag % 2 == 0;
            add(file, std::move(entry));
        }
        ASSERT_NO_FATAL_FAILURE(expectTheModel(file)) << "type " << type << ", count " << count;
    }

    static inline std::size_t files = 0;
    static inline std::size_t entries = 0;
};

INSTANTIATE_TEST_SUITE_P(Settings, EntryGrid, testing::ValuesIn(everySetting()), nameOfSetting);

TEST_P(EntryGrid, EveryTagHasItsValueInEveryType) {
    for (const std::uint16_t type : kTypes) {
        for (const std::uint32_t count : {1U, 9U}) {
            ASSERT_NO_FATAL_FAILURE(expectTheModelForAll(everyTag(), type, count, false));
        }
    }
}

TEST_P(EntryGrid, TreatedTagsHaveTheirValueInEveryCount) {
    for (const std::uint16_t type : kTypes) {
        for (const std::uint32_t count : {0U, 1U, 3U, 4U, 5U, 6U, 8U, 16U, 40U}) {
            ASSERT_NO_FATAL_FAILURE(expectTheModelForAll(kChosenTags, type, count, false));
        }
    }
}

TEST_P(EntryGrid, ValuesOutsideTheFileCostTheirEntriesAlone) {
    for (const std::uint16_t type : kTypes) {
        for (const std::uint32_t count : {2U, 4U, 9U}) {
            ASSERT_NO_FATAL_FAILURE(expectTheModelForAll(kChosenTags, type, count, true));
        }
    }
}

/// All codes of all tables with their neighbours, and numbers that are no codes.
std::set<double> everyCode() {
    std::set<double> codes;
    const auto addNear = [&codes](std::span<const WordRow> rows) {
        for (const WordRow& row : rows) {
            const auto code = static_cast<double>(row.code);
            codes.insert({code - 1, code, code + 0.9, code + 1});
        }
    };
    for (const WordTable& table : kWordTables) {
        addNear(table.rows);
    }
    addNear(kSampleFormatWords);
    addNear(kColorTypes);
    codes.insert({-2, -0.5, 0.5, 127, 128, 255, 256, 32767, 32768, 65535, 65536, 2147483647,
                  2147483647.5, 2147483648, 4294967295, -2147483648, -2147483649, 1e10, -1e300});
    return codes;
}

TEST_P(EntryGrid, EveryCodeHasItsWord) {
    if (GetParam().place == 330 || GetParam().place == 40965) {
        return;  // as in the first directory, and as in GPS directories
    }
    const std::vector<std::uint16_t> coded{256, 257, 258, 259, 262, 277, 281, 284,   290,  296,
                                           317, 332, 339, 512, 531, 700, 271, 37383, 50000};
    std::uint32_t count = 1;
    for (const double code : everyCode()) {
        for (const std::uint16_t type :
             std::vector<std::uint16_t>{1, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}) {
            if (type == 11 && std::abs(code) > 1e30) {
                continue;
            }
            File file;
            for (const std::uint16_t tag : coded) {
                if (auto entry = numberEntry(tag, type, count, GetParam().order, code)) {
                    add(file, std::move(*entry));
                }
            }
            count = 3 - count;
            if (!directoryUnderTest(file).entries.empty()) {
                ASSERT_NO_FATAL_FAILURE(expectTheModel(file))
                    << "type " << type << ", code " << code;
            }
        }
    }
}

}  // namespace

}  // namespace veltrace::test
