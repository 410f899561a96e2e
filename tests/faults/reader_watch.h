// How far a call of the module has come, and with which reader.
#pragma once

namespace veltrace::module {

class TagFile;

}  // namespace veltrace::module

namespace veltrace::test {

enum class Stage { beforeReading, reading, delivering };

/// Of the last call of the module.
struct ReaderWatch {
    Stage stage = Stage::beforeReading;
    module::TagFile* reader = nullptr;  ///< once there is one; it may be gone since
};

/// Begins anew.
void resetReaderWatch();
[[nodiscard]] const ReaderWatch& readerWatch();

}  // namespace veltrace::test
