// Calls with wrong arguments and with names that do not open.
#include "support/file_test.h"
#include "support/unopenable_file.h"

namespace veltrace::test {

namespace {

using Arguments = std::vector<zephra::Argument>;

const zephra::Message kBadCount =
    message("ZEPHRA:veltrace:badInputArgumentCount", "VELTRACE requires exactly one input.\n");

TEST(Arguments, NoneIsOneTooFew) {
    const ModuleRun run(Arguments{});
    EXPECT_THAT(run.messages(), ElementsAre(kBadCount));
    EXPECT_FALSE(run.output());
}

TEST(Arguments, TwoAreRefusedBeforeTheirTypesAreLookedAt) {
    EXPECT_THAT(ModuleRun(Arguments{1.0, 2.0}).messages(), ElementsAre(kBadCount));
    EXPECT_THAT(ModuleRun(Arguments{"one.tif", "two.tif"}).messages(), ElementsAre(kBadCount));
}

struct ClassCase {
    zephra::Argument argument;
    const char* name;
};

class ArgumentClass : public testing::TestWithParam<ClassCase> {};

TEST_P(ArgumentClass, OtherThanCharIsNamedInTheMessage) {
    const ModuleRun run(Arguments{GetParam().argument});
    EXPECT_THAT(run.messages(),
                ElementsAre(message("ZEPHRA:veltrace:badImageFileArgument",
                                    std::string("The image file argument cannot "
                                                "have type ") +
                                        GetParam().name + ", it must be type char.\n")));
    EXPECT_EQ(run.leftovers(), zephra::Leftovers{});
}

INSTANTIATE_TEST_SUITE_P(EveryOtherClass, ArgumentClass,
                         testing::Values(ClassCase{1.5, "double"},
                                         ClassCase{zephra::EmptyArgument{qvClassDouble}, "double"},
                                         ClassCase{zephra::EmptyArgument{qvClassCell}, "cell"},
                                         ClassCase{zephra::EmptyArgument{qvClassStruct}, "struct"},
                                         ClassCase{zephra::EmptyArgument{qvClassLogical},
                                                   "logical"}));

class UnopenableName : public testing::TestWithParam<const char*> {};

TEST_P(UnopenableName, StandsInTheQuotesOfTheMessageAsItIs) {
    const ModuleRun run(Arguments{GetParam()});
    EXPECT_THAT(run.messages(), ElementsAre(unopenableFile(GetParam())));
    EXPECT_FALSE(run.output());
}

INSTANTIATE_TEST_SUITE_P(Names, UnopenableName,
                         testing::Values("", "/nonexistent/kiln.tif",
                                         "/nonexistent/100%d %s %% \"kiln\".tif"));

TEST(Arguments, FileThatExistsAndCannotBeOpenedIsRefusedBeforeItsReaderIsMade) {
    const UnopenableFile file;
    const ModuleRun run(Arguments{file.name()});
    EXPECT_THAT(run.messages(), ElementsAre(unopenableFile(file.name())));
    EXPECT_FALSE(run.output());
}

TEST(Arguments, EmptyCharArrayIsAnEmptyName) {
    const ModuleRun run(Arguments{zephra::EmptyArgument{qvClassChar}});
    EXPECT_THAT(run.messages(), ElementsAre(unopenableFile("")));
}

TEST(Arguments, ConvertedNameIsLeftBehindWhenTheFileCannotBeOpened) {
    const ModuleRun run(Arguments{"/nonexistent/kiln.tif"});
    EXPECT_EQ(run.leftovers().blocks, 1U);
    EXPECT_EQ(run.leftovers().arrays, 0U);
}

}  // namespace

}  // namespace veltrace::test
