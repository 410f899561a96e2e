// What Landlock and seccomp refuse, each alone, in a child process.
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <dirent.h>
#include <fcntl.h>
#include <functional>
#include <gtest/gtest.h>
#include <pthread.h>
#include <string>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/ptrace.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include "temporary_directory.h"
#include "worker/in_child.h"
#include "worker/limits.h"
#include "worker/resource_watch.h"
#include "worker/sandbox.h"

namespace veltrace::cli {
namespace {

using veltrace::test::inChild;
using veltrace::test::outcomeOf;

constexpr const char* kUnsupported = "the kernel refuses";

/// The result of an action under Landlock.
std::string withLandlock(const std::function<std::string()>& action) {
    return inChild([&] {
        forbidNewPrivileges();
        return restrictFiles() > 0 ? action() : kUnsupported;
    });
}

/// The result of an action under seccomp.
std::string withSeccomp(const std::function<std::string()>& action) {
    return inChild([&] {
        forbidNewPrivileges();
        return restrictSystemCalls() ? action() : kUnsupported;
    });
}

/// A file with the byte "x" in its own directory; skipped without `isSupported`.
class RefusalsTest : public testing::Test {
protected:
    explicit RefusalsTest(bool isSupported) : isSupported_(isSupported) {}
    void SetUp() override {
        if (!isSupported_) {
            GTEST_SKIP() << kUnsupported;
        }
    }

    const test::TemporaryDirectory directory_;
    const std::string file_ = directory_.makeFile("file", "x");

private:
    bool isSupported_;
};

std::string supported() {
    return "supported";
}

class Landlock : public RefusalsTest {
protected:
    Landlock() : RefusalsTest(withLandlock(supported) == supported()) {}
};

class SystemCalls : public RefusalsTest {
protected:
    SystemCalls() : RefusalsTest(withSeccomp(supported) == supported()) {}
};

TEST_F(Landlock, FilesAndDirectoriesCanBeRead) {
    EXPECT_EQ(withLandlock([this] { return test::contentOf(file_); }), "x");
    EXPECT_EQ(
        withLandlock([this] { return opendir(directory_.path().c_str()) ? "ok" : "refused"; }),
        "ok");
}

TEST_F(Landlock, NothingIsWrittenCreatedOrRemoved) {
    EXPECT_EQ(withLandlock([this] { return outcomeOf(open(file_.c_str(), O_WRONLY)); }), "EACCES");
    EXPECT_EQ(withLandlock([this] { return outcomeOf(open(file_.c_str(), O_RDWR)); }), "EACCES");
    EXPECT_EQ(withLandlock([this] { return outcomeOf(creat((file_ + "2").c_str(), 0600)); }),
              "EACCES");
    EXPECT_EQ(withLandlock([this] { return outcomeOf(mkdir((file_ + "2").c_str(), 0700)); }),
              "EACCES");
    EXPECT_EQ(withLandlock([this] { return outcomeOf(unlink(file_.c_str())); }), "EACCES");
    EXPECT_EQ(test::contentOf(file_), "x");
}

TEST_F(Landlock, NoProgramIsExecuted) {
    EXPECT_EQ(withLandlock([] { return outcomeOf(execl("/bin/true", "true", nullptr)); }),
              "EACCES");
}

TEST_F(Landlock, AFileCannotBeTruncatedIfTheKernelSupportsThat) {
    const std::string outcome = inChild([this]() -> std::string {
        forbidNewPrivileges();
        return restrictFiles() >= 3 ? outcomeOf(truncate(file_.c_str(), 0)) : kUnsupported;
    });
    if (outcome == kUnsupported) {
        GTEST_SKIP() << kUnsupported;
    }
    EXPECT_EQ(outcome, "EACCES");
    EXPECT_EQ(test::contentOf(file_), "x");
}

TEST_F(Landlock, AnOpenDescriptorCanStillBeWritten) {
    EXPECT_EQ(inChild([this] {
                  const int file = open(file_.c_str(), O_WRONLY);
                  forbidNewPrivileges();
                  restrictFiles();
                  return outcomeOf(write(file, "x", 1));
              }),
              "ok");
}

TEST_F(SystemCalls, FilesCanBeRead) {
    EXPECT_EQ(withSeccomp([this] { return test::contentOf(file_); }), "x");
    EXPECT_EQ(withSeccomp([this] {
                  struct stat status {};
                  const std::string outcome = outcomeOf(stat(file_.c_str(), &status));
                  return outcome + " " + std::to_string(status.st_size);
              }),
              "ok 1");
}

TEST_F(SystemCalls, NoFileIsOpenedForWriting) {
    for (const int flags : {O_WRONLY, O_RDWR, O_WRONLY | O_APPEND, O_RDONLY | O_TRUNC,
                            O_RDONLY | O_CREAT, O_WRONLY | O_CREAT | O_TRUNC, O_ACCMODE}) {
        EXPECT_EQ(
            withSeccomp([this, flags] { return outcomeOf(open(file_.c_str(), flags, 0600)); }),
            "EPERM")
            << flags;
    }
    EXPECT_EQ(withSeccomp([this] {
                  return outcomeOf(open(directory_.path().c_str(), O_TMPFILE | O_RDWR, 0600));
              }),
              "EPERM");
    EXPECT_EQ(test::contentOf(file_), "x");
}

TEST_F(SystemCalls, NothingIsCreatedChangedOrRemoved) {
    EXPECT_EQ(withSeccomp([this] { return outcomeOf(mkdir((file_ + "2").c_str(), 0700)); }),
              "EPERM");
    EXPECT_EQ(withSeccomp([this] { return outcomeOf(truncate(file_.c_str(), 0)); }), "EPERM");
    EXPECT_EQ(withSeccomp([this] { return outcomeOf(chmod(file_.c_str(), 0777)); }), "EPERM");
    EXPECT_EQ(withSeccomp([this] { return outcomeOf(unlink(file_.c_str())); }), "EPERM");
    EXPECT_EQ(test::contentOf(file_), "x");
}

TEST_F(SystemCalls, NoProgramProcessOrThreadIsStartedOrReached) {
    EXPECT_EQ(withSeccomp([] { return outcomeOf(execl("/bin/true", "true", nullptr)); }), "EPERM");
    EXPECT_EQ(withSeccomp([] { return outcomeOf(fork()); }), "EPERM");
    EXPECT_EQ(withSeccomp([] {
                  pthread_t thread{};
                  const int error = pthread_create(
                      &thread, nullptr, [](void*) -> void* { return nullptr; }, nullptr);
                  return std::to_string(error);
              }),
              std::to_string(EPERM));
    const pid_t other = getpid();
    EXPECT_EQ(withSeccomp([other] { return outcomeOf(kill(other, 0)); }), "EPERM");
    EXPECT_EQ(withSeccomp([other] { return outcomeOf(tgkill(other, other, 0)); }), "EPERM");
    EXPECT_EQ(withSeccomp([other] { return outcomeOf(ptrace(PTRACE_ATTACH, other, 0, 0)); }),
              "EPERM");
}

TEST_F(SystemCalls, NoSocketIsOpened) {
    for (const int family : {AF_UNIX, AF_INET, AF_INET6, AF_NETLINK}) {
        EXPECT_EQ(withSeccomp([family] { return outcomeOf(socket(family, SOCK_DGRAM, 0)); }),
                  "EPERM")
            << family;
    }
}

TEST_F(SystemCalls, NoMemoryIsExecutable) {
    EXPECT_EQ(withSeccomp([] {
                  void* const memory = mmap(nullptr, 4096, PROT_READ | PROT_EXEC,
                                            MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
                  return outcomeOf(memory == MAP_FAILED ? -1 : 0);
              }),
              "EPERM");
    EXPECT_EQ(withSeccomp([] {
                  void* const memory = mmap(nullptr, 4096, PROT_READ | PROT_WRITE,
                                            MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
                  return outcomeOf(memory == MAP_FAILED ? -1 : 0) + " " +
                         outcomeOf(mprotect(memory, 4096, PROT_READ)) + " " +
                         outcomeOf(mprotect(memory, 4096, PROT_READ | PROT_EXEC));
              }),
              "ok ok EPERM");
}

TEST_F(SystemCalls, LimitsCanBeReadButNotSet) {
    EXPECT_EQ(withSeccomp([] {
                  rlimit limit{};
                  return outcomeOf(getrlimit(RLIMIT_STACK, &limit)) + " " +
                         outcomeOf(setrlimit(RLIMIT_STACK, &limit));
              }),
              "ok EPERM");
    EXPECT_EQ(withSeccomp([] { return outcomeOf(prctl(PR_SET_DUMPABLE, 1)); }), "EPERM");
}

TEST_F(SystemCalls, TheStackOfTheThreadIsFound) {
    EXPECT_EQ(withSeccomp([] {
                  pthread_attr_t attributes;
                  const int error = pthread_getattr_np(pthread_self(), &attributes);
                  if (error == 0) {
                      pthread_attr_destroy(&attributes);
                  }
                  return std::to_string(error);
              }),
              "0");
}

TEST_F(SystemCalls, DescriptorsCanBeCountedButNotConfigured) {
    EXPECT_EQ(withSeccomp([] { return lowestFreeDescriptor() > 0 ? "found" : "not found"; }),
              "found");
    EXPECT_EQ(withSeccomp([] { return outcomeOf(fcntl(STDIN_FILENO, F_SETOWN, getpid())); }),
              "EPERM");
}

TEST_F(SystemCalls, AnAbortOrAFaultKillsTheProcess) {
    EXPECT_EQ(withSeccomp([]() -> std::string { std::abort(); }), "signal 6");
    EXPECT_EQ(withSeccomp([]() -> std::string {
                  static_cast<void>(std::signal(SIGSEGV, SIG_DFL));  // sanitizers install a handler
                  // A page without access faults in every kind of build.
                  void* const page =
                      mmap(nullptr, 4096, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
                  *static_cast<volatile char*>(page) = 1;
                  return "lives";
              }),
              "signal 11");
    EXPECT_EQ(withSeccomp([]() -> std::string {
                  static_cast<void>(std::signal(SIGBUS, SIG_DFL));
                  static_cast<void>(std::raise(SIGBUS));
                  return "lives";
              }),
              "signal 7");
}

}  // namespace
}  // namespace veltrace::cli
