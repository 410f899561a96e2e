// Reads all files of a run.
#pragma once

#include <optional>
#include <string>

#include "names/inputs.h"
#include "pool/pool.h"
#include "run/progress.h"
#include "run/record_sink.h"
#include "wire/exchange.h"

namespace veltrace::cli {

/// What a reading works with; all of it outlives the reading.
struct Reading {
    Inputs& inputs;
    RecordSink& sink;
    Progress& progress;
    std::optional<std::uint64_t> total;  ///< the number of files, if it is known in advance
};

/// Reads all files with processes of a pool, until the last one or an interruption. Every file that
/// was started before the inputs failed has its record. Returns what is wrong with the inputs;
/// empty: nothing. Throws WorkersFail, zephra::LoadError, OutputError.
[[nodiscard]] std::string readIsolated(const Reading& reading, const PoolOptions& options,
                                       const WorkerSetup& setup);

/// The same in this process. Throws zephra::LoadError, OutputError.
[[nodiscard]] std::string readInProcess(const Reading& reading, const WorkerSetup& setup);

}  // namespace veltrace::cli
