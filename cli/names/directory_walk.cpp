#include "names/directory_walk.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <system_error>
#include <utility>
#include <vector>

#include "descriptor.h"
#include "names/name_reader.h"

namespace veltrace::cli {
namespace {

// The innermost directories stay open; those above are reopened through "..".
constexpr std::size_t kKeptOpen = 16;
constexpr int kOpenDirectory = O_RDONLY | O_DIRECTORY | O_CLOEXEC;
constexpr int kOpenFile = O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;

struct Entry {
    std::string name;
    mode_t type;  // according to the directory; 0 if it does not store it
};

/// A directory on the way to the current one, with its remaining entries.
struct Level {
    Descriptor directory;
    dev_t device = 0;
    ino_t inode = 0;
    std::size_t pathSize = 0;
    std::vector<Entry> entries;  // last name first
};

bool isSameDirectory(int descriptor, const Level& level) {
    struct stat status {};
    return fstat(descriptor, &status) == 0 && status.st_dev == level.device &&
           status.st_ino == level.inode;
}

class Walk {
public:
    Walk(std::string root, WalkListener& listener) : path_(std::move(root)), listener_(listener) {}

    void run();

private:
    void enter(Descriptor directory);
    void readEntries(Level& level);
    bool leave();
    void visit(const Entry& entry);
    void visitFile(const char* name);
    void visitDirectory(const char* name);
    void fail(int error) { listener_.failed(path_, std::generic_category().message(error)); }

    std::string path_;  // of what is being visited
    WalkListener& listener_;
    std::vector<Level> levels_;
};

void Walk::run() {
    Descriptor directory(open(path_.c_str(), kOpenDirectory));
    if (!directory.isOpen()) {
        fail(errno);
        return;
    }
    enter(std::move(directory));
    while (!levels_.empty()) {
        listener_.step();
        Level& level = levels_.back();
        path_.resize(level.pathSize);
        if (!level.entries.empty()) {
            const Entry entry = std::move(level.entries.back());
            level.entries.pop_back();
            visit(entry);
        } else if (!leave()) {
            return;
        }
    }
}

void Walk::enter(Descriptor directory) {
    struct stat status {};
    if (fstat(directory.get(), &status) != 0) {
        fail(errno);
        return;
    }
    Level level{std::move(directory), status.st_dev, status.st_ino, path_.size(), {}};
    readEntries(level);
    if (levels_.size() >= kKeptOpen) {
        levels_[levels_.size() - kKeptOpen].directory = Descriptor();
    }
    levels_.push_back(std::move(level));
}

void Walk::readEntries(Level& level) {
    Descriptor twin(fcntl(level.directory.get(), F_DUPFD_CLOEXEC, 0));
    const std::unique_ptr<DIR, int (*)(DIR*)> stream(
        twin.isOpen() ? fdopendir(twin.get()) : nullptr, closedir);
    if (!stream) {
        fail(errno);
        return;
    }
    static_cast<void>(twin.release());
    errno = 0;
    while (const dirent* const entry = readdir(stream.get())) {
        const std::string_view name = entry->d_name;
        if (name != "." && name != "..") {
            level.entries.push_back(
                {std::string(name), static_cast<mode_t>(DTTOIF(entry->d_type))});
        }
        listener_.step();
        errno = 0;
    }
    if (errno != 0) {
        fail(errno);
    }
    std::ranges::sort(level.entries, std::ranges::greater{}, &Entry::name);
}

/// Goes back to the directory above. False when it is no longer there.
bool Walk::leave() {
    const Descriptor left = std::move(levels_.back().directory);
    levels_.pop_back();
    if (levels_.empty() || levels_.back().directory.isOpen()) {
        return true;
    }
    Descriptor above(openat(left.get(), "..", kOpenDirectory));
    if (!above.isOpen() || !isSameDirectory(above.get(), levels_.back())) {
        listener_.failed(path_, "moved during the walk, which ends here");
        return false;
    }
    levels_.back().directory = std::move(above);
    return true;
}

void Walk::visit(const Entry& entry) {
    if (!path_.ends_with('/')) {
        path_ += '/';
    }
    path_ += entry.name;
    struct stat status {};
    const bool isKnown = fstatat(levels_.back().directory.get(), entry.name.c_str(), &status,
                                 AT_SYMLINK_NOFOLLOW) == 0;
    const int error = errno;
    // A directory that may be read but not searched provides only names and types.
    const mode_t mode = isKnown ? status.st_mode : entry.type;
    if (S_ISREG(mode)) {
        visitFile(entry.name.c_str());
    } else if (S_ISDIR(mode)) {
        visitDirectory(entry.name.c_str());
    } else if (!isKnown && entry.type == 0) {
        fail(error);
    }
}

void Walk::visitFile(const char* name) {
    const Descriptor file(openat(levels_.back().directory.get(), name, kOpenFile));
    if (!file.isOpen() || listener_.recognises(file.get())) {
        listener_.found(path_);
    }
}

void Walk::visitDirectory(const char* name) {
    if (path_.size() + 1 + NAME_MAX > kMaxNameSize) {
        listener_.failed(path_, "nested too deeply");
        return;
    }
    Descriptor directory(openat(levels_.back().directory.get(), name, kOpenDirectory | O_NOFOLLOW));
    if (directory.isOpen()) {
        enter(std::move(directory));
    } else {
        fail(errno);
    }
}

}  // namespace

void walk(const std::string& root, WalkListener& listener) {
    listener.step();
    struct stat status {};
    if (stat(root.c_str(), &status) == 0 && S_ISDIR(status.st_mode)) {
        Walk(root, listener).run();
    } else {
        listener.found(root);
    }
}

}  // namespace veltrace::cli
