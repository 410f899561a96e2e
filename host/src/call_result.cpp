#include "zephra/host/call_result.h"

#include <utility>

#include "call_result_state.h"

namespace zephra {

CallResult::CallResult(std::unique_ptr<State> state) noexcept : state_(std::move(state)) {}
CallResult::CallResult(CallResult&&) noexcept = default;
CallResult& CallResult::operator=(CallResult&&) noexcept = default;
CallResult::~CallResult() = default;

Value CallResult::output() const {
    return Value(state_->output);
}

const std::vector<Message>& CallResult::warnings() const {
    return state_->warnings;
}

const std::optional<Message>& CallResult::error() const {
    return state_->error;
}

const Leftovers& CallResult::leftovers() const {
    return state_->leftovers;
}

const Requests& CallResult::requests() const {
    return state_->requests;
}

const std::vector<std::string>& CallResult::misuses() const {
    return state_->misuses;
}

}  // namespace zephra
