// Names from a list in a file or from another program.
#pragma once

#include <string>

#include "names/name_reader.h"
#include "names/name_source.h"

namespace veltrace::cli {

/// Names that a newline or a NUL ends; the last one needs none. Every other byte belongs to the
/// name, a carriage return too. Empty names are passed over.
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
