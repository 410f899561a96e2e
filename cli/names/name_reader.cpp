#include "names/name_reader.h"

#include <algorithm>
#include <cerrno>
#include <poll.h>
#include <system_error>
#include <unistd.h>

#include "names/name_source.h"

namespace veltrace::cli {
namespace {

constexpr std::size_t kBlock = std::size_t{1} << 16;

}  // namespace

bool NameReader::take(std::string& name) {
    const std::size_t end = bytes_.find(terminator_, searched_);
    if (end == std::string::npos) {
        searched_ = bytes_.size();
        return false;
    }
    checkLength(end - taken_);
    name.assign(bytes_, taken_, end - taken_);
    taken_ = end + 1;
    searched_ = taken_;
    return true;
}

NameReader::Read NameReader::read() {
    checkLength(rest().size());
    if (!isReadable()) {
        return Read::later;
    }
    bytes_.erase(0, taken_);
    searched_ -= taken_;
    taken_ = 0;
    const std::size_t held = bytes_.size();
    bytes_.resize(held + kBlock);
    const ssize_t size = ::read(descriptor_.get(), bytes_.data() + held, kBlock);
    const int error = errno;
    bytes_.resize(held + static_cast<std::size_t>(std::max<ssize_t>(size, 0)));
    if (size >= 0) {
        return size == 0 ? Read::end : Read::some;
    }
    if (error == EINTR || error == EAGAIN) {
        return Read::later;
    }
    fail(error);
}

// Not O_NONBLOCK: it would break reads of other processes that share standard input.
bool NameReader::isReadable() const {
    pollfd waiting{descriptor_.get(), POLLIN, 0};
    const int ready = poll(&waiting, 1, 0);
    if (ready < 0 && errno != EINTR) {
        fail(errno);
    }
    return ready > 0;  // also when it is closed or failed, which the read then reports
}

void NameReader::checkLength(std::size_t bytes) const {
    if (bytes > kMaxNameSize) {
        throw NamesError("cannot read names from " + source_ + ": one has more than " +
                         std::to_string(kMaxNameSize) + " bytes");
    }
}

void NameReader::fail(int error) const {
    throw NamesError("cannot read names from " + source_ + ": " +
                     std::generic_category().message(error));
}

}  // namespace veltrace::cli
