#include "names/listed_names.h"

#include <fcntl.h>
#include <gmock/gmock.h>

#include "descriptor.h"
#include "names/all_names.h"
#include "temporary_directory.h"

using namespace std::string_literals;

namespace veltrace::cli {
namespace {

using test::allNames;
using test::namesErrorOf;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;
using EndedBy = ListedNames::EndedBy;
using State = NameSource::State;

constexpr auto kNewline = EndedBy::newline;
constexpr auto kNul = EndedBy::nul;

std::vector<std::string> namesIn(const std::string& content, EndedBy endedBy) {
    const test::TemporaryDirectory directory;
    ListedNames names(directory.makeFile("list", content), endedBy);
    return allNames(names);
}

/// A pipe instead of standard input.
class PipedInput {
public:
    PipedInput() { dup2(pipe_.readEnd.get(), STDIN_FILENO); }
    PipedInput(const PipedInput&) = delete;
    PipedInput& operator=(const PipedInput&) = delete;
    ~PipedInput() { dup2(saved_.get(), STDIN_FILENO); }

    void feed(std::string_view bytes) const {
        EXPECT_EQ(write(pipe_.writeEnd.get(), bytes.data(), bytes.size()),
                  static_cast<ssize_t>(bytes.size()));
    }
    void end() { pipe_.writeEnd = Descriptor(); }
    [[nodiscard]] int flags() const { return fcntl(pipe_.readEnd.get(), F_GETFL); }

private:
    Descriptor saved_{dup(STDIN_FILENO)};
    Pipe pipe_ = makePipe();
};

TEST(ListedNames, EndAtTheirTerminator) {
    EXPECT_THAT(namesIn("a\nb c\n\td\n", kNewline), ElementsAre("a", "b c", "\td"));
    EXPECT_THAT(namesIn("a\0b\nc\0"s, kNul), ElementsAre("a", "b\nc"));
    // The last one needs no terminator.
    EXPECT_THAT(namesIn("a\nb", kNewline), ElementsAre("a", "b"));
    EXPECT_THAT(namesIn("a\0b"s, kNul), ElementsAre("a", "b"));
    // Empty ones are skipped.
    EXPECT_THAT(namesIn("\n\na\n\n\nb\n\n", kNewline), ElementsAre("a", "b"));
    EXPECT_THAT(namesIn("\0\0a\0"s, kNul), ElementsAre("a"));
    EXPECT_THAT(namesIn("", kNewline), IsEmpty());
    // A carriage return and a NUL belong to the name of a line.
    EXPECT_THAT(namesIn("a\r\nb\0c\n"s, kNewline), ElementsAre("a\r", "b\0c"s));
}

TEST(ListedNames, KeepEveryByte) {
    std::string list;
    for (const std::string& name : test::oddNames()) {
        list += name + '\0';
    }
    EXPECT_THAT(namesIn(list, kNul), ElementsAreArray(test::oddNames()));
}

TEST(ListedNames, AcrossManyBlocksStayComplete) {
    std::vector<std::string> expected;
    std::string list;
    for (int i = 0; i < 30000; ++i) {
        expected.push_back("name " + std::to_string(i));
        list += expected.back() + '\n';
    }
    EXPECT_EQ(namesIn(list, kNewline), expected);
}

TEST(ListedNames, HaveAtMostAMebibyteEvenWithoutAnEnd) {
    const std::string longest(std::size_t{1} << 20, 'n');
    EXPECT_THAT(namesIn(longest + "\nb", kNewline), ElementsAre(longest, "b"));
    EXPECT_THAT(namesIn("b\n" + longest, kNewline), ElementsAre("b", longest));

    const test::TemporaryDirectory directory;
    for (const std::string& content : {longest + "n\n", longest + "n", longest + longest}) {
        ListedNames names(directory.makeFile("li\nst", content), kNewline);
        EXPECT_EQ(namesErrorOf([&] { static_cast<void>(allNames(names)); }),
                  "cannot read names from " + directory.path() +
                      "/li\\nst: one has more than 1048576 bytes");
    }
    ListedNames names("/dev/zero", kNewline);
    EXPECT_EQ(namesErrorOf([&] { static_cast<void>(allNames(names)); }),
              "cannot read names from /dev/zero: one has more than 1048576 bytes");
}

TEST(ListedNames, WithoutAListAreAnErrorAtOnce) {
    const test::TemporaryDirectory directory;
    EXPECT_EQ(namesErrorOf([&] { ListedNames(directory.at("no\x1b"), kNul); }),
              "cannot read names from " + directory.path() + "/no\\x1b: No such file or directory");
    EXPECT_EQ(namesErrorOf([&] { ListedNames(directory.path(), kNul); }),
              "cannot read names from " + directory.path() + ": Is a directory");
}

TEST(ListedNames, OfStandardInputAreReturnedAsTheyAreWritten) {
    PipedInput input;
    ListedNames names("-", kNewline);
    std::string name;
    EXPECT_EQ(names.next(name), State::later);
    input.feed("fir");
    EXPECT_EQ(names.next(name), State::later);
    input.feed("st\nsecond\nthi");
    EXPECT_EQ(names.next(name), State::name);
    EXPECT_EQ(name, "first");
    EXPECT_EQ(names.next(name), State::name);
    EXPECT_EQ(name, "second");
    EXPECT_EQ(names.next(name), State::later);
    input.end();
    EXPECT_EQ(names.next(name), State::name);
    EXPECT_EQ(name, "thi");
    EXPECT_EQ(names.next(name), State::end);
    EXPECT_EQ(names.next(name), State::end);
}

TEST(ListedNames, LeaveStandardInputBlockingForOthers) {
    const PipedInput input;
    ListedNames names("-", kNewline);
    std::string name;
    EXPECT_EQ(names.next(name), State::later);
    EXPECT_EQ(input.flags() & O_NONBLOCK, 0);
}

TEST(ListedNames, AnEndlessListOfEmptyNamesReturnsToTheCaller) {
    ListedNames names("/dev/zero", kNul);
    std::string name;
    EXPECT_EQ(names.next(name), State::later);
    EXPECT_EQ(names.next(name), State::later);
}

TEST(ArgumentNames, AreReturnedInOrderIncludingEmptyOnes) {
    std::vector<std::string> expected{"b", "", "a", "b"};
    expected.insert(expected.end(), test::oddNames().begin(), test::oddNames().end());
    ArgumentNames names(expected);
    EXPECT_EQ(allNames(names), expected);
}

TEST(ArgumentNames, StayAtTheirEnd) {
    ArgumentNames names({});
    std::string name = "untouched";
    EXPECT_EQ(names.next(name), NameSource::State::end);
    EXPECT_EQ(names.next(name), NameSource::State::end);
    EXPECT_EQ(name, "untouched");
}

}  // namespace
}  // namespace veltrace::cli
