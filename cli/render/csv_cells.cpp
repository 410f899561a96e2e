#include "render/csv_cells.h"

#include <rapidjson/memorystream.h>
#include <rapidjson/reader.h>
#include <rapidjson/writer.h>
#include <utility>

#include "render/bounded_text.h"
#include "render/escape.h"

namespace veltrace::cli {
namespace {

/// Where RapidJSON's Writer writes to.
struct Sink {
    using Ch = char;
    BoundedText* text;

    // NOLINTBEGIN(readability-identifier-naming): RapidJSON's names
    void Put(char c) const { text->append(c); }
    void Flush() const {}
    // NOLINTEND(readability-identifier-naming)
};

/// Takes the events of one flat list of texts and refuses all others.
class CellHandler : public rapidjson::BaseReaderHandler<rapidjson::UTF8<>, CellHandler> {
public:
    explicit CellHandler(std::size_t count) : count_(count) {}

    static bool Default() { return false; }
    bool StartArray() { return !std::exchange(isOpen_, true); }
    bool String(const char* text, rapidjson::SizeType size, bool /*copy*/) {
        const std::string_view cell(text, size);
        if (!isOpen_ || cells_.size() == count_ || !isPrintable(cell)) {
            return false;
        }
        cells_.emplace_back(cell);
        return true;
    }
    bool EndArray(rapidjson::SizeType size) { return size == count_; }

    [[nodiscard]] std::vector<std::string> take() && { return std::move(cells_); }

private:
    std::size_t count_;
    bool isOpen_ = false;
    std::vector<std::string> cells_;
};

}  // namespace

std::string packedCells(const std::vector<std::string>& cells, std::size_t limit) {
    Allowance allowance(limit);
    BoundedText text(allowance);
    Sink sink{&text};
    rapidjson::Writer<Sink> writer(sink);
    writer.StartArray();
    for (const std::string& cell : cells) {
        writer.String(cell.data(), static_cast<rapidjson::SizeType>(cell.size()));
    }
    writer.EndArray();
    return std::move(text).take();
}

std::optional<std::vector<std::string>> unpackedCells(std::string_view packed, std::size_t count) {
    rapidjson::MemoryStream stream(packed.data(), packed.size());
    CellHandler handler(count);
    rapidjson::Reader reader;
    reader.Parse<rapidjson::kParseIterativeFlag | rapidjson::kParseValidateEncodingFlag>(stream,
                                                                                         handler);
    // The reader takes a NUL for the end.
    if (reader.HasParseError() || stream.Tell() != packed.size()) {
        return std::nullopt;
    }
    return std::move(handler).take();
}

}  // namespace veltrace::cli
