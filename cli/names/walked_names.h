// Names of the images below directories.
#pragma once

#include <string>
#include <sys/types.h>
#include <vector>

#include "descriptor.h"
#include "names/name_reader.h"
#include "names/name_source.h"
#include "process/child_process.h"

namespace veltrace::cli {

/// The names that a separate process finds with `walkProcess`; its errors go to standard error. The
/// process ends with this object.
class WalkedNames : public NameSource {
public:
    /// Starts this program with the arguments `command`, which include its name and must make it
    /// call `walkProcess` with roots on standard input and names on standard output. Throws
    /// NamesError.
    WalkedNames(const std::vector<std::string>& roots, const std::vector<std::string>& command);

    /// Throws NamesError when the process fails or is killed.
    [[nodiscard]] State next(std::string& name) override;
    [[nodiscard]] int descriptor() const override { return reader_.descriptor(); }

    /// After the end: whether every directory could be walked.
    [[nodiscard]] bool isComplete() const { return isComplete_; }

    /// -1 after the end.
    [[nodiscard]] pid_t process() const { return process_.id(); }

private:
    WalkedNames(Pipe pipe, const Descriptor& roots, const std::vector<std::string>& command);

    ChildProcess process_;
    NameReader reader_;
    bool isAtEnd_ = false;
    bool isComplete_ = true;
};

}  // namespace veltrace::cli
