// A file that has a name, can be opened, and refuses every seek.
#pragma once

#include <cerrno>
#include <string>
#include <system_error>
#include <unistd.h>

#include "support/bytes.h"

namespace veltrace::test {

/// Any function that takes a file name can open it while this object lives.
class UnseekableFile {
public:
    UnseekableFile() {
        if (pipe(ends_) != 0) {
            throw std::system_error(errno, std::generic_category(), "pipe");
        }
    }
    UnseekableFile(const UnseekableFile&) = delete;
    UnseekableFile& operator=(const UnseekableFile&) = delete;
    ~UnseekableFile() {
        closeReadEnd();
        closeWriteEnd();
    }

    /// Makes these bytes the next to be read. A read beyond them waits without end.
    void feed(const Bytes& content) const {
        if (write(ends_[1], content.data(), content.size()) !=
            static_cast<ssize_t>(content.size())) {
            throw std::system_error(errno, std::generic_category(), "write");
        }
    }

    [[nodiscard]] std::string name() const { return "/proc/self/fd/" + std::to_string(ends_[0]); }

protected:
    [[nodiscard]] int readEnd() const { return ends_[0]; }
    [[nodiscard]] int writeEnd() const { return ends_[1]; }
    void closeReadEnd() { closeOnce(ends_[0]); }
    void closeWriteEnd() { closeOnce(ends_[1]); }

private:
    static void closeOnce(int& descriptor) {
        if (descriptor != -1) {
            close(descriptor);
            descriptor = -1;
        }
    }

    int ends_[2]{};
};

}  // namespace veltrace::test
