// What the host keeps about one call while it runs.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_set>
#include <utility>

#include "zephra/host/call_result.h"
#include "zephra/host/host.h"

#include "array.h"
#include "block_ledger.h"
#include "call_result_state.h"

namespace zephra {

/// The ledger of a call: every array and block that the module made, and what it said. `finish`
/// takes the output; the rest is reclaimed with the call, or with its result what shares memory
/// with the output.
///
/// `operation` is the host function on whose behalf something is asked; misuse is reported in its
/// name.
class Call {
public:
    /// A call that may read `arguments`, which outlive it.
    Call(const Settings& settings, std::span<qvArray* const> arguments);

    /// The call that runs on this thread; null outside of any.
    [[nodiscard]] static Call* current() { return current_; }

    /// Makes a call the current one of this thread until the end of the scope.
    class Scope {
    public:
        explicit Scope(Call& call);
        Scope(const Scope&) = delete;
        Scope& operator=(const Scope&) = delete;
        ~Scope();

    private:
        Call* const outer_;
    };

    /// Counts a request for an array; false when it is to be refused.
    [[nodiscard]] bool grantsArray() {
        return isGranted(++result_->requests.arrays, settings_.failArray, settings_.arrayBudget);
    }
    /// Makes an array of this call; null when the host cannot. May throw std::bad_alloc.
    [[nodiscard]] qvArray* createArray(qvClass classCode, qvComplexity complexity,
                                       Dimensions dimensions, FieldTable* fields = nullptr) {
        qvArray* const array = qvArray::create(result_->arrays, classCode, complexity, dimensions,
                                               fields, settings_.largestBlock);
        if (array == nullptr) {
            return nullptr;
        }
        if (settings_.strict) {
            noteKnown(array);
        }
        array->setCall(number_);
        ++arrayCount_;
        return array;
    }
    /// Makes a structure array of this call, likewise.
    [[nodiscard]] qvArray* createStruct(Dimensions dimensions, std::span<const char* const> names) {
        FieldTable& fields = result_->fieldTables.emplace_front(names);
        qvArray* const array = createArray(qvClassStruct, qvReal, dimensions, &fields);
        if (array == nullptr) {
            result_->fieldTables.pop_front();
        }
        return array;
    }

    /// `array` if the module may read it, else null.
    [[nodiscard]] const qvArray* readable(const char* operation, const qvArray* array) {
        if (array != nullptr && isKnown(array)) {
            return array;
        }
        noteUnreadable(operation, array);
        return nullptr;
    }
    /// `array` if it is one of this call and of class `classCode` and has an element `index`, else
    /// null.
    [[nodiscard]] qvArray* writable(const char* operation, qvArray* array, qvClass classCode,
                                    std::size_t index) {
        if (readable(operation, array) == nullptr) {
            return nullptr;
        }
        if (isOfThisCall(*array) && !array->isArgument() && array->classCode() == classCode &&
            index < array->size()) {
            return array;
        }
        noteUnchangeable(operation, *array, classCode, index);
        return nullptr;
    }
    /// Stores `value` in a place of `array`, or empties the place when `value` is null. What was
    /// there before is gone for the module.
    void store(const char* operation, qvArray& array, qvArray*& place, qvArray* value) {
        if (value != nullptr && !isStorable(array, value)) {
            noteUnstorable(operation, value);
            return;
        }
        if (place != nullptr) {
            // It stays in memory, so that a module which still points at it does no harm.
            arrayCount_ -= std::exchange(place, nullptr)->leaveCall(false);
        }
        if (value != nullptr) {
            array.store(place, *value);
        }
    }

    /// A block of `size` bytes, or null. Counts as a request.
    [[nodiscard]] void* allocate(std::size_t size) noexcept;
    void release(const char* operation, void* block);

    void warn(Message message);
    /// Remembers that the module was left by an error, to find out if that error got lost.
    void noteRaised() { raised_ = true; }

    /// Records a misuse in strict mode: "operation: sentence".
    void noteMisuse(const char* operation, std::string_view sentence);

    /// Ends the call: keeps what `output` reaches unless there is an error, and counts the rest.
    [[nodiscard]] CallResult finish(qvArray* output, std::optional<Message> error);

private:
    // Requests count from 1.
    [[nodiscard]] static bool isGranted(std::uint64_t request, std::uint64_t failing,
                                        std::uint64_t budget) {
        return request != failing && (budget == 0 || request <= budget);
    }
    /// True for an array of this call or an argument; for those only it looks behind the pointer.
    [[nodiscard]] bool isKnown(const qvArray* array) const {
        return !settings_.strict || isRegistered(array);
    }
    [[gnu::cold]] void noteKnown(const qvArray* array);
    [[nodiscard, gnu::cold]] bool isRegistered(const qvArray* array) const;
    [[nodiscard]] bool isOfThisCall(const qvArray& array) const { return array.call() == number_; }
    [[nodiscard]] bool isStorable(const qvArray& array, const qvArray* value) const {
        return isKnown(value) && isOfThisCall(*value) && !value->isArgument() &&
               value->parent() == nullptr && !value->holds(array);
    }
    // Each finds out what is wrong and records it.
    void noteUnreadable(const char* operation, const qvArray* array);
    void noteUnchangeable(const char* operation, const qvArray& array, qvClass classCode,
                          std::size_t index);
    void noteUnstorable(const char* operation, const qvArray* value);
    [[nodiscard]] bool isReturnable(const qvArray* output);
    [[nodiscard]] Leftovers leftovers() const;

    // Per thread, because calls on different threads do not disturb each other.
    static thread_local Call* current_;

    const Settings settings_;
    const std::uint64_t number_;  // no other call of this process has had it
    std::unique_ptr<CallResult::State> result_;
    std::size_t arrayCount_ = 0;                // without those that another value has replaced
    std::unordered_set<const qvArray*> known_;  // in strict mode: arguments, and arrays ever made
    BlockLedger blocks_;
    bool raised_ = false;
};

}  // namespace zephra
