// The members of a `CallResult`.
#pragma once

#include <deque>
#include <memory_resource>
#include <optional>
#include <string>
#include <vector>

#include "zephra/host/call_result.h"

#include "array.h"

namespace zephra {

class CallResult::State {
public:
    std::pmr::monotonic_buffer_resource pool;  // of the small arrays
    std::deque<OwnedArray> arrays;  // of the call while it runs, of the output afterwards
    const qvArray* output = nullptr;
    std::vector<Message> warnings;
    std::optional<Message> error;
    Leftovers leftovers;
    Requests requests;
    std::vector<std::string> misuses;
};

}  // namespace zephra
