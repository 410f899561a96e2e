#include "call.h"

#include <algorithm>
#include <atomic>
#include <string>
#include <utility>

namespace zephra {

namespace {

constexpr const char* kForeignArray = "the array does not belong to this call";
constexpr const char* kForeignValue = "the value does not belong to this call";
constexpr const char* kStoredValue = "the value is already stored in an array";

/// Never 0. Repeats after four billion calls, when the call that had it first is long over.
std::uint32_t nextNumber() {
    static std::atomic<std::uint32_t> calls = 0;
    const std::uint32_t number = ++calls;
    return number != 0 ? number : ++calls;
}

/// Requests count from 1.
bool isGranted(std::uint64_t request, std::uint64_t failing, std::uint64_t budget) {
    return request != failing && (budget == 0 || request <= budget);
}

}  // namespace

thread_local constinit Call* Call::current_ = nullptr;

Call::Scope::Scope(Call& call) : outer_(std::exchange(current_, &call)) {}

Call::Scope::~Scope() {
    current_ = outer_;
}

Call::Call(const Settings& settings, std::span<const OwnedArray> arguments)
    : settings_(settings), number_(nextNumber()), result_(std::make_unique<CallResult::State>()) {
    for (const OwnedArray& argument : arguments) {
        argument->joinCall(number_, ArrayState::argument);
        if (settings_.strict) {
            known_.insert(argument.get());
        }
    }
}

bool Call::grantsArray() {
    return isGranted(++result_->requests.arrays, settings_.failArray, settings_.arrayBudget);
}

qvArray* Call::createArray(qvClass classCode, qvComplexity complexity, Dimensions dimensions,
                           std::unique_ptr<FieldTable> fields) {
    OwnedArray array = qvArray::create(classCode, complexity, dimensions, std::move(fields),
                                       settings_.largestBlock, &result_->pool);
    if (array == nullptr) {
        return nullptr;
    }
    qvArray* const added = result_->arrays.emplace_back(std::move(array)).get();
    if (settings_.strict) {
        known_.insert(added);
    }
    added->joinCall(number_, ArrayState::made);
    ++rootCount_;
    return added;
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
    if (!isOfThisCall(*array)) {
        noteMisuse(operation, kForeignArray);
    } else if (array->state() == ArrayState::argument) {
        noteMisuse(operation, "an argument cannot be changed");
    } else if (array->classCode() != classCode) {
        noteMisuse(operation, std::string("the array has class ") +
                                  nameOfClass(array->classCode()) + ", it must be " +
                                  nameOfClass(classCode));
    } else if (index >= array->size()) {
        noteMisuse(operation, "index " + std::to_string(index) + " is past the end of " +
                                  std::to_string(array->size()) + " elements");
    } else {
        return array;
    }
    return nullptr;
}

void Call::store(const char* operation, qvArray& array, qvArray*& place, qvArray* value) {
    if (value != nullptr && !isStorable(operation, array, value)) {
        return;
    }
    if (place != nullptr) {
        // It is freed only when the call ends, so that a module which still uses it does no harm.
        std::exchange(place, nullptr)->leaveCall(ArrayState::replaced);
        ++rootCount_;
    }
    if (value != nullptr) {
        array.store(place, *value);
        --rootCount_;
    }
}

bool Call::isStorable(const char* operation, const qvArray& array, const qvArray* value) {
    if (!isKnown(value) || !isOfThisCall(*value)) {
        noteMisuse(operation, kForeignValue);
    } else if (value->state() == ArrayState::argument) {
        noteMisuse(operation, "the value is an argument, which belongs to the host");
    } else if (value->parent() != nullptr) {
        noteMisuse(operation, kStoredValue);
    } else if (value->contains(array)) {
        noteMisuse(operation, "the value would contain itself");
    } else {
        return true;
    }
    return false;
}

void* Call::allocate(std::size_t size) noexcept {
    const bool isAllowed =
        isGranted(++result_->requests.blocks, settings_.failBlock, settings_.blockBudget);
    return isAllowed && size <= settings_.largestBlock ? blocks_.allocate(size) : nullptr;
}

void Call::release(const char* operation, void* block) {
    if (block != nullptr && !blocks_.release(block)) {
        noteMisuse(operation, "the block does not belong to this call, or it is already freed");
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

/// Also without strict mode `output` may be any pointer: it is compared before it is read.
bool Call::isReturnable(const qvArray* output) {
    const bool isMade =
        std::ranges::find(result_->arrays, output, &OwnedArray::get) != result_->arrays.end();
    if (!isMade || !isOfThisCall(*output)) {
        noteMisuse("outputs[0]", kForeignArray);
        return false;
    }
    if (output->parent() != nullptr) {
        noteMisuse("outputs[0]", kStoredValue);
        return false;
    }
    return true;
}

CallResult Call::finish(qvArray* output, std::optional<Message> error) {
    if (raised_ && !error) {
        noteMisuse("qvxErrMsgIdAndTxt", "the module continued after the error");
    }
    if (error || output == nullptr || !isReturnable(output)) {
        output = nullptr;
    }
    result_->output = output;
    result_->error = std::move(error);
    result_->leftovers = {
        .blocks = blocks_.count(), .blockBytes = blocks_.bytes(), .arrays = freeUnreached(output)};
    return CallResult(std::move(result_));
}

/// Frees what `output`, which may be null, does not reach. Returns the number of these arrays,
/// without those that were replaced.
std::size_t Call::freeUnreached(qvArray* output) {
    if (output != nullptr && rootCount_ == 1) {
        return 0;  // everything else is stored below the output
    }
    if (output != nullptr) {
        output->leaveCall(ArrayState::returned);
    }
    std::size_t count = 0;
    std::erase_if(result_->arrays, [&](const OwnedArray& array) {
        count += isOfThisCall(*array) ? 1 : 0;
        return array->state() != ArrayState::returned;
    });
    return count;
}

}  // namespace zephra
