#include "run/tally.h"

#include <fmt/format.h>
#include <numeric>
#include <rapidjson/prettywriter.h>
#include <rapidjson/stringbuffer.h>

namespace veltrace::cli {
namespace {

double rateOf(std::uint64_t files, std::chrono::duration<double> time) {
    return time.count() > 0 ? static_cast<double>(files) / time.count() : 0;
}

}  // namespace

std::uint64_t Tally::files() const {
    return std::accumulate(counts_.begin(), counts_.end(), std::uint64_t{0});
}

std::uint64_t Tally::failed() const {
    return files() - of(Status::ok) - of(Status::warned);
}

std::string Tally::line(std::chrono::duration<double> time) const {
    std::string line =
        fmt::format("{} {}: {} ok, {} warned", files(), files() == 1 ? "file" : "files",
                    of(Status::ok), of(Status::warned));
    for (std::size_t i = 0; i < kStatusCount; ++i) {
        const auto status = static_cast<Status>(i);
        if (isFailure(status) && of(status) > 0) {
            line += fmt::format(", {} {}", of(status), nameOf(status));
        }
    }
    return line + fmt::format("; {:.1f} files/s", rateOf(files(), time));
}

std::string Tally::json(std::chrono::duration<double> time) const {
    rapidjson::StringBuffer text;
    rapidjson::PrettyWriter json(text);
    json.StartObject();
    json.Key("files");
    json.Uint64(files());
    for (std::size_t i = 0; i < kStatusCount; ++i) {
        const auto status = static_cast<Status>(i);
        json.Key(nameOf(status).data());
        json.Uint64(of(status));
    }
    json.Key("seconds");
    json.Double(time.count());
    json.Key("files_per_second");
    json.Double(rateOf(files(), time));
    json.EndObject();
    return std::string(text.GetString(), text.GetSize()) + '\n';
}

}  // namespace veltrace::cli
