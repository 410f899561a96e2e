#include "run/feed.h"

namespace veltrace::cli {

std::optional<Feed::File> Feed::next() {
    isLate_ = false;
    if (isAtEnd_) {
        return std::nullopt;
    }
    File file;
    try {
        switch (inputs_.next(file.id, file.path)) {
            case Inputs::State::name:
                return file;
            case Inputs::State::later:
                isLate_ = true;
                break;
            case Inputs::State::end:
                isAtEnd_ = true;
                break;
        }
    } catch (const NamesError& error) {
        error_ = error.what();
        isAtEnd_ = true;
    }
    return std::nullopt;
}

std::optional<std::uint64_t> Feed::total() const {
    return isAtEnd_ ? std::optional(inputs_.taken()) : std::nullopt;
}

}  // namespace veltrace::cli
