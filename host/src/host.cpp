#include "zephra/host/host.h"

#include <algorithm>
#include <array>
#include <limits>
#include <memory>
#include <new>
#include <optional>
#include <utility>
#include <vector>

#include "array.h"
#include "boundary.h"
#include "call.h"
#include "field_table.h"

namespace zephra {

namespace {

/// An array of an argument, limited only by memory.
OwnedArray makeArray(qvClass classCode, const std::array<std::size_t, 2>& dimensions) {
    std::unique_ptr<FieldTable> fields;
    if (classCode == qvClassStruct) {
        fields = std::make_unique<FieldTable>(std::span<const char* const>());
    }
    OwnedArray array = qvArray::create(classCode, qvReal, dimensions, std::move(fields),
                                       std::numeric_limits<std::size_t>::max());
    if (array == nullptr) {
        throw std::bad_alloc();
    }
    return array;
}

OwnedArray arrayOf(const std::string& bytes) {
    OwnedArray array = makeArray(qvClassChar, {1, bytes.size()});
    std::ranges::transform(bytes, array->elements<qvChar>().begin(),
                           [](char byte) { return static_cast<unsigned char>(byte); });
    return array;
}

OwnedArray arrayOf(double number) {
    OwnedArray array = makeArray(qvClassDouble, {1, 1});
    array->elements<double>().front() = number;
    return array;
}

OwnedArray arrayOf(EmptyArgument argument) {
    return makeArray(argument.classCode, {0, 0});
}

}  // namespace

Host::Host(Settings settings) : settings_(settings) {}

CallResult Host::call(const EntryPoint& entryPoint, std::span<const Argument> arguments) const {
    std::vector<OwnedArray> made;
    std::vector<const qvArray*> inputs;
    for (const Argument& argument : arguments) {
        made.push_back(std::visit([](const auto& value) { return arrayOf(value); }, argument));
        inputs.push_back(made.back().get());
    }

    Call call(settings_, made);
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
