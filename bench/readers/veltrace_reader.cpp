#include <array>

#include "zephra/host/host.h"
#include "zephra/host/module.h"

#include "readers/module_count.h"
#include "readers/readers.h"

namespace veltrace::bench {

namespace {

class VeltraceReader : public Reader {
public:
    explicit VeltraceReader(const std::string& modulePath)
        : entryPoint_(zephra::Module::load(modulePath).entryPoint()) {}

    [[nodiscard]] std::string_view name() const override { return "veltrace"; }
    [[nodiscard]] bool knows(Format format) const override { return format != Format::other; }

    [[nodiscard]] Delivered count(const std::string& path) override {
        read(path);
        return countByModule(path);
    }

    void read(const std::string& path) override {
        const std::array<zephra::Argument, 1> arguments{path};
        static_cast<void>(host_.call(entryPoint_, arguments));
    }

private:
    zephra::EntryPoint entryPoint_;
    zephra::Host host_{endingSettings()};
};

}  // namespace

std::unique_ptr<Reader> veltraceReader(const std::string& modulePath) {
    return std::make_unique<VeltraceReader>(modulePath);
}

}  // namespace veltrace::bench
