// Finds the images below directories.
#pragma once

#include <string>
#include <string_view>

namespace veltrace::cli {

/// What a walk asks and tells. An exception ends the walk.
class WalkListener {
public:
    virtual ~WalkListener() = default;
    WalkListener(const WalkListener&) = delete;
    WalkListener& operator=(const WalkListener&) = delete;

    /// Whether the regular file that is open here counts.
    [[nodiscard]] virtual bool recognises(int descriptor) = 0;
    /// Called for each file that counts.
    virtual void found(const std::string& name) = 0;
    /// What stands at `path` is left out: `reason` is of the system or one of this walk's.
    virtual void complain(std::string_view path, std::string_view reason) = 0;
    /// Called often, found or not.
    virtual void step() = 0;

protected:
    WalkListener() = default;
};

/// Finds files in `root` and every directory below it, in the order of the bytes of their names: at
/// each level directories and files stand in one order, and a directory's files in its place. Only
/// regular files count that `recognises` takes, and those that cannot be opened. Symbolic links are
/// not followed, except `root` itself. A root that is no directory is found as it is, unexamined. A
/// name is the root, a slash unless it ends in one, and the path below it; it may be longer than
/// the system takes. Any depth takes a few descriptors and no stack; a directory whose name leaves
/// no room below `kLongestName` is complained about.
void walk(const std::string& root, WalkListener& listener);

}  // namespace veltrace::cli
