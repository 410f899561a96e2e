// Each limit, set in a child process.
#include "worker/limits.h"

#include <csignal>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <malloc.h>
#include <memory>
#include <new>
#include <string>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "worker/in_child.h"
#include "worker/resource_watch.h"

namespace veltrace::cli {
namespace {

using test::inChild;
using test::outcomeOf;

constexpr std::size_t kMiB = std::size_t{1} << 20;

std::string limits(decltype(RLIMIT_AS) resource) {
    rlimit limit{};
    getrlimit(resource, &limit);
    return std::to_string(limit.rlim_cur) + " " + std::to_string(limit.rlim_max);
}

std::string allocate(std::size_t bytes) {
    try {
        ::operator delete(::operator new(bytes));
        return "ok";
    } catch (const std::bad_alloc&) {
        return "bad_alloc";
    }
}

TEST(Limits, AllocationsFailBeyondTheMemoryLimitOnly) {
    if (kHasAddressSanitizer) {
        GTEST_SKIP() << "AddressSanitizer reserves terabytes of address space";
    }
    EXPECT_EQ(inChild([] {
                  malloc_trim(0);  // memory freed by earlier tests could be reused
                  const bool isSet = limitResources({.memoryBytes = 64 * kMiB});
                  return std::to_string(static_cast<int>(isSet)) + " " + allocate(54 * kMiB) + " " +
                         allocate(65 * kMiB);
              }),
              "1 ok bad_alloc");
    // Memory mapped before does not count.
    EXPECT_EQ(inChild([] {
                  malloc_trim(0);
                  const auto before = std::make_unique<std::byte[]>(100 * kMiB);
                  limitResources({.memoryBytes = 64 * kMiB});
                  return allocate(54 * kMiB) + " " + allocate(65 * kMiB);
              }),
              "ok bad_alloc");
}

TEST(Limits, AMemoryLimitMayHaveAnySizeOrNone) {
    EXPECT_EQ(inChild([] {
                  limitResources({.memoryBytes = ~std::uint64_t{0}});
                  return allocate(100 * kMiB);
              }),
              "ok");
    EXPECT_EQ(inChild([] {
                  const std::string before = limits(RLIMIT_AS);
                  const bool isSet = limitResources({.memoryBytes = 0});
                  return !isSet && limits(RLIMIT_AS) == before ? "as before" : limits(RLIMIT_AS);
              }),
              "as before");
    EXPECT_EQ(inChild([] { return limitResources({}) ? "set" : "not set"; }),
              kHasAddressSanitizer ? "not set" : "set");
}

TEST(Limits, ALowerExistingLimitStays) {
    EXPECT_EQ(inChild([] {
                  // The caller of the tests may have left descriptors open.
                  const auto open = static_cast<rlim_t>(lowestFreeDescriptor());
                  const rlimit few{open + 2, open + 4};
                  setrlimit(RLIMIT_NOFILE, &few);
                  limitResources({.memoryBytes = 0});
                  rlimit left{};
                  getrlimit(RLIMIT_NOFILE, &left);
                  return std::to_string(left.rlim_cur - open) + ' ' +
                         std::to_string(left.rlim_max - open);
              }),
              "4 4");
}

TEST(Limits, CoreDumpsAreOff) {
    EXPECT_EQ(inChild([] {
                  limitResources({});
                  return limits(RLIMIT_CORE);
              }),
              "0 0");
}

TEST(Limits, WritesToRegularFilesFailWithoutASignal) {
    EXPECT_EQ(inChild([] {
                  const int file = open("/tmp", O_TMPFILE | O_WRONLY, 0600);
                  const std::string before = outcomeOf(write(file, "a", 1));
                  limitResources({});
                  return before + " " + outcomeOf(write(file, "b", 1));
              }),
              "ok EFBIG");
}

TEST(Limits, AFewMoreDescriptorsCanBeOpened) {
    EXPECT_EQ(inChild([] {
                  limitResources({});
                  int opened = 0;
                  while (opened < 100 && dup(STDIN_FILENO) >= 0) {
                      ++opened;
                  }
                  const std::string last = outcomeOf(dup(STDIN_FILENO));
                  return opened >= 8 && opened <= 16 ? last : std::to_string(opened);
              }),
              "EMFILE");
}

TEST(Limits, NewPrivilegesAndDumpsAreOff) {
    EXPECT_EQ(inChild([] {
                  const bool isSet = forbidNewPrivileges();
                  return std::to_string(static_cast<int>(isSet)) + " " +
                         std::to_string(prctl(PR_GET_NO_NEW_PRIVS, 0, 0, 0, 0)) + " " +
                         std::to_string(prctl(PR_GET_DUMPABLE));
              }),
              "1 1 0");
}

TEST(Limits, AProcessRunsOnlyAsLongAsItsParent) {
    EXPECT_EQ(inChild([] {
                  limitResources({.parent = getpid()});  // not the parent of this process
                  return "lives";
              }),
              "signal 9");
    EXPECT_EQ(inChild([] {
                  prctl(PR_SET_CHILD_SUBREAPER, 1);  // adopts orphans
                  const pid_t parent = fork();
                  if (parent == 0) {
                      const pid_t self = getpid();
                      if (fork() == 0) {
                          limitResources({.parent = self});
                          kill(self, SIGKILL);
                          pause();
                      }
                      pause();
                  }
                  int status = 0;
                  waitpid(parent, nullptr, 0);
                  const pid_t orphan = wait(&status);
                  return orphan > 0 && WIFSIGNALED(status) ? std::to_string(WTERMSIG(status)) : "";
              }),
              "9");
    EXPECT_EQ(inChild([] {
                  limitResources({.parent = getppid()});
                  return "lives";
              }),
              "lives");
}

TEST(Descriptors, TheLowestFreeOneIsFoundAndStaysFree) {
    const int lowest = lowestFreeDescriptor();
    EXPECT_EQ(lowestFreeDescriptor(), lowest);
    const int next = dup(STDIN_FILENO);
    EXPECT_EQ(next, lowest);
    EXPECT_GT(lowestFreeDescriptor(), lowest);
    close(next);
}

}  // namespace
}  // namespace veltrace::cli
