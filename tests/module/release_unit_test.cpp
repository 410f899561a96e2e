// The text that names the host release.
#include <gtest/gtest.h>
#include <string>

#include "entry/host_release.h"

namespace veltrace::test {

using namespace module;

namespace {

TEST(HostRelease, NamesTheHost) {
    const std::string release = hostRelease();
    EXPECT_EQ(release.rfind("ZEPHRA", 0), 0U) << release;
}

}  // namespace

}  // namespace veltrace::test
