// Whether a record has the values that went into it.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "made_value.h"
#include "output_checks.h"

namespace veltrace::fuzz {

/// Which fields were asked for, as far as that concerns one list of directories.
struct Selection {
    std::vector<std::vector<std::string>> paths;  ///< names still to go
    bool isWhole = true;

    /// None asks for every field.
    [[nodiscard]] static Selection of(const std::vector<std::string>& fields);
    [[nodiscard]] Selection inside(std::string_view name) const;
    [[nodiscard]] bool isNothing() const { return !isWhole && paths.empty(); }
};

/// Compares a record with an output, value by value. What differs ends the process.
class InfoCheck {
public:
    InfoCheck(const Json& record, std::optional<std::size_t> omitLargerThan)
        : record_(record), omitLargerThan_(omitLargerThan) {}

    /// Texts of messages, of which `place` is one, come before the values.
    void checkText(std::string_view bytes, const Json& json, const std::string& place);
    void checkInfo(const MadeValue& output, const Selection& selection);
    /// At last: whether the record lists what was met, and nothing else.
    void checkLists() const;

private:
    void checkValue(const MadeValue& value, const Json& json, const Selection& selection,
                    const std::string& place);
    void checkDirectories(const MadeValue& value, const Json& json, const Selection& selection,
                          const std::string& place);
    void checkDirectory(const MadeValue& value, std::size_t element, const Json& json,
                        const Selection& selection, const std::string& place);
    void checkCells(const MadeValue& value, const Json& json, const Selection& selection,
                    const std::string& place);
    void checkArray(const MadeValue& value, const Json& json, const std::string& place);
    void checkMatrix(const MadeValue& value, const Json& json, const std::string& place);
    void checkElement(const MadeValue& value, std::size_t index, const Json& json,
                      const std::string& place);
    void checkNumber(double number, const Json& json, const std::string& place);

    const Json& record_;
    std::optional<std::size_t> omitLargerThan_;
    Json nonfinite_ = Json::array();
    Json latin1_ = Json::array();
    Json omitted_ = Json::array();
};

}  // namespace veltrace::fuzz
