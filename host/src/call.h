// What the host knows about one call while it runs.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string_view>
#include <unordered_set>

#include "zephra/host/call_result.h"
#include "zephra/host/host.h"

#include "array.h"
#include "block_ledger.h"
#include "call_result_state.h"

namespace zephra {

/// Owns every array and block that the module made, and its messages. `finish` turns them into the
/// result and frees what the output does not reach.
///
/// `operation` is the host function that the module called; misuse is reported under its name.
class Call {
public:
    /// A call that may read `arguments`, which outlive it.
    Call(const Settings& settings, std::span<const OwnedArray> arguments);

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

    /// Counts a request for an array; false when the settings refuse it.
    [[nodiscard]] bool grantsArray();
    /// Makes an array of this call; null when the host cannot. `fields` are those of a structure
    /// array, and null for any other class. May throw std::bad_alloc.
    [[nodiscard]] qvArray* createArray(qvClass classCode, qvComplexity complexity,
                                       Dimensions dimensions,
                                       std::unique_ptr<FieldTable> fields = nullptr);

    /// `array` if the module may read it, else null.
    [[nodiscard]] const qvArray* readable(const char* operation, const qvArray* array);
    /// `array` if it is one of this call, of class `classCode` and with an element `index`, else
    /// null.
    [[nodiscard]] qvArray* writable(const char* operation, qvArray* array, qvClass classCode,
                                    std::size_t index);
    /// Stores `value` in a place of `array`, or empties the place when `value` is null. What was
    /// there before is gone for the module.
    void store(const char* operation, qvArray& array, qvArray*& place, qvArray* value);

    /// A block of `size` bytes, or null. Counts as a request.
    [[nodiscard]] void* allocate(std::size_t size) noexcept;
    void release(const char* operation, void* block);

    void warn(Message message);
    /// Remembers that the module raised an error, to notice when that error gets lost.
    void noteRaised() { raised_ = true; }

    /// Records a misuse in strict mode: "operation: sentence".
    void noteMisuse(const char* operation, std::string_view sentence);

    /// Ends the call: keeps what `output` reaches unless there is an error, and frees the rest.
    [[nodiscard]] CallResult finish(qvArray* output, std::optional<Message> error);

private:
    /// True for an array of this call or an argument. Only strict mode can tell without looking
    /// behind the pointer; otherwise every array counts as known.
    [[nodiscard]] bool isKnown(const qvArray* array) const {
        return !settings_.strict || (known_.contains(array) && isOfThisCall(*array));
    }
    [[nodiscard]] bool isOfThisCall(const qvArray& array) const { return array.call() == number_; }
    [[nodiscard]] bool isStorable(const char* operation, const qvArray& array,
                                  const qvArray* value);
    [[nodiscard]] bool isReturnable(const qvArray* output);
    std::size_t freeUnreached(qvArray* output);

    // Per thread, so that calls on different threads are independent.
    static thread_local Call* current_;

    const Settings settings_;
    const std::uint32_t number_;  // no other running call has it
    std::unique_ptr<CallResult::State> result_;
    std::size_t rootCount_ = 0;  // arrays that the module made and that are stored nowhere
    std::unordered_set<const qvArray*> known_;  // in strict mode: arguments, and arrays ever made
    BlockLedger blocks_;
    bool raised_ = false;
};

}  // namespace zephra
