#include "names/argument_names.h"

#include <gmock/gmock.h>

#include "names/all_names.h"

namespace veltrace::cli {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;

TEST(ArgumentNames, ComeInOrderTheEmptyOneToo) {
    ArgumentNames names({"b", "", "a", "b"});
    EXPECT_THAT(test::allNames(names), ElementsAre("b", "", "a", "b"));
}

TEST(ArgumentNames, KeepEveryByte) {
    ArgumentNames names(test::oddNames());
    EXPECT_THAT(test::allNames(names), ElementsAreArray(test::oddNames()));
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
