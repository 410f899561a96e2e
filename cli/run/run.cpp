#include "run/run.h"

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fmt/format.h>
#include <functional>
#include <iostream>
#include <memory>
#include <optional>
#include <system_error>
#include <unistd.h>
#include <utility>

#include "zephra/host/module.h"

#include "exit_status.h"
#include "messages.h"
#include "names/listed_names.h"
#include "names/walk_process.h"
#include "names/walked_names.h"
#include "output_file.h"
#include "render/escape.h"
#include "run/interruption.h"
#include "run/reading.h"

namespace veltrace::cli {
namespace {

bool isOnTerminal(int descriptor) {
    const char* const terminal = std::getenv("TERM");
    return isatty(descriptor) == 1 && terminal != nullptr && std::string_view(terminal) != "dumb";
}

bool isColoured(const Options& options) {
    if (options.render.format != Format::text || options.colour == When::never) {
        return false;
    }
    if (options.colour == When::always) {
        return true;
    }
    // https://no-color.org: set and not empty.
    const char* const noColor = std::getenv("NO_COLOR");
    return (noColor == nullptr || *noColor == '\0') && options.output.empty() &&
           isOnTerminal(STDOUT_FILENO);
}

bool isChosen(When when, bool fallback) {
    return when == When::automatic ? fallback : when == When::always;
}

OutputFile openOutput(const std::string& target) {
    return target.empty() ? OutputFile() : OutputFile(target);
}

/// `veltrace.so` in the directory of the running executable.
std::filesystem::path defaultModulePath() {
    try {
        return std::filesystem::read_symlink("/proc/self/exe").replace_filename("veltrace.so");
    } catch (const std::filesystem::filesystem_error& error) {
        throw zephra::LoadError(fmt::format("cannot find the module: {}", error.what()));
    }
}

/// One run.
class Run {
public:
    explicit Run(const Options& options)
        : options_(options),
          render_(options.render),
          isInRecords_(render_.format == Format::json || render_.format == Format::ndjson),
          inputs_(sources(), options.shard, recorded()),
          output_(openOutput(options.output)),
          progress_(isChosen(options.progress, isOnTerminal(STDERR_FILENO))),
          sink_(sinkOptions(), output_, progress_) {
        if (!options.summary.empty()) {
            summary_ = std::make_unique<OutputFile>(options.summary);
        }
    }

    int run() {
        const std::string inputError = read();
        if (interruption() != 0) {
            return keepCompleteRecords();
        }
        if (inputs_.seen() == 0 && inputError.empty()) {
            writeMessage(std::cerr, "no files to read were found");
            return kWrongUsage;
        }
        sink_.end();
        output_.commit();
        finish();
        if (!inputError.empty()) {
            writeVisibleMessage(std::cerr, inputError);
            return kInternalFault;
        }
        return status();
    }

private:
    std::vector<std::unique_ptr<NameSource>> sources() {
        std::vector<std::unique_ptr<NameSource>> sources;
        if (options_.isRecursive && !options_.files.empty()) {
            auto walk = std::make_unique<WalkedNames>(
                options_.files, std::vector<std::string>{"veltrace", kWalkMode});
            walk_ = walk.get();
            sources.push_back(std::move(walk));
        } else {
            sources.push_back(std::make_unique<ArgumentNames>(options_.files));
        }
        for (const std::string& list : options_.lists) {
            sources.push_back(std::make_unique<ListedNames>(list, ListedNames::EndedBy::newline));
        }
        for (const std::string& list : options_.nulLists) {
            sources.push_back(std::make_unique<ListedNames>(list, ListedNames::EndedBy::nul));
        }
        return sources;
    }

    [[nodiscard]] std::optional<RecordedNames> recorded() const {
        return options_.resumeFrom.empty() ? std::nullopt
                                           : std::optional<RecordedNames>(options_.resumeFrom);
    }

    SinkOptions sinkOptions() {
        render_.colour = isColoured(options_);
        return {render_, isChosen(options_.ordered, render_.format != Format::ndjson),
                !isInRecords_, options_.output.empty() && isatty(STDOUT_FILENO) == 1};
    }

    std::string read() {
        const WorkerSetup setup{
            render_,
            options_.module.empty() ? defaultModulePath() : options_.module,
            options_.memoryLimit,
            options_.isSandboxed,
            getpid(),
        };
        const Reading reading{inputs_, sink_, progress_, total()};
        if (!options_.isIsolated) {
            return readInProcess(reading, setup);
        }
        const PoolOptions pool{.workers = options_.jobs, .timeLimit = options_.timeLimit};
        return readIsolated(reading, pool, setup);
    }

    /// The number of files, if the command line alone determines it.
    [[nodiscard]] std::optional<std::uint64_t> total() const {
        const bool isKnown = !options_.isRecursive && options_.lists.empty() &&
                             options_.nulLists.empty() && !options_.shard &&
                             options_.resumeFrom.empty();
        return isKnown ? std::optional<std::uint64_t>(options_.files.size()) : std::nullopt;
    }

    int keepCompleteRecords() {
        sink_.end();
        if (sink_.tally().files() > 0) {
            output_.keepPartial();
        }
        finish();
        return kSignalled + interruption();
    }

    void finish() {
        progress_.finish(sink_.tally());
        if (summary_) {
            summary_->write(sink_.tally().json(progress_.elapsed()));
            summary_->commit();
        }
        if (interruption() == 0) {
            for (const std::string& field : sink_.fieldsNeverSeen()) {
                writeMessage(std::cerr, "no file has the field " + field);
            }
        }
    }

    [[nodiscard]] int status() const {
        const Tally& tally = sink_.tally();
        const bool isIncomplete = walk_ != nullptr && !walk_->isComplete();
        switch (options_.failOn) {
            case FailOn::never:
                return kAllRead;
            case FailOn::warning:
                return isIncomplete || tally.of(Status::ok) < tally.files() ? kSomeFailed
                                                                            : kAllRead;
            case FailOn::error:
                break;
        }
        return isIncomplete || tally.failed() > 0 ? kSomeFailed : kAllRead;
    }

    const Options& options_;
    RenderOptions render_;
    bool isInRecords_;
    const WalkedNames* walk_ = nullptr;
    Inputs inputs_;
    OutputFile output_;
    Progress progress_;
    RecordSink sink_;
    std::unique_ptr<OutputFile> summary_;
};

/// Runs `body`; an exception becomes a message and an exit status.
int guarded(const std::function<int()>& body) {
    const auto fail = [](std::string_view what, int status) {
        writeVisibleMessage(std::cerr, what);
        return status;
    };
    try {
        return body();
    } catch (const OutputClosed&) {
        return kSignalled + SIGPIPE;
    } catch (const OutputInterrupted&) {
        return kSignalled + interruption();
    } catch (const OutputError& error) {
        return fail(error.what(), kOutputFailed);
    } catch (const NamesError& error) {
        return fail(error.what(), kWrongUsage);
    } catch (const zephra::LoadError& error) {
        return fail(visible(error.what()), kWrongUsage);
    } catch (const std::exception& error) {
        return fail(visible(error.what()), kInternalFault);
    }
}

}  // namespace

int run(const Options& options) {
    return guarded([&options] {
        catchInterruptions();
        return Run(options).run();
    });
}

int print(std::string_view text) {
    return guarded([text] {
        OutputFile output;
        output.write(text);
        output.commit();
        return kAllRead;
    });
}

}  // namespace veltrace::cli
