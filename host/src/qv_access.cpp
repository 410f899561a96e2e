// Storing, inspection and memory functions of the host interface. Outside of any call they store
// nothing and return no memory, but they read arrays of a result.
#include <algorithm>
#include <optional>
#include <span>

#include "zephra/qv.h"

#include "boundary.h"
#include "call.h"

namespace {

using zephra::Call;

const qvArray* readable(const char* operation, const qvArray* array) {
    Call* const call = Call::current();
    return call != nullptr ? call->readable(operation, array) : array;
}

void* allocateOrRaise(std::size_t size) {
    Call* const call = Call::current();
    void* const block = call != nullptr ? call->allocate(size) : nullptr;
    if (block == nullptr) {
        zephra::raise({"ZEPHRA:host:outOfMemory", "Out of memory."});
    }
    return block;
}

}  // namespace

void qvSetField(qvArray* structure, size_t index, const char* name, qvArray* value) {
    Call* const call = Call::current();
    if (call == nullptr ||
        call->writable("qvSetField", structure, qvClassStruct, index) == nullptr) {
        return;
    }
    if (name == nullptr) {
        call->noteMisuse("qvSetField", "no field name is given");
        return;
    }
    // A name that the structure does not have is no misuse.
    if (const std::optional<std::size_t> field = structure->fields()->findNext(name)) {
        call->store("qvSetField", *structure, structure->place(index, *field), value);
    }
}

void qvSetCell(qvArray* cell, size_t index, qvArray* value) {
    Call* const call = Call::current();
    if (call != nullptr && call->writable("qvSetCell", cell, qvClassCell, index) != nullptr) {
        call->store("qvSetCell", *cell, cell->places()[index], value);
    }
}

int qvGetClassCode(const qvArray* value) {
    const qvArray* const array = readable("qvGetClassCode", value);
    return array != nullptr ? array->classCode() : 0;
}

const char* qvGetClassName(const qvArray* value) {
    const qvArray* const array = readable("qvGetClassName", value);
    return array != nullptr ? zephra::nameOfClass(array->classCode()) : "";
}

void* qvGetData(const qvArray* value) {
    const qvArray* const array = readable("qvGetData", value);
    if (array == nullptr) {
        return nullptr;
    }
    if (array->classCode() == qvClassCell || array->classCode() == qvClassStruct) {
        if (Call* const call = Call::current()) {
            call->noteMisuse("qvGetData", "a cell or struct array has no data");
        }
        return nullptr;
    }
    return array->data();
}

char* qvArrayToString(const qvArray* value) {
    std::span<const qvChar> characters;
    if (const qvArray* const array = readable("qvArrayToString", value)) {
        if (array->classCode() == qvClassChar) {
            characters = array->elements<const qvChar>();
        } else if (Call* const call = Call::current()) {
            call->noteMisuse("qvArrayToString", "only a char array has text");
        }
    }
    auto* const text = static_cast<char*>(allocateOrRaise(characters.size() + 1));
    char* const end = std::ranges::transform(characters, text, [](qvChar character) {
                          return static_cast<char>(character & 0xff);
                      }).out;
    *end = '\0';
    return text;
}

void* qvMalloc(size_t size) {
    Call* const call = Call::current();
    return call != nullptr ? call->allocate(size) : nullptr;
}

void qvFree(void* block) {
    if (Call* const call = Call::current()) {
        call->release("qvFree", block);
    }
}
