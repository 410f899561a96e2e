#include "worker/in_child.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <exception>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>

namespace veltrace::test {

namespace {

[[noreturn]] void runAndReport(const std::function<std::string()>& body, int pipe) {
    std::string text;
    try {
        text = body();
    } catch (const std::exception& error) {
        text = std::string("threw: ") + error.what();
    }
    const ssize_t written = write(pipe, text.data(), text.size());
    _exit(written == static_cast<ssize_t>(text.size()) ? 0 : 1);
}

std::string readAll(int pipe) {
    std::string text;
    std::array<char, 4096> piece{};
    for (ssize_t count = 1; count > 0;) {
        count = read(pipe, piece.data(), piece.size());
        text.append(piece.data(), count > 0 ? static_cast<std::size_t>(count) : 0);
    }
    return text;
}

}  // namespace

std::string inChild(const std::function<std::string()>& body) {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), 0) != 0) {
        throw std::system_error(errno, std::generic_category(), "pipe2");
    }
    const pid_t child = fork();
    if (child == 0) {
        close(ends[0]);
        runAndReport(body, ends[1]);
    }
    close(ends[1]);
    std::string text = readAll(ends[0]);
    close(ends[0]);
    int status = 0;
    if (child < 0 || waitpid(child, &status, 0) != child) {
        throw std::system_error(errno, std::generic_category(), "fork");
    }
    return WIFSIGNALED(status) ? "signal " + std::to_string(WTERMSIG(status)) : text;
}

std::string outcomeOf(long result) {
    return result < 0 ? strerrorname_np(errno) : "ok";
}

}  // namespace veltrace::test
