#include "call.h"

#include <cstdlib>
#include <new>
#include <string_view>
#include <utility>

namespace zephra {

namespace {

// Per thread, because calls on different threads do not disturb each other.
thread_local Call* currentCall = nullptr;

constexpr const char* kForeignArray = "the array is not one of this call";

// Requests count from 1.
bool isGranted(std::uint64_t request, std::uint64_t failing, std::uint64_t budget) {
    return request != failing && (budget == 0 || request <= budget);
}

}  // namespace

Call* Call::current() {
    return currentCall;
}

Call::Scope::Scope(Call& call) : outer_(std::exchange(currentCall, &call)) {}

Call::Scope::~Scope() {
    currentCall = outer_;
}

void Call::FreeBlock::operator()(void* block) const noexcept {
    std::free(block);
}

Call::Call(const Settings& settings, std::span<qvArray* const> arguments)
    : settings_(settings), result_(std::make_unique<CallResult::State>()) {
    for (qvArray* const argument : arguments) {
        argument->setCall(this);
        argument->setArgument();
        if (settings_.strict) {
            known_.insert(argument);
        }
    }
}

bool Call::grantsArray() {
    return isGranted(++result_->requests.arrays, settings_.failArray, settings_.arrayBudget);
}

bool Call::grantsBlock() {
    return isGranted(++result_->requests.blocks, settings_.failBlock, settings_.blockBudget);
}

qvArray* Call::createArray(qvClass classCode, qvComplexity complexity,
                           const std::optional<Shape>& shape, std::unique_ptr<FieldTable> fields) {
    if (!shape) {
        return nullptr;
    }
    ArrayPtr array =
        qvArray::create(classCode, complexity, *shape, std::move(fields), settings_.largestBlock);
    if (!array) {
        return nullptr;
    }
    if (settings_.strict) {
        known_.insert(array.get());
    }
    qvArray* const made = array.get();
    made->setCall(this);
    arrays_.append(std::move(array));
    return made;
}

bool Call::isKnown(const qvArray* array) const {
    return !settings_.strict || (known_.contains(array) && array->call() == this);
}

const qvArray* Call::readable(const char* operation, const qvArray* array) {
    if (array == nullptr) {
        noteMisuse(operation, "no array is given");
        return nullptr;
    }
    if (!isKnown(array)) {
        noteMisuse(operation, kForeignArray);
        return nullptr;
    }
    return array;
}

qvArray* Call::writable(const char* operation, qvArray* array, qvClass classCode,
                        std::size_t index) {
    if (readable(operation, array) == nullptr) {
        return nullptr;
    }
    if (array->call() != this) {
        noteMisuse(operation, kForeignArray);
        return nullptr;
    }
    if (array->isArgument()) {
        noteMisuse(operation, "an argument cannot be changed");
        return nullptr;
    }
    if (array->classCode() != classCode) {
        noteMisuse(operation, std::string("the array has class ") +
                                  nameOfClass(array->classCode()) + ", it must be " +
                                  nameOfClass(classCode));
        return nullptr;
    }
    if (index >= array->size()) {
        noteMisuse(operation, "index " + std::to_string(index) + " is past the end of " +
                                  std::to_string(array->size()) + " elements");
        return nullptr;
    }
    return array;
}

bool Call::isStorable(const char* operation, const qvArray& array, const qvArray* value) {
    if (!isKnown(value) || value->call() != this) {
        noteMisuse(operation, "the value is not an array of this call");
        return false;
    }
    if (value->isArgument()) {
        noteMisuse(operation, "the value is an argument, which belongs to the host");
        return false;
    }
    if (value->parent() != nullptr) {
        noteMisuse(operation, "the value is already stored in an array");
        return false;
    }
    if (value->holds(array)) {
        noteMisuse(operation, "the value would hold itself");
        return false;
    }
    return true;
}

void Call::store(const char* operation, qvArray& array, qvArray*& place, qvArray* value) {
    if (value != nullptr && !isStorable(operation, array, value)) {
        return;
    }
    if (place != nullptr) {
        replaced_.takeTree(*std::exchange(place, nullptr));
    }
    if (value != nullptr) {
        array.store(place, *value);
    }
}

void* Call::allocate(std::size_t size) noexcept {
    if (!grantsBlock() || size > settings_.largestBlock) {
        return nullptr;
    }
    Block block{std::unique_ptr<void, FreeBlock>(std::malloc(size)), size};
    void* const memory = block.memory.get();
    if (memory == nullptr) {
        return nullptr;
    }
    try {
        blocks_.emplace(memory, std::move(block));
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
    return memory;
}

void Call::release(const char* operation, void* block) {
    if (block != nullptr && blocks_.erase(block) == 0) {
        noteMisuse(operation, "the block is not one of this call, or it is freed already");
    }
}

void Call::warn(Message message) {
    result_->warnings.push_back(std::move(message));
}

void Call::noteMisuse(const char* operation, const std::string& sentence) {
    if (settings_.strict) {
        result_->misuses.push_back(std::string(operation) + ": " + sentence);
    }
}

bool Call::isReturnable(const qvArray* output) {
    if (!arrays_.contains(output)) {
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
        result_->arrays.takeTree(*output);
        result_->output = output;
    }
    result_->error = std::move(error);
    result_->leftovers = leftovers();
    return CallResult(std::move(result_));
}

Leftovers Call::leftovers() const {
    Leftovers left{.blocks = blocks_.size(), .blockBytes = 0, .arrays = arrays_.size()};
    for (const auto& [memory, block] : blocks_) {
        left.blockBytes += block.size;
    }
    return left;
}

}  // namespace zephra
