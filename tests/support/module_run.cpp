#include "support/module_run.h"

#include <array>
#include <gtest/gtest.h>

namespace zephra {

void PrintTo(const Message& message, std::ostream* out) {
    *out << message.identifier << ": " << testing::PrintToString(message.text);
}

}  // namespace zephra

namespace veltrace::test {

namespace {

zephra::CallResult callModule(const std::vector<zephra::Argument>& arguments,
                              const zephra::Settings& settings) {
    return zephra::Host(settings).call(moduleUnderTest(), arguments);
}

}  // namespace

zephra::Settings strictHost() {
    zephra::Settings settings;
    settings.strict = true;
    return settings;
}

zephra::CallResult inCall(const std::function<void()>& body, const zephra::Settings& settings) {
    return zephra::Host(settings).call([&body](int, qvArray**, int, const qvArray**) { body(); },
                                       {});
}

ModuleRun::ModuleRun(const Bytes& file, const zephra::Settings& settings)
    : ModuleRun(MemoryFile(file), settings) {}

ModuleRun::ModuleRun(const MemoryFile& file, const zephra::Settings& settings)
    : ModuleRun(std::vector<zephra::Argument>{file.name()}, settings) {
    fileName_ = file.name();
}

ModuleRun::ModuleRun(const std::vector<zephra::Argument>& arguments,
                     const zephra::Settings& settings)
    : result_(callModule(arguments, settings)) {
    for (const std::string& misuse : result_.misuses()) {
        ADD_FAILURE() << "misuse of the host: " << misuse;
    }
}

const std::vector<zephra::Message>& ModuleRun::warnings() const {
    return result_.warnings();
}

const std::optional<zephra::Message>& ModuleRun::error() const {
    return result_.error();
}

std::vector<zephra::Message> ModuleRun::messages() const {
    std::vector<zephra::Message> all = warnings();
    if (error()) {
        all.push_back(*error());
    }
    return all;
}

const zephra::Leftovers& ModuleRun::leftovers() const {
    return result_.leftovers();
}

zephra::Value ModuleRun::output() const {
    return result_.output();
}

zephra::Value ModuleRun::value(Path path, std::size_t element) const {
    zephra::Value value = output();
    for (const std::string_view name : path) {
        value = value.field(element, name);
        element = 0;
    }
    return value;
}

bool ModuleRun::hasField(Path path) const {
    zephra::Value structure = output();
    bool found = false;
    for (const std::string_view name : path) {
        found = structure.fieldIndex(name).has_value();
        structure = structure.field(0, name);
    }
    return found;
}

double ModuleRun::number(Path path, std::size_t element) const {
    const auto all = numbers(path, element);
    if (all.size() != 1) {
        ADD_FAILURE() << "expected one number, found " << all.size();
        return 0;
    }
    return all.front();
}

std::vector<double> ModuleRun::numbers(Path path, std::size_t element) const {
    const zephra::Value found = value(path, element);
    EXPECT_EQ(found.className(), "double");
    return {found.numbers().begin(), found.numbers().end()};
}

std::string ModuleRun::text(Path path, std::size_t element) const {
    const zephra::Value found = value(path, element);
    EXPECT_EQ(found.className(), "char");
    return found.text();
}

std::vector<std::size_t> ModuleRun::dimensions(Path path, std::size_t element) const {
    const zephra::Value found = value(path, element);
    const auto dimensions = found.dimensions();
    return {dimensions.begin(), dimensions.end()};
}

std::vector<std::string> ModuleRun::fieldNames(Path path) const {
    const zephra::Value structure = value(path);
    std::vector<std::string> names;
    for (std::size_t i = 0; i < structure.fieldCount(); ++i) {
        names.emplace_back(structure.fieldName(i));
    }
    return names;
}

zephra::Message message(std::string_view identifier, std::string_view text) {
    return {std::string(identifier), std::string(text)};
}

}  // namespace veltrace::test
