#include "names/listed_names.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <system_error>

#include "render/escape.h"

namespace veltrace::cli {
namespace {

std::string sourceName(const std::string& list) {
    return list == "-" ? "standard input" : visible(list);
}

Descriptor openList(const std::string& list) {
    Descriptor opened(list == "-" ? fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 0)
                                  : open(list.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY));
    struct stat status {};
    int error = 0;
    if (!opened.isOpen() || fstat(opened.get(), &status) != 0) {
        error = errno;
    } else if (S_ISDIR(status.st_mode)) {
        error = EISDIR;  // known now, before any work starts
    }
    if (error != 0) {
        throw NamesError("cannot read names from " + sourceName(list) + ": " +
                         std::generic_category().message(error));
    }
    return opened;
}

}  // namespace

NameSource::State ArgumentNames::next(std::string& name) {
    if (next_ == names_.size()) {
        return State::end;
    }
    name = names_[next_];
    ++next_;
    return State::name;
}

ListedNames::ListedNames(const std::string& list, EndedBy endedBy)
    : reader_(openList(list), static_cast<char>(endedBy), sourceName(list)) {}

NameSource::State ListedNames::next(std::string& name) {
    if (take(name)) {
        return State::name;
    }
    if (!isAtEnd_) {
        const NameReader::Read read = reader_.read();
        isAtEnd_ = read == NameReader::Read::end;
        if (!isAtEnd_) {
            return take(name) ? State::name : State::later;
        }
        if (!reader_.rest().empty()) {
            name = reader_.rest();
            return State::name;
        }
    }
    return State::end;
}

bool ListedNames::take(std::string& name) {
    while (reader_.take(name)) {
        if (!name.empty()) {
            return true;
        }
    }
    return false;
}

}  // namespace veltrace::cli
