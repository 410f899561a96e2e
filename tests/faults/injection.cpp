#include "faults/injection.h"

#include <array>
#include <bit>
#include <cstdlib>
#include <functional>
#include <new>
#include <unordered_set>

// The linker makes calls of malloc and free calls of functions of this program, and calls the true
// ones by these names.
extern "C" void* __real_malloc(std::size_t size);
extern "C" void __real_free(void* block);

namespace veltrace::test {

namespace {

/// The book-keeping of this program is not to be counted.
template <class Element>
struct Uncounted {
    using value_type = Element;
    Uncounted() = default;
    template <class Other>
    explicit Uncounted(const Uncounted<Other>&) {}

    Element* allocate(std::size_t count) {
        void* const memory = __real_malloc(count * sizeof(Element));
        if (memory == nullptr) {
            std::abort();
        }
        return static_cast<Element*>(memory);
    }
    void deallocate(Element* memory, std::size_t) { __real_free(memory); }
    friend bool operator==(const Uncounted&, const Uncounted&) { return true; }
};

using Pointers =
    std::unordered_set<void*, std::hash<void*>, std::equal_to<void*>, Uncounted<void*>>;

/// Never destroyed: memory is given back until the very end of the program.
template <int Which>
Pointers& pointers() {
    alignas(Pointers) static std::byte place[sizeof(Pointers)];
    static auto* const made = new (place) Pointers;
    return *made;
}

Pointers& blocks() {
    return pointers<0>();
}

Pointers& streams() {
    return pointers<1>();
}

/// Of each kind of request.
using Counts = std::array<std::uint64_t, 7>;

struct State {
    bool isWatching = false;
    Fault fault;
    std::uint64_t strayCloses = 0;
    Counts asked{};
    Counts refused{};
};

thread_local State state;

constexpr Request kindAt(std::size_t index) {
    return Request{1U << index};
}

constexpr std::size_t indexOf(Request kind) {
    return static_cast<std::size_t>(std::countr_zero(static_cast<unsigned>(kind)));
}

std::uint64_t sum(const Counts& counts, Request kinds) {
    std::uint64_t total = 0;
    for (std::size_t index = 0; index < counts.size(); ++index) {
        total += contains(kinds, kindAt(index)) ? counts[index] : 0;
    }
    return total;
}

}  // namespace

Injection::Injection(const Fault& fault) {
    state = State{.isWatching = true, .fault = fault};
}

Injection::~Injection() {
    state.isWatching = false;
}

std::uint64_t Injection::asked(Request kinds) {
    return sum(state.asked, kinds);
}

std::uint64_t Injection::refused(Request kinds) {
    return sum(state.refused, kinds);
}

std::uint64_t Injection::strayCloses() {
    return state.strayCloses;
}

std::size_t Injection::blocksOut() {
    return blocks().size();
}

bool Injection::isOut(const void* block) {
    return blocks().contains(const_cast<void*>(block));
}

std::size_t Injection::streamsOut() {
    return streams().size();
}

namespace detail {

bool isRefused(Request kind) {
    if (!state.isWatching) {
        return false;
    }
    ++state.asked[indexOf(kind)];
    const Fault& fault = state.fault;
    if (fault.first == 0 || !contains(fault.kinds, kind)) {
        return false;
    }
    const std::uint64_t number = sum(state.asked, fault.kinds);
    const bool isDue = number == fault.first || (fault.lasts && number > fault.first);
    state.refused[indexOf(kind)] += isDue ? 1 : 0;
    return isDue;
}

Refusal refusal() {
    return state.fault.refusal;
}

void noteBlock(void* block) {
    if (state.isWatching && block != nullptr) {
        blocks().insert(block);
    }
}

void noteFreed(void* block) {
    blocks().erase(block);
}

void noteStream(void* stream) {
    if (state.isWatching && stream != nullptr) {
        streams().insert(stream);
    }
}

bool noteClosed(void* stream) {
    const bool wasOpen = streams().erase(stream) == 1;
    state.strayCloses += state.isWatching && !wasOpen ? 1 : 0;
    return wasOpen || !state.isWatching;
}

}  // namespace detail

}  // namespace veltrace::test
