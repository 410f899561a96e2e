// Files on their way from their names to their records.
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
    std::optional<std::uint64_t> total;  ///< the number of files, if it is known beforehand
};

/// How a reading ended, if not with the last file.
struct Ending {
    std::string complaint;  ///< what is wrong with the inputs; empty: nothing
};

/// Reads all files with processes of a pool, until the last one or an interruption. Every file that
/// was begun before the inputs failed has its record. Throws WorkersFail, zephra::LoadError,
/// OutputError.
[[nodiscard]] Ending readIsolated(const Reading& reading, const PoolOptions& options,
                                  const WorkerSetup& setup);

/// Reads all files in this process. Throws zephra::LoadError, OutputError.
[[nodiscard]] Ending readInProcess(const Reading& reading, const WorkerSetup& setup);

}  // namespace veltrace::cli
