// What a `CallResult` holds.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "zephra/host/call_result.h"

#include "array_list.h"
#include "array_memory.h"

namespace zephra {

class CallResult::State {
public:
    ArrayMemory memory;  // outlives all arrays of the call
    ArrayList arrays;    // what the output reaches
    const qvArray* output = nullptr;
    std::vector<Message> warnings;
    std::optional<Message> error;
    Leftovers leftovers;
    Requests requests;
    std::vector<std::string> misuses;
};

}  // namespace zephra
