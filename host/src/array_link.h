// The links that tie arrays into lists.
#pragma once

namespace zephra {

/// A member of a circular list. Lists of arrays cost no memory of their own, and moving an array
/// from one to another cannot fail.
struct ArrayLink {
    ArrayLink* previous = this;
    ArrayLink* next = this;
};

}  // namespace zephra
