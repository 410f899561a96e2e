#include "zephra/host/host.h"

#include <algorithm>
#include <array>
#include <limits>
#include <new>
#include <optional>
#include <utility>
#include <vector>

#include "array.h"
#include "array_memory.h"
#include "boundary.h"
#include "call.h"
#include "field_table.h"

namespace zephra {

namespace {

/// Makes the array of an argument. What the host grants itself has no limit but memory.
class ArgumentMaker {
public:
    ArgumentMaker(ArrayMemory& memory, FieldTable& noFields)
        : memory_(memory), noFields_(noFields) {}

    qvArray* operator()(const std::string& bytes) const {
        qvArray* const array = make(qvClassChar, {1, bytes.size()});
        std::ranges::transform(bytes, array->elements<qvChar>().begin(),
                               [](char byte) { return static_cast<unsigned char>(byte); });
        return array;
    }
    qvArray* operator()(double number) const {
        qvArray* const array = make(qvClassDouble, {1, 1});
        array->elements<double>().front() = number;
        return array;
    }
    qvArray* operator()(EmptyArgument argument) const { return make(argument.classCode, {0, 0}); }

private:
    [[nodiscard]] qvArray* make(qvClass classCode,
                                const std::array<std::size_t, 2>& dimensions) const {
        FieldTable* const fields = classCode == qvClassStruct ? &noFields_ : nullptr;
        qvArray* const array = qvArray::create(memory_, classCode, qvReal, dimensions, fields,
                                               std::numeric_limits<std::size_t>::max());
        if (array == nullptr) {
            throw std::bad_alloc();
        }
        return array;
    }

    ArrayMemory& memory_;
    FieldTable& noFields_;
};

}  // namespace

Host::Host(Settings settings) : settings_(settings) {}

CallResult Host::call(const EntryPoint& entryPoint, std::span<const Argument> arguments) const {
    ArrayMemory memory;
    FieldTable noFields({});
    std::vector<qvArray*> made;
    for (const Argument& argument : arguments) {
        made.push_back(std::visit(ArgumentMaker(memory, noFields), argument));
    }

    Call call(settings_, made);
    std::vector<const qvArray*> inputs(made.begin(), made.end());
    qvArray* output = nullptr;
    std::optional<Message> error;
    {
        const Call::Scope scope(call);
        error = runModule(
            [&] { entryPoint(1, &output, static_cast<int>(inputs.size()), inputs.data()); });
    }
    return call.finish(output, std::move(error));
}

}  // namespace zephra
