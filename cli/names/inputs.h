// The files of a run.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "names/name_hash.h"
#include "names/name_source.h"
#include "names/recorded_names.h"

namespace veltrace::cli {

/// The names of several sources, one source after the other, with ids from 0. Names of another
/// shard, and those that have a record already, are skipped, but have their ids.
class Inputs {
public:
    using State = NameSource::State;

    Inputs(std::vector<std::unique_ptr<NameSource>> sources, std::optional<Shard> shard,
           std::optional<RecordedNames> recorded);

    /// As NameSource::next; `id` is the position of the name.
    [[nodiscard]] State next(std::uint64_t& id, std::string& name);

    /// The descriptor to wait for after `later`.
    [[nodiscard]] int descriptor() const;

    /// Names so far, and those among them that were not skipped.
    [[nodiscard]] std::uint64_t seen() const { return seen_; }
    [[nodiscard]] std::uint64_t taken() const { return taken_; }

private:
    [[nodiscard]] bool isWanted(const std::string& name) const;

    std::vector<std::unique_ptr<NameSource>> sources_;
    std::size_t current_ = 0;
    std::optional<Shard> shard_;
    std::optional<RecordedNames> recorded_;
    std::uint64_t seen_ = 0;
    std::uint64_t taken_ = 0;
};

}  // namespace veltrace::cli
