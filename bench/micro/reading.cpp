#include "reading.h"

#include <array>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <memory>
#include <stdexcept>
#include <system_error>
#include <unistd.h>

#include "zephra/qvx.h"

#include "entry/create_reader.h"
#include "tagfile/tag_file.h"

namespace veltrace::bench {

using namespace module;

namespace {

zephra::CallResult call(const zephra::EntryPoint& entryPoint, const std::string& fileName) {
    const std::array<zephra::Argument, 1> arguments{fileName};
    zephra::CallResult result = zephra::Host().call(entryPoint, arguments);
    if (result.error()) {
        throw std::runtime_error(result.error()->text);
    }
    if (!result.warnings().empty()) {
        throw std::runtime_error(result.warnings().front().text);
    }
    return result;
}

}  // namespace

NamedFile::NamedFile(const Bytes& content)
    : name_(std::filesystem::temp_directory_path() / "bench-micro-XXXXXX") {
    const int descriptor = mkstemp(name_.data());
    if (descriptor == -1) {
        throw std::system_error(errno, std::generic_category(), name_);
    }
    close(descriptor);
    std::ofstream stream(name_, std::ios::binary);
    stream.exceptions(std::ios::failbit | std::ios::badbit);
    stream.write(reinterpret_cast<const char*>(content.data()),
                 static_cast<std::streamsize>(content.size()));
    stream.close();
}

NamedFile::~NamedFile() {
    unlink(name_.c_str());
}

void inCall(const std::function<void()>& body) {
    static_cast<void>(call([&body](int, qvArray*[], int, const qvArray*[]) { body(); }, {}));
}

zephra::CallResult callModule(const std::string& fileName) {
    return call(&qvxFunction, fileName);
}

void readAndOutput(const std::string& fileName) {
    static_cast<void>(callModule(fileName));
}

void readAlone(const std::string& fileName) {
    inCall([&fileName] {
        const std::unique_ptr<TagFile> reader(createReader(fileName.c_str()));
        reader->readAll();
    });
}

Seconds timeOfOutput(const std::string& fileName) {
    Seconds time{};
    const auto entryPoint = [&](int, qvArray* outputs[], int, const qvArray*[]) {
        const std::unique_ptr<TagFile> reader(createReader(fileName.c_str()));
        reader->readAll();
        time = timeOf([&] { outputs[0] = reader->outputValue(); });
    };
    static_cast<void>(call(entryPoint, fileName));
    return time;
}

}  // namespace veltrace::bench
