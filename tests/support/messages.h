// The messages that several tests expect.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "support/module_run.h"

namespace veltrace::test {

// Calls
[[nodiscard]] zephra::Message unknownException();
[[nodiscard]] zephra::Message unopenableFile(const std::string& fileName);
[[nodiscard]] zephra::Message unknownDate();

// Headers
[[nodiscard]] zephra::Message unreadableByteOrder(const std::string& fileName);
[[nodiscard]] zephra::Message badByteOrder(int first, int second, const std::string& fileName);
[[nodiscard]] zephra::Message unreadableFirstOffset();
[[nodiscard]] zephra::Message firstOffsetPastTheEnd(std::int64_t position, std::int64_t fileSize);

// JPEG segments
[[nodiscard]] zephra::Message unreadableMarker(const std::string& fileName);
[[nodiscard]] zephra::Message badMarker(int prefix, const std::string& fileName);
[[nodiscard]] zephra::Message badExifIdentifier(const std::string& shown,
                                                const std::string& fileName);

// Directories
[[nodiscard]] zephra::Message unreadableCount(const std::string& fileName);
[[nodiscard]] zephra::Message zeroEntries(std::uint64_t position);
/// `table` is as the message names it.
[[nodiscard]] zephra::Message unreadableTable(const std::string& table);
[[nodiscard]] zephra::Message nextPointerPastTheEnd(const std::string& fileName);

// Entries
[[nodiscard]] zephra::Message noType(std::uint16_t tag);
[[nodiscard]] zephra::Message badType(std::uint16_t tag, std::uint16_t type);
[[nodiscard]] zephra::Message ifdType(std::uint16_t tag);
[[nodiscard]] zephra::Message unreadableValue(const std::string& name, std::uint64_t position);
[[nodiscard]] zephra::Message unreadableValue(std::uint16_t unknownTag, std::uint64_t position);
[[nodiscard]] zephra::Message noPayload(std::uint16_t unknownTag);

// Arrays that the host refuses
[[nodiscard]] zephra::Message noStructure();
[[nodiscard]] zephra::Message noNumbersFor(const std::string& name);
[[nodiscard]] zephra::Message noColormap();
[[nodiscard]] zephra::Message noSampleFormats();
[[nodiscard]] zephra::Message noUnknownTags();
/// `kind` is `char` or `numeric`.
[[nodiscard]] zephra::Message noUnknownTag(const std::string& kind, std::uint16_t tag);

}  // namespace veltrace::test
