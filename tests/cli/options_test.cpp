#include "options.h"

#include <chrono>
#include <gmock/gmock.h>
#include <sstream>
#include <vector>

#include "temporary_directory.h"

namespace veltrace::cli {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

std::variant<Options, Reply> parse(const std::vector<const char*>& arguments) {
    std::vector<const char*> argv{"veltrace"};
    argv.insert(argv.end(), arguments.begin(), arguments.end());
    return parseOptions(static_cast<int>(argv.size()), argv.data());
}

Options optionsFrom(const std::vector<const char*>& arguments) {
    return std::get<Options>(parse(arguments));
}

Reply replyTo(const std::vector<const char*>& arguments) {
    return std::get<Reply>(parse(arguments));
}

TEST(Options, HaveDefaultsWithFilesAlone) {
    const Options options = optionsFrom({"a.tif", "b.tif"});
    EXPECT_THAT(options.files, ElementsAre("a.tif", "b.tif"));
    EXPECT_FALSE(options.isRecursive);
    EXPECT_THAT(options.lists, IsEmpty());
    EXPECT_THAT(options.nulLists, IsEmpty());
    EXPECT_FALSE(options.shard);
    EXPECT_EQ(options.resumeFrom, "");

    EXPECT_EQ(options.render.format, Format::text);
    EXPECT_THAT(options.render.fields, IsEmpty());
    EXPECT_EQ(options.render.maxValues, 12U);
    EXPECT_FALSE(options.render.omitLargerThan);
    EXPECT_EQ(options.render.maxOutput, 16777216U);
    EXPECT_EQ(options.output, "");
    EXPECT_EQ(options.ordered, When::automatic);
    EXPECT_EQ(options.colour, When::automatic);
    EXPECT_EQ(options.progress, When::automatic);
    EXPECT_EQ(options.summary, "");
    EXPECT_EQ(options.failOn, FailOn::error);

    EXPECT_TRUE(options.module.empty());
    EXPECT_GE(options.jobs, 1U);
    EXPECT_TRUE(options.isIsolated);
    EXPECT_TRUE(options.isSandboxed);
    EXPECT_EQ(options.timeLimit, 10s);
    EXPECT_EQ(options.memoryLimit, 1073741824U);
}

TEST(Options, MayFollowFiles) {
    const Options options = optionsFrom({"a.tif", "--json", "b.tif", "--module", "m.so", "c.tif"});
    EXPECT_THAT(options.files, ElementsAre("a.tif", "b.tif", "c.tif"));
    EXPECT_EQ(options.render.format, Format::json);
    EXPECT_EQ(options.module, "m.so");
}

TEST(Options, NameListsOfFiles) {
    const Options options =
        optionsFrom({"--files-from", "a", "--files0-from=b", "--files-from", "-"});
    EXPECT_THAT(options.lists, ElementsAre("a", "-"));
    EXPECT_THAT(options.nulLists, ElementsAre("b"));
    EXPECT_THAT(options.files, IsEmpty());
}

TEST(Options, SelectPartOfTheFiles) {
    const Options options = optionsFrom({"-r", "--shard", "2/3", "--resume-from", "out", "d"});
    EXPECT_TRUE(options.isRecursive);
    EXPECT_TRUE(optionsFrom({"--recursive", "d"}).isRecursive);
    ASSERT_TRUE(options.shard);
    EXPECT_EQ(options.shard->index, 2U);
    EXPECT_EQ(options.shard->count, 3U);
    EXPECT_EQ(options.resumeFrom, "out");
}

TEST(Options, TakeEachOfTheirWords) {
    EXPECT_EQ(optionsFrom({"--format", "text", "a"}).render.format, Format::text);
    EXPECT_EQ(optionsFrom({"--format", "json", "a"}).render.format, Format::json);
    EXPECT_EQ(optionsFrom({"--format=ndjson", "a"}).render.format, Format::ndjson);
    EXPECT_EQ(optionsFrom({"--format=csv", "a"}).render.format, Format::csv);
    EXPECT_EQ(optionsFrom({"--ndjson", "a"}).render.format, Format::ndjson);
    EXPECT_EQ(optionsFrom({"--ordered", "a"}).ordered, When::always);
    EXPECT_EQ(optionsFrom({"--no-ordered", "a"}).ordered, When::never);
    EXPECT_EQ(optionsFrom({"--progress", "a"}).progress, When::always);
    EXPECT_EQ(optionsFrom({"--no-progress", "a"}).progress, When::never);
    EXPECT_EQ(optionsFrom({"--color", "always", "a"}).colour, When::always);
    EXPECT_EQ(optionsFrom({"--color=never", "a"}).colour, When::never);
    EXPECT_EQ(optionsFrom({"--color=auto", "a"}).colour, When::automatic);
    EXPECT_FALSE(optionsFrom({"--isolation", "off", "a"}).isIsolated);
    EXPECT_TRUE(optionsFrom({"--isolation", "on", "a"}).isIsolated);
    EXPECT_FALSE(optionsFrom({"--sandbox", "off", "a"}).isSandboxed);
    EXPECT_TRUE(optionsFrom({"--sandbox", "auto", "a"}).isSandboxed);
    EXPECT_EQ(optionsFrom({"--fail-on", "error", "a"}).failOn, FailOn::error);
    EXPECT_EQ(optionsFrom({"--fail-on", "warning", "a"}).failOn, FailOn::warning);
    EXPECT_EQ(optionsFrom({"--fail-on", "never", "a"}).failOn, FailOn::never);
}

TEST(Options, SelectAndShortenValues) {
    const Options options = optionsFrom({"-f", "Make", "--field=A.B", "-fC", "--max-values", "3",
                                         "--omit-larger-than", "0", "--output-limit", "1K", "a"});
    EXPECT_THAT(options.render.fields, ElementsAre("Make", "A.B", "C"));
    EXPECT_EQ(options.render.maxValues, 3U);
    EXPECT_EQ(options.render.omitLargerThan, 0U);
    EXPECT_EQ(options.render.maxOutput, 1024U);
    EXPECT_THAT(options.files, ElementsAre("a"));
    // The name of a field is unchanged.
    EXPECT_THAT(optionsFrom({"-f", "[a,b]", "-f", "x=y", "a"}).render.fields,
                ElementsAre("[a,b]", "x=y"));
}

TEST(Options, SetTheOutput) {
    const Options options = optionsFrom({"-o", "out", "--summary", "sum", "a"});
    EXPECT_EQ(options.output, "out");
    EXPECT_EQ(options.summary, "sum");
    EXPECT_EQ(optionsFrom({"--output=out", "a"}).output, "out");
}

TEST(Options, LimitTheReading) {
    const Options options =
        optionsFrom({"-j", "3", "--time-limit", "0.25", "--memory-limit", "64M", "a"});
    EXPECT_EQ(options.jobs, 3U);
    EXPECT_EQ(options.timeLimit, 250ms);
    EXPECT_EQ(options.memoryLimit, 67108864U);
    EXPECT_EQ(optionsFrom({"--jobs=256", "--memory-limit=0", "a"}).memoryLimit, 0U);
    // A time is rounded up to milliseconds.
    EXPECT_EQ(optionsFrom({"--time-limit", "0.0011", "a"}).timeLimit, 2ms);
}

TEST(Options, AnArgumentWithAHyphenIsNotAFile) {
    for (const char* const argument : {"-4", "-r4", "-r4j2", "-0x", "-!x", "-r!x"}) {
        const Reply reply = replyTo({argument, "a.tif"});
        EXPECT_TRUE(reply.isError) << argument;
        EXPECT_THAT(reply.text, HasSubstr("unknown option")) << argument;
    }
    EXPECT_THAT(optionsFrom({"-f", "-4", "--", "-4", "-!x"}).files, ElementsAre("-4", "-!x"));
    EXPECT_TRUE(replyTo({"-r4", "--", "-4"}).isError);
    EXPECT_TRUE(replyTo({"a.tif", "-!x", "--", "a.tif"}).isError);
}

TEST(Options, KeepEveryByteOfFileNames) {
    EXPECT_THAT(
        optionsFrom({"[a,b]", "[]", "{}", "a,b", "%%", "++", "-", "", "\xff\n", "a=b"}).files,
        ElementsAre("[a,b]", "[]", "{}", "a,b", "%%", "++", "-", "", "\xff\n", "a=b"));
    EXPECT_THAT(optionsFrom({"[a]"}).files, ElementsAre("[a]"));
    EXPECT_THAT(optionsFrom({"{}"}).files, ElementsAre("{}"));
    EXPECT_THAT(optionsFrom({"--", "--json", "-x", "--"}).files, ElementsAre("--json", "-x", "--"));
}

TEST(Options, UnknownOnesAndNoFilesAreAnError) {
    for (const Reply& reply : {replyTo({}), replyTo({"--json"}), replyTo({"--"})}) {
        EXPECT_TRUE(reply.isError);
        EXPECT_EQ(reply.text,
                  "veltrace: FILE is required\nRun with --help for more information.\n");
    }
    const Reply reply = replyTo({"--fo\x1bo", "a.tif"});
    EXPECT_TRUE(reply.isError);
    EXPECT_THAT(reply.text, StartsWith("veltrace: "));
    EXPECT_THAT(reply.text, HasSubstr(R"(--fo\x1bo)"));
    EXPECT_TRUE(replyTo({"-q", "a.tif"}).isError);
}

struct Mistake {
    std::vector<const char*> arguments;
    const char* error;
};

TEST(Options, InvalidOnesAreAnErrorWithTheReason) {
    const std::vector<Mistake> mistakes{
        {{"--format", "xml", "a"}, R"(--format: "xml" is not one of text|json|ndjson|csv)"},
        {{"--format=", "a"}, "--format"},
        {{"--color", "red", "a"}, R"(--color: "red" is not one of auto|always|never)"},
        {{"--fail-on", "x", "a"}, R"(--fail-on: "x" is not one of error|warning|never)"},
        {{"--isolation", "auto", "a"}, R"(--isolation: "auto" is not one of on|off)"},
        {{"--sandbox", "on", "a"}, R"(--sandbox: "on" is not one of auto|off)"},
        {{"--shard", "0/4", "a"}, R"(--shard: "0/4" is not I/N with 1 <= I <= N)"},
        {{"--shard", "4", "a"}, R"(--shard: "4" is not I/N)"},
        {{"--max-values", "-1", "a"}, R"(--max-values: "-1" is not a whole number)"},
        {{"--max-values", "1.5", "a"}, R"(--max-values: "1.5" is not a whole number)"},
        {{"--omit-larger-than", "99999999999999999999", "a"}, "is not a whole number"},
        {{"-j", "0", "a"}, R"(--jobs: "0" is not a whole number from 1 to 256)"},
        {{"--jobs", "257", "a"}, "is not a whole number from 1 to 256"},
        {{"--time-limit", "0", "a"}, "--time-limit: the time is not from 0.001 to 1000000"},
        {{"--time-limit", "nan", "a"}, "--time-limit: the time is not from"},
        {{"--time-limit", "1e7", "a"}, "--time-limit: the time is not from"},
        {{"--time-limit", "soon", "a"}, "--time-limit"},
        {{"--memory-limit", "-5", "a"}, R"(--memory-limit: "-5" is not a size such as 64M)"},
        {{"--memory-limit", "5Q", "a"}, R"(--memory-limit: "5Q" is not a size such as 64M)"},
        {{"--output-limit", "1023", "a"}, R"(--output-limit: "1023" is not a size from 1K to 3G)"},
        {{"--output-limit", "4G", "a"}, "is not a size from 1K to 3G"},
        {{"--json", "--ndjson", "a"}, "--json excludes --ndjson"},
        {{"--json", "--format", "json", "a"}, "--format excludes --json"},
        {{"--ndjson", "--format", "csv", "a"}, "--format excludes --ndjson"},
        {{"--ordered", "--no-ordered", "a"}, "--ordered excludes --no-ordered"},
        {{"--progress", "--no-progress", "a"}, "--progress excludes --no-progress"},
        {{"--format", "csv", "--format", "csv", "a"}, "--format"},
        {{"a", "--module"}, "--module"},
        {{"a", "-o"}, "--output"},
        {{"a", "-o", ""}, "a name is required"},
        {{"a", "--summary", ""}, "a name is required"},
        {{"a", "--resume-from", ""}, "a name is required"},
        {{"a", "--module", ""}, "a name is required"},
        {{"a", "-f", ""}, "--field"},
    };
    for (const auto& [arguments, error] : mistakes) {
        const auto parsed = parse(arguments);
        const auto* const reply = std::get_if<Reply>(&parsed);
        ASSERT_NE(reply, nullptr) << error;
        EXPECT_TRUE(reply->isError) << error;
        EXPECT_THAT(reply->text, StartsWith("veltrace: "));
        EXPECT_THAT(reply->text, HasSubstr(error));
        EXPECT_THAT(reply->text, EndsWith("\nRun with --help for more information.\n"));
    }
}

TEST(Options, RejectAnOutputThatIsResumedFrom) {
    const test::TemporaryDirectory directory;
    const std::string records = directory.makeFile("out.ndjson", "");
    const std::string same = directory.path() + "/./out.ndjson";
    EXPECT_THAT(replyTo({"-o", same.c_str(), "--resume-from", records.c_str(), "a"}).text,
                StartsWith("veltrace: --output would replace the records"));
    const std::string other = directory.at("rest.ndjson");
    EXPECT_EQ(optionsFrom({"-o", other.c_str(), "--resume-from", records.c_str(), "a"}).output,
              other);
}

TEST(Options, RequestATextInsteadOfARun) {
    EXPECT_THAT(replyTo({"--version"}).text, StartsWith("veltrace "));
    EXPECT_THAT(replyTo({"--version"}).text, HasSubstr("\nsandbox: "));
    EXPECT_THAT(replyTo({"--schema"}).text, StartsWith("{"));
    EXPECT_THAT(replyTo({"-h"}).text, HasSubstr("Usage: veltrace"));
    for (const char* const option : {"--version", "--schema", "--help"}) {
        EXPECT_FALSE(replyTo({option}).isError);
    }
}

TEST(Options, HelpListsEveryOptionAndItsDefault) {
    const std::string help = replyTo({"--help"}).text;
    std::istringstream words(
        "Usage: veltrace [OPTIONS] [FILE...];-h,--help;--version;--schema;-r,--recursive;"
        "--files-from LIST;--files0-from LIST;--shard I/N;--resume-from OUT;"
        "--format text|json|ndjson|csv;--json ;--ndjson ;-f,--field NAME;--max-values N;(12);"
        "--omit-larger-than N;-o,--output OUT;--ordered ;--no-ordered ;"
        "--color auto|always|never;--progress ;--no-progress ;--summary OUT;"
        "--fail-on error|warning|never;-j,--jobs N;(one per core);--time-limit SECONDS;(10);"
        "--memory-limit SIZE;(1G);--output-limit SIZE;(16M);--isolation on|off;"
        "--sandbox auto|off;--module PATH;Exit status;Examples");
    for (std::string word; std::getline(words, word, ';');) {
        EXPECT_THAT(help, HasSubstr(word));
    }
}

}  // namespace
}  // namespace veltrace::cli
