// All names of a source.
#pragma once

#include <gtest/gtest.h>
#include <poll.h>
#include <string>
#include <vector>

#include "names/name_source.h"

namespace veltrace::cli::test {

/// Reads until the end, and waits as a run does. Nothing for ten seconds is a test failure.
inline std::vector<std::string> allNames(NameSource& source) {
    std::vector<std::string> names;
    std::string name;
    while (true) {
        const NameSource::State state = source.next(name);
        if (state == NameSource::State::end) {
            return names;
        }
        if (state == NameSource::State::name) {
            names.push_back(name);
            continue;
        }
        pollfd waiting{source.descriptor(), POLLIN, 0};
        if (poll(&waiting, 1, 10000) != 1) {
            ADD_FAILURE() << "timeout";
            return names;
        }
    }
}

template <class Action>
std::string namesErrorOf(Action action) {
    try {
        action();
    } catch (const NamesError& error) {
        return error.what();
    }
    ADD_FAILURE() << "nothing was thrown";
    return {};
}

/// Names that break when they are handled as anything but bytes.
inline const std::vector<std::string>& oddNames() {
    static const std::vector<std::string> names = {
        "new\nline",
        "carriage\r",
        "\x1b[31m",
        "%n%n",
        "-leading",
        "in\xffvalid",
        " ",
        std::string(255, 'x'),
        "*",
        "quote\"'`",
        "back\\slash\\x1b",
    };
    return names;
}

}  // namespace veltrace::cli::test
