// A host value as JSON that loses nothing.
#pragma once

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>
#include <string_view>

#include "zephra/host/value.h"

namespace veltrace::test {

using JsonWriter = rapidjson::Writer<rapidjson::StringBuffer>;

/// Bytes as a JSON string: each becomes the character of its number.
void writeBytes(JsonWriter& writer, std::string_view bytes);

/// An empty place is null. Numbers are the hexadecimal digits of their 64 bits and characters those
/// of their 16, all of one array in one string. Recurses as deep as the value nests.
void writeValue(JsonWriter& writer, const zephra::Value& value);

}  // namespace veltrace::test
