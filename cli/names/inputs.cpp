#include "names/inputs.h"

#include <utility>

namespace veltrace::cli {

Inputs::Inputs(std::vector<std::unique_ptr<NameSource>> sources, std::optional<Shard> shard,
               std::optional<RecordedNames> recorded)
    : sources_(std::move(sources)), shard_(shard), recorded_(std::move(recorded)) {}

Inputs::State Inputs::next(std::uint64_t& id, std::string& name) {
    while (current_ < sources_.size()) {
        const State state = sources_[current_]->next(name);
        if (state == State::later) {
            return state;
        }
        if (state == State::end) {
            ++current_;
            continue;
        }
        id = seen_++;
        if (isWanted(name)) {
            ++taken_;
            return state;
        }
    }
    return State::end;
}

int Inputs::descriptor() const {
    return current_ < sources_.size() ? sources_[current_]->descriptor() : -1;
}

bool Inputs::isWanted(const std::string& name) const {
    return (!shard_ || shard_->contains(name)) && (!recorded_ || !recorded_->contains(name));
}

}  // namespace veltrace::cli
