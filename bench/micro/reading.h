// Files with a name, and the ways to read them. A file that is not read in full, or with a warning,
// throws std::runtime_error.
#pragma once

#include <functional>
#include <string>

#include "zephra/host/host.h"

#include "files/generated_files.h"
#include "measuring.h"

namespace veltrace::bench {

/// A file in the folder for temporary files (TMPDIR, or /tmp) while this object lives. Reads of it
/// come from the page cache. Opening a file without a folder, in /proc/self/fd, would take longer
/// than opening one as users have it.
class NamedFile {
public:
    explicit NamedFile(const Bytes& content);
    NamedFile(const NamedFile&) = delete;
    NamedFile& operator=(const NamedFile&) = delete;
    ~NamedFile();

    [[nodiscard]] const std::string& name() const { return name_; }

private:
    std::string name_;
};

/// Runs `body` as a call of a module, and frees what it made.
void inCall(const std::function<void()>& body);

/// A whole call of the module, which is linked into this program.
[[nodiscard]] zephra::CallResult callModule(const std::string& fileName);
/// The same, with the output freed at once.
void readAndOutput(const std::string& fileName);
/// As far as a call goes without making its output.
void readAlone(const std::string& fileName);
/// A whole call; gives the time between reading and freeing, in which the output is made.
[[nodiscard]] Seconds timeOfOutput(const std::string& fileName);

}  // namespace veltrace::bench
