// The two error classes.
#include <exception>
#include <gtest/gtest.h>
#include <string>
#include <type_traits>

#include "entry/errors.h"

namespace veltrace::test {

using namespace module;

namespace {

template <class Error>
class ErrorClass : public testing::Test {};
using ErrorClasses = testing::Types<VeltraceFatalError, VeltraceRecoverableError>;
TYPED_TEST_SUITE(ErrorClass, ErrorClasses);

TYPED_TEST(ErrorClass, ContainsOnlyItsIdentifierAndItsMessage) {
    const TypeParam error{"ZEPHRA:veltrace:kiln", "The kiln is cracked."};
    EXPECT_EQ(error.identifier, "ZEPHRA:veltrace:kiln");
    EXPECT_EQ(error.message, "The kiln is cracked.");
    EXPECT_EQ(sizeof error, 2 * sizeof(std::string));
}

TYPED_TEST(ErrorClass, HasNoBaseAndNoVirtualOperations) {
    EXPECT_FALSE(std::is_polymorphic_v<TypeParam>);
    EXPECT_FALSE((std::is_base_of_v<std::exception, TypeParam>));
    EXPECT_FALSE((std::is_base_of_v<VeltraceFatalError, VeltraceRecoverableError>));
    EXPECT_FALSE((std::is_base_of_v<VeltraceRecoverableError, VeltraceFatalError>));
}

TYPED_TEST(ErrorClass, AllowsOnlyCopyAndDestruction) {
    EXPECT_TRUE(std::is_copy_constructible_v<TypeParam>);
    EXPECT_FALSE(std::is_copy_assignable_v<TypeParam>);
    EXPECT_FALSE(std::is_move_assignable_v<TypeParam>);
    EXPECT_FALSE(std::is_default_constructible_v<TypeParam>);
}

}  // namespace

}  // namespace veltrace::test
