// Modules as shared libraries. The build defines the names of the files.
#include "zephra/host/module.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <optional>
#include <sys/stat.h>

#include "run.h"

namespace zephra {
namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::IsEmpty;
using testing::StartsWith;

CallResult callEcho(const std::vector<Argument>& arguments) {
    return Host(kStrict).call(Module::load(ECHO_MODULE).entryPoint(), arguments);
}

TEST(Module, FindsTheHostFunctionsInThisProgram) {
    const CallResult result = callEcho({std::string("hello")});
    EXPECT_EQ(result.output().text(), "hello");
    EXPECT_EQ(result.error(), std::nullopt);
    EXPECT_EQ(result.leftovers(), Leftovers{});
    EXPECT_THAT(result.misuses(), IsEmpty());
}

TEST(Module, HasItsLiteralFormatsInterpreted) {
    const CallResult result = callEcho({std::string("warn")});
    EXPECT_THAT(result.warnings(), ElementsAre(Message{"ZEPHRA:echo:warned", "a char is given"}));
}

TEST(Module, IsLeftByAnError) {
    EXPECT_EQ(callEcho({}).error(),
              (Message{"ZEPHRA:echo:argumentCount", "0 arguments are given"}));
    const CallResult failed = callEcho({std::string("fail")});
    EXPECT_EQ(failed.error(), (Message{"ZEPHRA:echo:failed", "fail"}));
    EXPECT_EQ(failed.leftovers(), (Leftovers{.blocks = 1, .blockBytes = 5}));
}

TEST(Module, StaysLoadedAsLongAsItsEntryPoint) {
    std::optional<Module> module = Module::load(ECHO_MODULE);
    const EntryPoint entryPoint = module->entryPoint();
    module.reset();
    const std::vector<Argument> arguments = {std::string("still here")};
    EXPECT_EQ(Host().call(entryPoint, arguments).output().text(), "still here");
}

TEST(Module, IsLoadedFromTheWorkingDirectoryByABareName) {
    const std::filesystem::path before = std::filesystem::current_path();
    const std::filesystem::path file(ECHO_MODULE);
    std::filesystem::current_path(file.parent_path());
    EXPECT_NO_THROW(static_cast<void>(Module::load(file.filename())));
    std::filesystem::current_path(before);
}

std::string loadError(const std::filesystem::path& path) {
    try {
        static_cast<void>(Module::load(path));
    } catch (const LoadError& error) {
        return error.what();
    }
    return "loaded";
}

TEST(LoadError, NamesAFileThatIsNoModule) {
    EXPECT_EQ(loadError("no/such/module.so"), "There is no module file 'no/such/module.so'.");
    // The loader would find this one in its search path.
    EXPECT_EQ(loadError("libc.so.6"), "There is no module file 'libc.so.6'.");
    const std::string name(5000, 'x');
    EXPECT_EQ(loadError(name),
              "The module file '" + name + "' cannot be reached: File name too long.");
    EXPECT_EQ(loadError("/"), "The module file '/' is a directory.");
    EXPECT_EQ(loadError(NO_ENTRY_POINT_MODULE),
              "The module file '" NO_ENTRY_POINT_MODULE "' has no entry point qvxFunction.");
}

TEST(LoadError, NamesAPipeWithoutOpeningIt) {
    const std::string name = testing::TempDir() + "host_tests_pipe";
    std::filesystem::remove(name);
    ASSERT_EQ(mkfifo(name.c_str(), 0600), 0);
    EXPECT_EQ(loadError(name), "The module file '" + name + "' is not a regular file.");
    std::filesystem::remove(name);
}

TEST(LoadError, NamesAFileThatIsNoLibrary) {
    const std::string sentence = loadError(TEXT_FILE);
    EXPECT_THAT(sentence,
                StartsWith("The module file '" TEXT_FILE "' is not a loadable library: "));
    EXPECT_THAT(sentence, EndsWith("invalid ELF header."));
}

}  // namespace
}  // namespace zephra
