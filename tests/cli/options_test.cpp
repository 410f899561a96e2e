#include "options.h"

#include <gmock/gmock.h>
#include <initializer_list>

namespace veltrace::cli {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

std::variant<Options, Reply> parse(std::initializer_list<const char*> arguments) {
    std::vector<const char*> argv{"veltrace"};
    argv.insert(argv.end(), arguments);
    return parseOptions(static_cast<int>(argv.size()), argv.data());
}

Options optionsFrom(std::initializer_list<const char*> arguments) {
    return std::get<Options>(parse(arguments));
}

Reply replyTo(std::initializer_list<const char*> arguments) {
    return std::get<Reply>(parse(arguments));
}

TEST(Options, FilesAloneAskForTextFromTheDefaultModule) {
    const Options options = optionsFrom({"a.tif", "b.tif"});
    EXPECT_THAT(options.files, ElementsAre("a.tif", "b.tif"));
    EXPECT_EQ(options.render.format, Format::text);
    EXPECT_TRUE(options.module.empty());
}

TEST(Options, MayStandAmongTheFiles) {
    const Options options = optionsFrom({"a.tif", "--json", "b.tif", "--module", "m.so"});
    EXPECT_THAT(options.files, ElementsAre("a.tif", "b.tif"));
    EXPECT_EQ(options.render.format, Format::json);
    EXPECT_EQ(options.module, "m.so");
}

TEST(Options, ADoubleDashEndsThem) {
    EXPECT_THAT(optionsFrom({"--", "--json", "-x", "--"}).files, ElementsAre("--json", "-x", "--"));
}

TEST(Options, FileNamesAreTakenByteByByte) {
    EXPECT_THAT(
        optionsFrom({"[a,b]", "[]", "{}", "a,b", "%%", "++", "-", "", "\xff\n", "a=b"}).files,
        ElementsAre("[a,b]", "[]", "{}", "a,b", "%%", "++", "-", "", "\xff\n", "a=b"));
}

TEST(Options, ASingleBracketedNameStaysAName) {
    EXPECT_THAT(optionsFrom({"[a]"}).files, ElementsAre("[a]"));
    EXPECT_THAT(optionsFrom({"{}"}).files, ElementsAre("{}"));
}

TEST(Options, WithoutFilesAreAnError) {
    for (const Reply& reply : {replyTo({}), replyTo({"--json"}), replyTo({"--"})}) {
        EXPECT_TRUE(reply.isError);
        EXPECT_EQ(reply.text,
                  "veltrace: FILE is required\nRun with --help for more information.\n");
    }
}

TEST(Options, UnknownOnesAreAnErrorThatNamesThemVisibly) {
    const Reply reply = replyTo({"--fo\x1bo", "a.tif"});
    EXPECT_TRUE(reply.isError);
    EXPECT_THAT(reply.text, StartsWith("veltrace: "));
    EXPECT_THAT(reply.text, HasSubstr(R"(--fo\x1bo)"));
    EXPECT_TRUE(replyTo({"-q", "a.tif"}).isError);
}

TEST(Options, AModuleWithoutPathIsAnError) {
    EXPECT_TRUE(replyTo({"a.tif", "--module"}).isError);
}

TEST(Options, HelpNamesEveryOption) {
    const Reply reply = replyTo({"--help"});
    EXPECT_FALSE(reply.isError);
    for (const char* const word :
         {"Usage: veltrace", "FILE...", "--json", "--module PATH", "--version", "exit status"}) {
        EXPECT_THAT(reply.text, HasSubstr(word));
    }
}

}  // namespace
}  // namespace veltrace::cli
