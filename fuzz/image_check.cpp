#include "image_check.h"

#include <algorithm>
#include <numeric>
#include <optional>
#include <ostream>
#include <streambuf>
#include <string>

#include "zephra/host/host.h"
#include "zephra/qv.h"

#include "diag/dump.h"
#include "entry/create_reader.h"
#include "entry/errors.h"
#include "entry/host_messages.h"
#include "finding.h"
#include "support/memory_file.h"
#include "tagfile/tag_file.h"

namespace veltrace::fuzz {

using namespace module;

namespace {

constexpr std::time_t kModified = 1'000'000'000;

zephra::Settings boundedHost() {
    zephra::Settings settings;
    settings.largestBlock = std::size_t{128} * 1024;
    settings.blockBudget = 64;
    settings.strict = true;
    return settings;
}

/// One file for all inputs: to make one takes longer than to read it.
const test::MemoryFile& fileOf(const Bytes& content) {
    static const test::MemoryFile file({});
    file.replace(content);
    file.setModificationTime(kModified);
    return file;
}

/// Takes text and keeps nothing of it.
class Drain : public std::streambuf {
protected:
    int_type overflow(int_type character) override { return traits_type::not_eof(character); }
    std::streamsize xsputn(const char*, std::streamsize count) override { return count; }
};

std::optional<zephra::Message> readAll(TagFile& reader) {
    try {
        reader.readAll();
        return std::nullopt;
    } catch (const VeltraceFatalError& error) {
        return zephra::Message{error.identifier, error.message};
    } catch (const VeltraceRecoverableError& error) {
        return zephra::Message{error.identifier, error.message};
    }
}

/// An entry point that reads a file and dumps what the reader holds, also after an error.
void dump(int /*outputCount*/, qvArray* /*outputs*/[], int /*inputCount*/,
          const qvArray* inputs[]) {
    char* const fileName = qvArrayToString(inputs[0]);
    TagFile* const reader = createReader(fileName);
    const auto error = readAll(*reader);
    Drain drain;
    std::ostream stream(&drain);
    stream << *reader;
    if (!stream.good()) {
        reportFinding("the dump did not reach its end");
    }
    delete reader;
    qvFree(fileName);
    if (error) {
        raiseHostError(error->identifier.c_str(), error->text);
    }
}

bool isBeginningOf(const std::vector<zephra::Message>& beginning,
                   const std::vector<zephra::Message>& whole) {
    return beginning.size() <= whole.size() &&
           std::equal(beginning.begin(), beginning.end(), whole.begin());
}

}  // namespace

test::BoundedRead readImage(const Bytes& content) {
    return {fileOf(content), content, boundedHost()};
}

void checkStated(const test::BoundedRead& read) {
    if (const std::string unstated = read.unstated(); !unstated.empty()) {
        reportFinding("an outcome that is not stated: " + unstated);
    }
}

void checkDump(const Bytes& content, const test::BoundedRead& read) {
    const zephra::Argument name{fileOf(content).name()};
    const zephra::CallResult dumped = zephra::Host(boundedHost()).call(dump, {&name, 1});
    if (!dumped.misuses().empty()) {
        reportFinding("misuse of the host before a dump: " + dumped.misuses().front());
    }
    // Output adds warnings of its own at the end.
    if (dumped.error() != read.result().error() ||
        !isBeginningOf(dumped.warnings(), read.result().warnings())) {
        reportFinding("the same file read for a dump gave other messages");
    }
}

void checkImage(const Bytes& content) {
    const test::BoundedRead read = readImage(content);
    checkStated(read);
    if (std::accumulate(content.begin(), content.end(), 0U) % 8 == 0) {
        checkDump(content, read);
    }
}

}  // namespace veltrace::fuzz
