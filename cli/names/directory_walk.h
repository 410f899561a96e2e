// Finds the images below directories.
#pragma once

#include <string>
#include <string_view>

namespace veltrace::cli {

/// Decides about files, and receives results and errors. An exception ends the walk.
class WalkListener {
public:
    virtual ~WalkListener() = default;
    WalkListener(const WalkListener&) = delete;
    WalkListener& operator=(const WalkListener&) = delete;

    /// Whether to report this open regular file.
    [[nodiscard]] virtual bool recognises(int descriptor) = 0;
    /// Called for each reported file.
    virtual void found(const std::string& name) = 0;
    /// Called for each entry that cannot be walked.
    virtual void failed(std::string_view path, std::string_view reason) = 0;
    /// Called often, whether or not a file was found.
    virtual void step() = 0;

protected:
    WalkListener() = default;
};

/// Finds files in `root` and every directory below it, in the byte order of their names: files and
/// directories of one level are sorted together, and the files of a directory take its place.
/// Reports regular files that `recognises` accepts, and those that cannot be opened. Symbolic links
/// are not followed, except `root` itself. A root that is not a directory is reported unexamined. A
/// name is the root, a slash unless it ends in one, and the path below it; it may be longer than
/// the system allows. Any depth needs a few descriptors and no stack; a directory whose name leaves
/// no room below `kMaxNameSize` is an error.
void walk(const std::string& root, WalkListener& listener);

}  // namespace veltrace::cli
