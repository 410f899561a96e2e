// A module that misbehaves as the file name up to its first dot says, for tests of the command. For
// any other file it returns one directory with the field Name.
#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <functional>
#include <map>
#include <string>
#include <sys/resource.h>
#include <unistd.h>
#include <vector>

#include "zephra/qv.h"
#include "zephra/qvx.h"

namespace {

constexpr int kAnswers = 3;  // where a worker writes

void writeAll(const std::string& bytes) {
    static_cast<void>(!write(kAnswers, bytes.data(), bytes.size()));
}

std::string numberBytes(std::uint64_t number, std::size_t size = sizeof(std::uint64_t)) {
    std::string bytes(size, '\0');
    std::memcpy(bytes.data(), &number, size);
    return bytes;
}

std::string textBytes(const std::string& text) {
    return numberBytes(text.size()) + text;
}

/// A frame: size, id, payload.
std::string frame(std::uint64_t id, const std::string& payload) {
    return numberBytes(payload.size(), sizeof(std::uint32_t)) + numberBytes(id) + payload;
}

/// A valid answer for a file that was read, except for what differs here.
struct Forged {
    std::uint64_t status = 0;
    std::uint64_t warnings = 0;
    std::string body = "[]";
    std::string nonfinite{};
    std::vector<std::string> cells{};
    std::uint64_t furtherCells = 0;  ///< announced and not sent
    std::uint64_t fieldsSeen = 0;    ///< all of them are the first one

    [[nodiscard]] std::string payload() const {
        std::string bytes = numberBytes(0) + numberBytes(status) + numberBytes(0) +
                            numberBytes(warnings) + numberBytes(0) + numberBytes(0) +
                            textBytes(body) + textBytes(nonfinite) + textBytes("") + textBytes("") +
                            numberBytes(cells.size() + furtherCells);
        for (const std::string& cell : cells) {
            bytes += textBytes(cell);
        }
        bytes += numberBytes(fieldsSeen);
        for (std::uint64_t i = 0; i < fieldsSeen; ++i) {
            bytes += numberBytes(0);
        }
        return bytes;
    }
};

/// A valid answer for a file that could not be read.
std::string forgedError() {
    constexpr std::uint64_t kError = 2;
    return numberBytes(0) + numberBytes(kError) + numberBytes(1) + textBytes("forged\x1b[2J") +
           textBytes("\r\nveltrace: nothing\xff\x9b") + numberBytes(0) + numberBytes(0) +
           numberBytes(0) + textBytes("") + textBytes("") + textBytes("") + textBytes("") +
           numberBytes(0) + numberBytes(0);
}

/// Without a system call that the sandbox refuses.
void pause(std::chrono::milliseconds time) {
    const auto end = std::chrono::steady_clock::now() + time;
    while (std::chrono::steady_clock::now() < end) {
    }
}

void allocateForever() {
    static std::vector<std::string> kept;
    while (true) {
        kept.emplace_back(std::size_t{1} << 20, 'x');
    }
}

void sleepForever() {
    while (true) {
        sleep(1);
    }
}

void spinForever() {
    for (volatile bool isTrue = true; isTrue;) {
    }
}

// NOLINTNEXTLINE(misc-no-recursion): that is the point
std::size_t overflowStack(std::size_t depth) {
    std::array<volatile char, 4096> block{};
    block[depth % block.size()] = 1;
    const bool isTrue = block[depth % block.size()] == 1;
    return isTrue ? overflowStack(depth + 1) + static_cast<std::size_t>(block[0]) : 0;
}

void trickleForever(std::uint64_t id) {
    writeAll(frame(id, std::string(1000, '\0')).substr(0, 12));
    while (true) {
        writeAll({'\0'});
        pause(std::chrono::milliseconds(50));
    }
}

void answerInPieces(std::uint64_t id) {
    for (const char byte : frame(id, forgedError())) {
        writeAll({byte});
        pause(std::chrono::milliseconds(1));
    }
    std::_Exit(0);
}

/// The answer is larger than a pipe, with a pause in the middle.
void answerAfterPause(std::uint64_t id) {
    constexpr std::size_t kPipe = 65'536;
    const std::string body = R"([{"Name":")" + std::string(std::size_t{3} << 20, 'x') + R"("}])";
    const std::string bytes = frame(id, Forged{.body = body}.payload());
    writeAll(bytes.substr(0, kPipe));
    pause(std::chrono::milliseconds(500));
    writeAll(bytes.substr(kPipe));
}

void startProcess() {
    if (fork() == 0) {
        pause(std::chrono::hours(1));
    }
}

void leakDescriptors() {
    static_cast<void>(dup(STDIN_FILENO));
}

void warnOften() {
    for (int i = 0; i < 1234; ++i) {
        qvxWarnMsgIdAndTxt("ZEPHRA:unruly:often", "warning %d", i);
    }
}

/// Gets the number after the first dot of the name: the id of the request where one is needed.
using Behaviour = std::function<void(std::uint64_t)>;

Behaviour forge(const Forged& answer) {
    return [answer](std::uint64_t id) { writeAll(frame(id, answer.payload())); };
}

const std::map<std::string, Behaviour>& behaviours() {
    static const std::map<std::string, Behaviour> all{
        {"garbage", [](auto) { writeAll(std::string(1000, '\xA5')); }},
        {"huge-frame", [](auto) { writeAll("\xff\xff\xff\xff" + std::string(8, '\0')); }},
        {"wrong-id", [](auto) { writeAll(frame(99, std::string(100, '\0'))); }},
        {"half-frame",
         [](auto) {
             writeAll(frame(0, std::string(100, '\0')).substr(0, 20));
             std::_Exit(0);
         }},
        {"close-pipe", [](auto) { close(kAnswers); }},
        {"allocate", [](auto) { allocateForever(); }},
        {"sleep", [](auto) { sleepForever(); }},
        {"spin", [](auto) { spinForever(); }},
        {"exit0", [](auto) { std::_Exit(0); }},
        {"exit7", [](auto) { std::_Exit(7); }},
        {"abort", [](auto) { std::abort(); }},
        {"segv", [](auto) { std::raise(SIGSEGV); }},
        {"kill", [](auto) { std::raise(SIGKILL); }},
        {"stop", [](auto) { std::raise(SIGSTOP); }},
        {"overflow", [](auto) { static_cast<void>(overflowStack(0)); }},
        {"leak", [](auto) { leakDescriptors(); }},
        {"warn", [](auto) { warnOften(); }},
        {"stdout", [](auto) { static_cast<void>(!write(STDOUT_FILENO, "noise\n", 6)); }},
        {"stderr", [](auto) { static_cast<void>(!write(STDERR_FILENO, "noise\n", 6)); }},
        {"error", [](auto) { qvxErrMsgIdAndTxt("ZEPHRA:unruly:error", "as %s", "asked"); }},
        {"throw", [](auto) { throw 42; }},
        {"forged", [](auto id) { writeAll(frame(id, forgedError())); }},
        {"pieces", answerInPieces},
        {"trickle", trickleForever},
        {"large-late", answerAfterPause},
        {"broken-json", forge({.body = R"([{"Name":)"})},
        {"no-array", forge({.body = "{}"})},
        {"escape-in-json", forge({.body = "[\"\x1b[2J\"]"})},
        {"escape-in-text", forge({.body = "  \x1b[2J\n"})},
        {"new-line-in-json", forge({.body = "[\n]"})},
        {"second-record", forge({.body = R"([]},{"v":1,"info":[])"})},
        {"wrong-list", forge({.nonfinite = R"({"at":"/path","is":"NaN"})"})},
        {"cells", forge({.cells = {"1"}})},
        {"few-cells", forge({.body = "", .cells = {"1", "a"}})},
        {"many-cells", forge({.body = "", .cells = {"1", "a", "b", "c"}})},
        {"no-count", forge({.body = "", .cells = {"", "a", "b"}})},
        {"escape-in-cell", forge({.body = "", .cells = {"1", "\x1b[2J", "b"}})},
        {"line-in-cell", forge({.body = "", .cells = {"1", "a\nb.tif,ok", "b"}})},
        {"body-and-cells", forge({.cells = {"1", "a", "b"}})},
        {"formula", forge({.body = "", .cells = {"1", "=1+1", "a,\"b\""}})},
        {"endless-cells", forge({.furtherCells = ~std::uint64_t{0}})},
        {"large-cell",
         [](auto id) {
             std::string payload = Forged{.body = "", .cells = {""}}.payload();
             std::memset(&payload[payload.size() - 16], 0x7f, 8);
             writeAll(frame(id, payload));
         }},
        {"unknown-field", forge({.fieldsSeen = 1})},
        {"unknown-status", forge({.status = 7})},
        {"time-limit-status", forge({.status = 4})},
        {"endless-warnings", forge({.warnings = ~std::uint64_t{0}})},
        {"endless-fields",
         [](auto id) {
             std::string payload = Forged{}.payload();
             std::memset(&payload[payload.size() - 8], 0xff, 8);
             writeAll(frame(id, payload));
         }},
        {"close-requests", [](auto) { close(STDIN_FILENO); }},
        {"busy", [](auto) { pause(std::chrono::milliseconds(10)); }},
        {"fork", [](auto) { startProcess(); }},
        {"create", [](auto) { close(open("left-behind", O_WRONLY | O_CREAT, 0600)); }},
        {"kill-parent", [](auto) { kill(getppid(), SIGKILL); }},
        {"kill-all", [](auto) { kill(0, SIGTERM); }},
        {"raise-limits",
         [](auto) {
             const rlimit none{RLIM_INFINITY, RLIM_INFINITY};
             setrlimit(RLIMIT_AS, &none);
             allocateForever();
         }},
    };
    return all;
}

std::string nameOf(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    return slash == std::string::npos ? path : path.substr(slash + 1);
}

/// The number after the dot.
std::uint64_t numberAfter(const std::string& name, std::size_t dot) {
    return dot < name.size() ? std::strtoull(name.c_str() + dot + 1, nullptr, 10) : 0;
}

}  // namespace

void qvxFunction(int, qvArray* outputs[], int, const qvArray* inputs[]) {
    char* const argument = qvArrayToString(inputs[0]);
    const std::string name = nameOf(argument);
    qvFree(argument);
    const std::size_t dot = std::min(name.find('.'), name.size());
    const auto behaviour = behaviours().find(name.substr(0, dot));
    if (behaviour != behaviours().end()) {
        behaviour->second(numberAfter(name, dot));
    }
    const std::size_t size = 1;
    const char* field = "Name";
    outputs[0] = qvCreateStructArray(1, &size, 1, &field);
    qvSetField(outputs[0], 0, field, qvCreateString(name.c_str()));
}
