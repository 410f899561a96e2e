// What a `CallResult` holds.
#pragma once

#include <forward_list>
#include <optional>
#include <string>
#include <vector>

#include "zephra/host/call_result.h"

#include "array_memory.h"
#include "field_table.h"

namespace zephra {

class CallResult::State {
public:
    ArrayMemory arrays;
    std::forward_list<FieldTable> fieldTables;  // of the arrays, by their addresses
    const qvArray* output = nullptr;
    std::vector<Message> warnings;
    std::optional<Message> error;
    Leftovers leftovers;
    Requests requests;
    std::vector<std::string> misuses;
};

}  // namespace zephra
