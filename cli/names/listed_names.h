// Names from the command line, and from a list in a file or from another program.
#pragma once

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "names/name_reader.h"
#include "names/name_source.h"

namespace veltrace::cli {

/// Returns the names of the command line in order, each as it is.
class ArgumentNames : public NameSource {
public:
    explicit ArgumentNames(std::vector<std::string> names) : names_(std::move(names)) {}

    [[nodiscard]] State next(std::string& name) override;

private:
    std::vector<std::string> names_;
    std::size_t next_ = 0;
};

/// Names that end with a newline or a NUL, which the last one may lack. Every other byte belongs to
/// the name, a carriage return too. Empty names are skipped.
class ListedNames : public NameSource {
public:
    enum class EndedBy : char { newline = '\n', nul = '\0' };

    /// Opens the file `list`; "-" is standard input. Throws NamesError.
    ListedNames(const std::string& list, EndedBy endedBy);

    [[nodiscard]] State next(std::string& name) override;
    [[nodiscard]] int descriptor() const override { return reader_.descriptor(); }

private:
    [[nodiscard]] bool take(std::string& name);

    NameReader reader_;
    bool isAtEnd_ = false;
};

}  // namespace veltrace::cli
