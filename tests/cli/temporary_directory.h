// A place for the files of one test.
#pragma once

#include <cstdlib>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>

namespace veltrace::cli::test {

/// An empty directory that everybody may search; removed with its content, however deep.
class TemporaryDirectory {
public:
    explicit TemporaryDirectory(const std::string& where = "/tmp")
        : path_(where + "/veltrace-test-XXXXXX") {
        EXPECT_NE(mkdtemp(path_.data()), nullptr);
        EXPECT_EQ(chmod(path_.c_str(), 0755), 0);
    }
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;
    // `rm` removes trees that are deeper than there are descriptors.
    ~TemporaryDirectory() { EXPECT_EQ(std::system(("rm -rf '" + path_ + "'").c_str()), 0); }

    [[nodiscard]] const std::string& path() const { return path_; }
    [[nodiscard]] std::string at(std::string_view name) const {
        return path_ + "/" + std::string(name);
    }

    std::string makeFile(std::string_view name, std::string_view content) const {
        std::ofstream file(at(name), std::ios::binary);
        EXPECT_TRUE(file << content << std::flush) << name;
        return at(name);
    }
    std::string makeDirectory(std::string_view name) const {
        EXPECT_EQ(mkdir(at(name).c_str(), 0755), 0) << name;
        return at(name);
    }

private:
    std::string path_;
};

inline std::string contentOf(const std::string& path) {
    std::ostringstream content;
    content << std::ifstream(path, std::ios::binary).rdbuf();
    return content.str();
}

/// While one lives, the process has the rights of any user only.
class AsNobody {
public:
    AsNobody() {
        if (isRoot_) {
            EXPECT_EQ(seteuid(65534), 0);
        }
    }
    AsNobody(const AsNobody&) = delete;
    AsNobody& operator=(const AsNobody&) = delete;
    ~AsNobody() {
        if (isRoot_) {
            EXPECT_EQ(seteuid(0), 0);
        }
    }

private:
    bool isRoot_ = geteuid() == 0;
};

}  // namespace veltrace::cli::test
