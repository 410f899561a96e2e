// A file whose bytes arrive when a test sends them, for what happens between two steps of a call.
#pragma once

#include <chrono>
#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <sys/ioctl.h>
#include <thread>
#include <unistd.h>

#include "support/unopenable_file.h"
#include "support/unseekable_file.h"

namespace veltrace::test {

/// Every stream that is opened on it reads on where the one before stopped.
class PacedFile : public UnseekableFile {
public:
    /// Returns once somebody has read these bytes. That this takes seconds is a test failure.
    void feedAndWait(const Bytes& content) const {
        feed(content);
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
        for (int unread = 1; unread != 0; std::this_thread::yield()) {
            if (ioctl(readEnd(), FIONREAD, &unread) != 0 ||
                std::chrono::steady_clock::now() > deadline) {
                ADD_FAILURE() << "nobody reads";
                return;
            }
        }
    }

    /// Reads end after what was fed.
    void end() { closeWriteEnd(); }

    /// Takes the name away. Streams that are open read on.
    void vanish() { closeReadEnd(); }

    /// Lets the name have a status and refuse to be opened. Streams that are open read on.
    void refuseToOpen() const { dup2(UnopenableFile().descriptor(), readEnd()); }

    /// Closes the descriptors of all streams that are open, without their knowledge.
    void closeStreams() const {
        const std::filesystem::path all = "/proc/self/fd";
        const auto pipe = std::filesystem::read_symlink(all / std::to_string(readEnd()));
        for (int descriptor = 0; descriptor < 1024; ++descriptor) {
            std::error_code none;
            const auto target =
                std::filesystem::read_symlink(all / std::to_string(descriptor), none);
            if (target == pipe && descriptor != readEnd() && descriptor != writeEnd()) {
                close(descriptor);
            }
        }
    }
};

}  // namespace veltrace::test
