#include "record/outcome.h"

#include <array>
#include <utility>

namespace veltrace::cli {

std::string_view nameOf(Status status) {
    constexpr std::array<std::string_view, kStatusCount> kNames{
        "ok", "warned", "error", "limit-memory", "limit-time", "crashed", "unreadable"};
    return kNames.at(static_cast<std::size_t>(status));
}

Outcome failure(Status status, std::string identifier, std::string text) {
    Outcome outcome;
    outcome.status = status;
    outcome.error = zephra::Message{std::move(identifier), std::move(text)};
    return outcome;
}

}  // namespace veltrace::cli
