#include "run.h"

#include <array>
#include <cerrno>
#include <string>
#include <system_error>

#include "zephra/host/host.h"
#include "zephra/host/module.h"

#include "messages.h"
#include "module_path.h"
#include "output_writer.h"

namespace veltrace::cli {
namespace {

zephra::Module loadModule(const Options& options) {
    return zephra::Module::load(options.module.empty() ? defaultModulePath() : options.module);
}

zephra::CallResult read(const zephra::EntryPoint& entryPoint, const std::string& file) {
    const std::array<zephra::Argument, 1> arguments{file};
    return zephra::Host().call(entryPoint, arguments);
}

/// Whether everything written so far has left; says on `err` why not.
bool isDelivered(std::ostream& out, std::ostream& err) {
    const bool wasGood = out.good();
    // The stream does not keep the reason of a failure, but a flush that fails leaves it in errno;
    // one that came earlier is met again.
    out.clear();
    errno = 0;
    if (out.flush() && wasGood) {
        return true;
    }
    const std::error_code reason(errno, std::generic_category());
    writeMessage(err, "cannot write the output" + (reason ? ": " + reason.message() : ""));
    return false;
}

ExitStatus readFiles(const Options& options, const zephra::EntryPoint& entryPoint,
                     std::ostream& out, std::ostream& err) {
    ExitStatus status = kAllRead;
    const auto writer = makeOutputWriter(options, out);
    writer->begin();
    for (const std::string& file : options.files) {
        const zephra::CallResult result = read(entryPoint, file);
        if (result.error()) {
            status = kSomeFailed;
        }
        writeMessages(err, file, result);
        writer->file(file, result);
        if (!isDelivered(out, err)) {
            return kOutputFailed;
        }
    }
    writer->end();
    return isDelivered(out, err) ? status : kOutputFailed;
}

}  // namespace

ExitStatus run(const Options& options, std::ostream& out, std::ostream& err) {
    try {
        const zephra::Module module = loadModule(options);
        return readFiles(options, module.entryPoint(), out, err);
    } catch (const zephra::LoadError& error) {
        writeMessage(err, error.what());
        return kWrongUsage;
    }
}

ExitStatus print(std::string_view text, std::ostream& out, std::ostream& err) {
    out << text;
    return isDelivered(out, err) ? kAllRead : kOutputFailed;
}

}  // namespace veltrace::cli
