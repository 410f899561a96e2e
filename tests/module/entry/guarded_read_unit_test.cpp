// How a guarded read reports what a reader throws.
#include <cstring>
#include <gmock/gmock.h>
#include <memory>
#include <new>
#include <stdexcept>

#include "entry/errors.h"
#include "entry/guarded_read.h"
#include "ifd/ifd_set.h"
#include "support/messages.h"
#include "support/module_run.h"
#include "support/tiff_builder.h"
#include "tagfile/classic_tiff_tag_file.h"

namespace veltrace::test {

using namespace module;

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Runs a script in `readAll` and records its own destruction.
class ScriptedReader : public ClassicTiffTagFile {
public:
    using Script = std::function<void(ScriptedReader&)>;

    ScriptedReader(const MemoryFile& file, Script script, bool* destroyed)
        : ClassicTiffTagFile(file.name().c_str()),
          script_(std::move(script)),
          destroyed_(destroyed) {}
    ScriptedReader(const ScriptedReader&) = delete;
    ScriptedReader& operator=(const ScriptedReader&) = delete;
    ~ScriptedReader() override { *destroyed_ = true; }

    void readAll() override { script_(*this); }
    void readChain() { ClassicTiffTagFile::readAll(); }
    void setEmptyChain() { setIfdSet(std::make_unique<IFDSet>()); }

private:
    Script script_;
    bool* destroyed_;
};

/// The result of one guarded read.
struct Outcome {
    std::vector<zephra::Message> warnings;
    std::optional<zephra::Message> error;
    bool returned = false;
    bool readerDestroyed = false;
    std::size_t directories = 0;
    std::size_t blocksLeft = 0;
};

/// Reads a file of one directory. The file name is the only host block that outlives the read.
Outcome guardedRead(const ScriptedReader::Script& script) {
    const MemoryFile memory(tiffOf(Dir().shorts(274, {6})));
    Outcome outcome;
    auto* const reader = new ScriptedReader(memory, script, &outcome.readerDestroyed);
    const auto result = inCall([&] {
        char* const fileName = static_cast<char*>(qvMalloc(memory.name().size() + 1));
        std::strcpy(fileName, memory.name().c_str());
        readAllGuarded(reader, fileName);
        outcome.returned = true;
        outcome.directories = reader->getNumIfds();
    });
    outcome.warnings = result.warnings();
    outcome.error = result.error();
    outcome.blocksLeft = result.leftovers().blocks;
    if (!outcome.readerDestroyed) {
        delete reader;
        outcome.readerDestroyed = false;
    }
    return outcome;
}

TEST(GuardedRead, KeepsReaderAndNameWhenEverythingWasRead) {
    const Outcome outcome = guardedRead([](ScriptedReader& reader) { reader.readChain(); });
    EXPECT_TRUE(outcome.returned);
    EXPECT_THAT(outcome.warnings, IsEmpty());
    EXPECT_EQ(outcome.directories, 1U);
    EXPECT_FALSE(outcome.readerDestroyed);
    EXPECT_EQ(outcome.blocksLeft, 1U);
}

TEST(GuardedRead, RecoverableErrorAfterADirectoryIsAWarning) {
    const Outcome outcome = guardedRead([](ScriptedReader& reader) {
        reader.readChain();
        throw VeltraceRecoverableError{"ZEPHRA:veltrace:kiln", "The rest is ash.\n"};
    });
    EXPECT_THAT(outcome.warnings,
                ElementsAre(message("ZEPHRA:veltrace:kiln", "The rest is ash.\n")));
    EXPECT_FALSE(outcome.error);
    EXPECT_TRUE(outcome.returned);
    EXPECT_EQ(outcome.directories, 1U);
    EXPECT_FALSE(outcome.readerDestroyed);
    EXPECT_EQ(outcome.blocksLeft, 1U);
}

TEST(GuardedRead, RecoverableErrorAfterADirectoryKeepsItForTheOutput) {
    const MemoryFile memory(tiffOf(Dir().shorts(274, {6})));
    bool destroyed = false;
    ScriptedReader reader(
        memory,
        [](ScriptedReader& self) {
            self.readChain();
            throw VeltraceRecoverableError{"ZEPHRA:veltrace:kiln", "The rest is ash.\n"};
        },
        &destroyed);
    const auto call = [&reader](int, qvArray* outputs[], int, const qvArray*[]) {
        readAllGuarded(&reader, nullptr);
        outputs[0] = reader.outputValue();
    };
    const auto result = zephra::Host(strictHost()).call(call, {});
    EXPECT_THAT(result.warnings(),
                ElementsAre(message("ZEPHRA:veltrace:kiln", "The rest is ash.\n")));
    EXPECT_FALSE(result.error());
    ASSERT_EQ(result.output().size(), 1U);
    EXPECT_EQ(result.output().field(0, "Orientation").numbers().front(), 6);
}

struct FailureCase {
    const char* name;
    ScriptedReader::Script script;
    zephra::Message error;
};

class OwnError : public testing::TestWithParam<FailureCase> {};

TEST_P(OwnError, IsAHostErrorAfterReaderAndNameAreFreed) {
    const Outcome outcome = guardedRead(GetParam().script);
    EXPECT_THAT(outcome.warnings, IsEmpty());
    EXPECT_EQ(outcome.error, GetParam().error);
    EXPECT_FALSE(outcome.returned);
    EXPECT_TRUE(outcome.readerDestroyed);
    EXPECT_EQ(outcome.blocksLeft, 0U);
}

const zephra::Message kCracked = message("ZEPHRA:veltrace:kiln:cracked", "The kiln is cracked.");

template <class Error>
void throwCracked() {
    throw Error{"ZEPHRA:veltrace:kiln:cracked", "The kiln is cracked."};
}

INSTANTIATE_TEST_SUITE_P(
    Errors, OwnError,
    testing::Values(FailureCase{"FatalBeforeAnyDirectory",
                                [](ScriptedReader&) { throwCracked<VeltraceFatalError>(); },
                                kCracked},
                    FailureCase{"FatalAfterADirectory",
                                [](ScriptedReader& reader) {
                                    reader.readChain();
                                    throwCracked<VeltraceFatalError>();
                                },
                                kCracked},
                    FailureCase{"RecoverableWithoutAChain",
                                [](ScriptedReader&) { throwCracked<VeltraceRecoverableError>(); },
                                kCracked},
                    FailureCase{"RecoverableWithAnEmptyChain",
                                [](ScriptedReader& reader) {
                                    reader.setEmptyChain();
                                    throwCracked<VeltraceRecoverableError>();
                                },
                                kCracked}),
    [](const auto& test) { return test.param.name; });

class OtherException : public testing::TestWithParam<FailureCase> {};

TEST_P(OtherException, IsUnknownAndLeavesReaderAndNameBehind) {
    const Outcome outcome = guardedRead(GetParam().script);
    EXPECT_THAT(outcome.warnings, IsEmpty());
    EXPECT_EQ(outcome.error, GetParam().error);
    EXPECT_FALSE(outcome.returned);
    EXPECT_FALSE(outcome.readerDestroyed);
    EXPECT_EQ(outcome.blocksLeft, 1U);
}

const zephra::Message kUnknown = unknownException();

INSTANTIATE_TEST_SUITE_P(
    Exceptions, OtherException,
    testing::Values(FailureCase{"ExhaustedMemory", [](ScriptedReader&) { throw std::bad_alloc(); },
                                kUnknown},
                    FailureCase{"TooLongForAContainer",
                                [](ScriptedReader&) { throw std::length_error("kiln"); }, kUnknown},
                    FailureCase{"NoClassAtAll", [](ScriptedReader&) { throw 42; }, kUnknown},
                    FailureCase{"AfterADirectory",
                                [](ScriptedReader& reader) {
                                    reader.readChain();
                                    throw std::bad_alloc();
                                },
                                kUnknown}),
    [](const auto& test) { return test.param.name; });

// The text of an error is the format of the host's message, which has no arguments.
TEST(GuardedRead, PercentSignsInATextReachTheHostUnchanged) {
    const zephra::Message glazed = message("ZEPHRA:veltrace:kiln", "Glazed to 100% %s%n.\n");
    const Outcome fatal = guardedRead([&](ScriptedReader&) {
        throw VeltraceFatalError{glazed.identifier, glazed.text};
    });
    EXPECT_EQ(fatal.error, glazed);
    const Outcome recoverable = guardedRead([&](ScriptedReader& reader) {
        reader.readChain();
        throw VeltraceRecoverableError{glazed.identifier, glazed.text};
    });
    EXPECT_THAT(recoverable.warnings, ElementsAre(glazed));
}

}  // namespace

}  // namespace veltrace::test
