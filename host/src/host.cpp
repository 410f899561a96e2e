#include "zephra/host/host.h"

#include <algorithm>
#include <limits>
#include <new>
#include <optional>
#include <utility>
#include <vector>

#include "array.h"
#include "array_list.h"
#include "boundary.h"
#include "call.h"

namespace zephra {

namespace {

// What the host grants itself: no limit but memory.
ArrayPtr makeArray(qvClass classCode, const Shape& shape) {
    std::unique_ptr<FieldTable> fields;
    if (classCode == qvClassStruct) {
        fields = std::make_unique<FieldTable>(std::span<const char* const>());
    }
    ArrayPtr array = qvArray::create(nullptr, classCode, qvReal, shape, std::move(fields),
                                     std::numeric_limits<std::size_t>::max());
    if (!array) {
        throw std::bad_alloc();
    }
    return array;
}

struct ArgumentMaker {
    ArrayPtr operator()(const std::string& bytes) const {
        ArrayPtr array = makeArray(qvClassChar, Shape(1, bytes.size()));
        std::ranges::transform(bytes, array->elements<qvChar>().begin(),
                               [](char byte) { return static_cast<unsigned char>(byte); });
        return array;
    }
    ArrayPtr operator()(double number) const {
        ArrayPtr array = makeArray(qvClassDouble, Shape(1, 1));
        array->elements<double>().front() = number;
        return array;
    }
    ArrayPtr operator()(EmptyArgument argument) const {
        return makeArray(argument.classCode, Shape(0, 0));
    }
};

}  // namespace

Host::Host(Settings settings) : settings_(settings) {}

CallResult Host::call(const EntryPoint& entryPoint, std::span<const Argument> arguments) const {
    ArrayList owned;
    std::vector<qvArray*> made;
    for (const Argument& argument : arguments) {
        ArrayPtr array = std::visit(ArgumentMaker{}, argument);
        made.push_back(array.get());
        owned.append(std::move(array));
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
