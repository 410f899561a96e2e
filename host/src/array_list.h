// The arrays of a call or of a result.
#pragma once

#include <cstddef>

#include "array.h"
#include "array_link.h"

namespace zephra {

/// Owns arrays in a list. No operation recurses, so the depth to which they nest does not matter,
/// and no operation allocates.
class ArrayList {
public:
    ArrayList() = default;
    ArrayList(const ArrayList&) = delete;
    ArrayList& operator=(const ArrayList&) = delete;
    ~ArrayList();

    void append(ArrayPtr array) { moveToEnd(*array.release()); }
    /// Takes `root` and all that is stored below it from the lists they are in. They belong to no
    /// call from then on.
    void takeTree(qvArray& root);

    /// Compares addresses only, so `array` may be any pointer.
    [[nodiscard]] bool contains(const qvArray* array) const;
    [[nodiscard]] std::size_t size() const;

private:
    void moveToEnd(qvArray& array) {
        array.previous->next = array.next;
        array.next->previous = array.previous;
        array.previous = ring_.previous;
        array.next = &ring_;
        ring_.previous->next = &array;
        ring_.previous = &array;
    }

    ArrayLink ring_;
};

}  // namespace zephra
