// A module that does what the file name says, for tests of those who have to put up with it. Of any
// other file it returns one directory with the field Name.
#include <array>
#include <csignal>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <iterator>
#include <map>
#include <string>
#include <unistd.h>
#include <vector>

#include "zephra/qv.h"
#include "zephra/qvx.h"

namespace {

constexpr int kAnswers = 3;  // where a worker writes

void writeAll(const std::string& bytes) {
    static_cast<void>(!write(kAnswers, bytes.data(), bytes.size()));
}

/// A frame as the other side expects it: size, sequence, payload.
std::string frame(unsigned char sequence, const std::string& payload) {
    std::string bytes(12, '\0');
    bytes[0] = static_cast<char>(payload.size());
    bytes[4] = static_cast<char>(sequence);
    return bytes + payload;
}

void allocateForEver() {
    static std::vector<std::string> kept;
    while (true) {
        kept.emplace_back(std::size_t{1} << 20, 'x');
    }
}

void sleepForEver() {
    while (true) {
        sleep(1);
    }
}

void spinForEver() {
    for (volatile bool goesOn = true; goesOn;) {
    }
}

// NOLINTNEXTLINE(misc-no-recursion): that is the point
std::size_t overflowStack(std::size_t depth) {
    std::array<volatile char, 4096> block{};
    block[depth % block.size()] = 1;
    const bool goesOn = block[depth % block.size()] == 1;
    return goesOn ? overflowStack(depth + 1) + static_cast<std::size_t>(block[0]) : 0;
}

void leakDescriptors() {
    static_cast<void>(dup(STDIN_FILENO));
}

void warnOften() {
    for (int i = 0; i < 1234; ++i) {
        qvxWarnMsgIdAndTxt("ZEPHRA:unruly:often", "warning %d", i);
    }
}

using Behaviour = std::function<void()>;

const std::map<std::string, Behaviour>& behaviours() {
    static const std::map<std::string, Behaviour> all{
        {"garbage", [] { writeAll(std::string(1000, '\xA5')); }},
        {"huge-frame", [] { writeAll("\xff\xff\xff\xff" + std::string(8, '\0')); }},
        {"wrong-sequence", [] { writeAll(frame(99, std::string(100, '\0'))); }},
        {"half-frame",
         [] {
             writeAll(frame(0, std::string(100, '\0')).substr(0, 20));
             std::_Exit(0);
         }},
        {"close-pipe", [] { close(kAnswers); }},
        {"allocate", allocateForEver},
        {"sleep", sleepForEver},
        {"spin", spinForEver},
        {"exit0", [] { std::_Exit(0); }},
        {"exit7", [] { std::_Exit(7); }},
        {"abort", [] { std::abort(); }},
        {"segv", [] { std::raise(SIGSEGV); }},
        {"kill", [] { std::raise(SIGKILL); }},
        {"stop", [] { std::raise(SIGSTOP); }},
        {"overflow", [] { static_cast<void>(overflowStack(0)); }},
        {"leak", leakDescriptors},
        {"warn", warnOften},
        {"stdout", [] { static_cast<void>(!write(STDOUT_FILENO, "noise\n", 6)); }},
        {"stderr", [] { static_cast<void>(!write(STDERR_FILENO, "noise\n", 6)); }},
        {"error", [] { qvxErrMsgIdAndTxt("ZEPHRA:unruly:error", "as %s", "asked"); }},
        {"throw", [] { throw 42; }},
    };
    return all;
}

/// The name up to the first dot.
std::string stemOf(const std::string& path) {
    const std::string name = path.substr(path.rfind('/') + 1);
    return name.substr(0, name.find('.'));
}

}  // namespace

void qvxFunction(int, qvArray* outputs[], int, const qvArray* inputs[]) {
    char* const argument = qvArrayToString(inputs[0]);
    const std::string path = argument;
    qvFree(argument);
    const auto behaviour = behaviours().find(stemOf(path));
    if (behaviour != behaviours().end()) {
        behaviour->second();
    }
    const std::size_t size = 1;
    const char* name = "Name";
    outputs[0] = qvCreateStructArray(1, &size, 1, &name);
    qvSetField(outputs[0], 0, name, qvCreateString(stemOf(path).c_str()));
}
