#include "call.h"

#include <atomic>
#include <utility>

namespace zephra {

namespace {

constexpr const char* kForeignArray = "the array is not one of this call";

std::uint64_t nextNumber() {
    static std::atomic<std::uint64_t> calls = 0;
    return ++calls;
}

}  // namespace

thread_local constinit Call* Call::current_ = nullptr;

Call::Scope::Scope(Call& call) : outer_(std::exchange(current_, &call)) {}

Call::Scope::~Scope() {
    current_ = outer_;
}

Call::Call(const Settings& settings, std::span<qvArray* const> arguments)
    : settings_(settings), number_(nextNumber()), result_(std::make_unique<CallResult::State>()) {
    for (qvArray* const argument : arguments) {
        argument->setCall(number_);
        argument->setArgument();
        if (settings_.strict) {
            known_.insert(argument);
        }
    }
}

void Call::noteKnown(const qvArray* array) {
    known_.insert(array);
}

bool Call::isRegistered(const qvArray* array) const {
    return known_.contains(array) && isOfThisCall(*array);
}

void Call::noteUnreadable(const char* operation, const qvArray* array) {
    noteMisuse(operation, array == nullptr ? "no array is given" : kForeignArray);
}

void Call::noteUnchangeable(const char* operation, const qvArray& array, qvClass classCode,
                            std::size_t index) {
    if (!isOfThisCall(array)) {
        noteMisuse(operation, kForeignArray);
    } else if (array.isArgument()) {
        noteMisuse(operation, "an argument cannot be changed");
    } else if (array.classCode() != classCode) {
        noteMisuse(operation, std::string("the array has class ") + nameOfClass(array.classCode()) +
                                  ", it must be " + nameOfClass(classCode));
    } else {
        noteMisuse(operation, "index " + std::to_string(index) + " is past the end of " +
                                  std::to_string(array.size()) + " elements");
    }
}

void Call::noteUnstorable(const char* operation, const qvArray* value) {
    if (!isKnown(value) || !isOfThisCall(*value)) {
        noteMisuse(operation, "the value is not an array of this call");
    } else if (value->isArgument()) {
        noteMisuse(operation, "the value is an argument, which belongs to the host");
    } else if (value->parent() != nullptr) {
        noteMisuse(operation, "the value is already stored in an array");
    } else {
        noteMisuse(operation, "the value would hold itself");
    }
}

void* Call::allocate(std::size_t size) noexcept {
    const bool isAllowed =
        isGranted(++result_->requests.blocks, settings_.failBlock, settings_.blockBudget);
    return isAllowed && size <= settings_.largestBlock ? blocks_.allocate(size) : nullptr;
}

void Call::release(const char* operation, void* block) {
    if (block != nullptr && !blocks_.release(block)) {
        noteMisuse(operation, "the block is not one of this call, or it is freed already");
    }
}

void Call::warn(Message message) {
    result_->warnings.push_back(std::move(message));
}

void Call::noteMisuse(const char* operation, std::string_view sentence) {
    if (settings_.strict) {
        result_->misuses.push_back((std::string(operation) + ": ").append(sentence));
    }
}

bool Call::isReturnable(const qvArray* output) {
    if (!isKnown(output) || !result_->arrays.contains(output) || !isOfThisCall(*output)) {
        noteMisuse("outputs[0]", kForeignArray);
        return false;
    }
    if (output->parent() != nullptr) {
        noteMisuse("outputs[0]", "the value is already stored in an array");
        return false;
    }
    return true;
}

CallResult Call::finish(qvArray* output, std::optional<Message> error) {
    if (raised_ && !error) {
        noteMisuse("qvxErrMsgIdAndTxt", "the module went on after the error");
    }
    if (!error && output != nullptr && isReturnable(output)) {
        arrayCount_ -= output->leaveCall(true);
        result_->output = output;
    }
    result_->arrays.releaseAlone(
        [](void* block) { return !static_cast<const qvArray*>(block)->isResult(); });
    result_->error = std::move(error);
    result_->leftovers = leftovers();
    return CallResult(std::move(result_));
}

Leftovers Call::leftovers() const {
    return {.blocks = blocks_.count(), .blockBytes = blocks_.bytes(), .arrays = arrayCount_};
}

}  // namespace zephra
