#include "names/argument_names.h"

namespace veltrace::cli {

NameSource::State ArgumentNames::next(std::string& name) {
    if (given_ == names_.size()) {
        return State::end;
    }
    name = names_[given_];
    ++given_;
    return State::name;
}

}  // namespace veltrace::cli
