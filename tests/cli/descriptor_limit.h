// Few descriptors for this process.
#pragma once

#include <gtest/gtest.h>
#include <sys/resource.h>

namespace veltrace::cli::test {

/// While one lives, the process may have descriptors below `limit` only.
class DescriptorLimit {
public:
    explicit DescriptorLimit(rlim_t limit) {
        EXPECT_EQ(getrlimit(RLIMIT_NOFILE, &saved_), 0);
        set({limit, saved_.rlim_max});
    }
    DescriptorLimit(const DescriptorLimit&) = delete;
    DescriptorLimit& operator=(const DescriptorLimit&) = delete;
    ~DescriptorLimit() { set(saved_); }

private:
    static void set(const rlimit& limit) { EXPECT_EQ(setrlimit(RLIMIT_NOFILE, &limit), 0); }
    rlimit saved_{};
};

}  // namespace veltrace::cli::test
