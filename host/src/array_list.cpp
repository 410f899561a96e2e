#include "array_list.h"

namespace zephra {

ArrayList::~ArrayList() {
    for (ArrayLink* link = ring_.next; link != &ring_;) {
        const ArrayPtr array(static_cast<qvArray*>(link));
        link = link->next;
    }
}

void ArrayList::takeTree(qvArray& root) {
    moveToEnd(root);
    // The end of the list is the queue of arrays whose places are still to be looked at.
    for (ArrayLink* link = &root; link != &ring_; link = link->next) {
        auto& array = static_cast<qvArray&>(*link);
        array.setCall(0);
        for (qvArray* const stored : array.places()) {
            if (stored != nullptr) {
                moveToEnd(*stored);
            }
        }
    }
}

bool ArrayList::contains(const qvArray* array) const {
    const ArrayLink* link = ring_.next;
    while (link != &ring_ && link != array) {
        link = link->next;
    }
    return link != &ring_;
}

std::size_t ArrayList::size() const {
    std::size_t count = 0;
    for (const ArrayLink* link = ring_.next; link != &ring_; link = link->next) {
        ++count;
    }
    return count;
}

}  // namespace zephra
