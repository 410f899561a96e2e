#include "faults/faulty_call.h"

#include <ctime>
#include <gtest/gtest.h>
#include <limits>
#include <new>

#include "faults/emptied_places.h"
#include "faults/fault_messages.h"
#include "support/module_run.h"
#include "support/tiff_builder.h"
#include "sweep/well_formed.h"
#include "tagfile/tag_file.h"

namespace veltrace::test {

using namespace module;

namespace {

constexpr std::time_t kModified = 1'000'000'000;
constexpr std::uint64_t kBlocks = 512;
constexpr const char* kUnknown = "ZEPHRA:veltrace:unknownException";

constexpr Request kEachRequest[] = {Request::memory, Request::open, Request::status, Request::read,
                                    Request::seek,   Request::tell, Request::close};

bool isJpeg(const Bytes& content) {
    return content.size() >= 2 && content[0] == 0xFF && content[1] == 0xD8;
}

std::string shown(const zephra::Message& message) {
    return message.identifier + ": " + testing::PrintToString(message.text);
}

bool isStatedSomewhere(const zephra::Message& message, Channel channel) {
    return isStated(message, channel) || isStatedOfFaults(message, channel);
}

}  // namespace

Prepared::Prepared(const Scenario& scenario)
    : arguments_(scenario.arguments),
      defaultFields_(scenario.file && isJpeg(*scenario.file) ? 10 : 34) {
    if (scenario.file) {
        file_.emplace(*scenario.file);
        file_->setModificationTime(kModified);
        arguments_.emplace_back(file_->name());
    }
}

std::string Prepared::fileName() const {
    const auto* const name =
        arguments_.size() == 1 ? std::get_if<std::string>(&arguments_.front()) : nullptr;
    return name != nullptr ? *name : "";
}

namespace {

/// The module keeps the stand-ins for baseline tags from its first TIFF file on.
void makeWhatAllCallsShare() {
    static const bool isMade = [] {
        const MemoryFile memory(tiffOf(Dir().shorts(274, {1})));
        const zephra::Argument name{memory.name()};
        return !zephra::Host().call(moduleUnderTest(), {&name, 1}).error();
    }();
    EXPECT_TRUE(isMade);
}

}  // namespace

zephra::Settings boundedHost() {
    zephra::Settings settings = strictHost();
    settings.blockBudget = kBlocks;
    return settings;
}

FaultyCall::FaultyCall(const Prepared& prepared, const Fault& fault,
                       const zephra::Settings& settings)
    : fileName_(prepared.fileName()),
      defaultFields_(prepared.defaultFields()),
      fault_(fault),
      settings_(settings) {
    makeWhatAllCallsShare();
    blocksBefore_ = Injection::blocksOut();
    const zephra::EntryPoint module = moduleUnderTest();
    const zephra::Host host(settings);
    resetReaderWatch();
    const Injection injection(fault);
    try {
        result_ = host.call(module, prepared.arguments());
    } catch (const std::bad_alloc&) {
        result_.reset();
    }
    asked_ = Injection::asked(fault.kinds);
    refused_ = Injection::refused(fault.kinds);
    for (const Request kind : kEachRequest) {
        refusedKinds_ = refusedKinds_ | (Injection::refused(kind) != 0 ? kind : kNoRequest);
    }
    triedToOpen_ = Injection::asked(Request::open) != 0;
    strayCloses_ = Injection::strayCloses();
    watch_ = readerWatch();
    leftReader_ = Injection::isOut(watch_.reader) && Injection::streamsOut() == 1;
}

FaultyCall::~FaultyCall() {
    static_cast<void>(cleanUp());
}

std::vector<zephra::Message> FaultyCall::messages() const {
    std::vector<zephra::Message> all = result_->warnings();
    if (result_->error()) {
        all.push_back(*result_->error());
    }
    return all;
}

bool FaultyCall::memoryWasRefused() const {
    return wasRefused(Request::memory) || settings_.failBlock != 0 || settings_.failArray != 0;
}

std::string FaultyCall::unstated(const FaultyCall& usual) const {
    if (strayCloses_ != 0) {
        return "a stream was closed that is not open";
    }
    if (std::string flaw = flawOfReader(); !flaw.empty()) {
        return flaw;
    }
    if (!result_) {
        return wasRefused(Request::memory) ? "" : "the host ran out of memory that it was given";
    }
    if (!result_->misuses().empty()) {
        return "misuse of the host: " + result_->misuses().front();
    }
    if (std::string flaw = flawOfMessages(); !flaw.empty()) {
        return flaw;
    }
    const std::string flaw = flawOfValue(usual);
    return flaw.empty() ? flawOfLeftovers(usual) : flaw;
}

/// Whether what was refused explains an error that no file explains.
bool FaultyCall::hasCause(const zephra::Message& error) const {
    if (error == fatalErrorUnconverted()) {
        return wasRefused(Request::open | Request::status | Request::close);
    }
    const bool isOfMemory = isOfTheHost(error) || error.identifier == kUnknown ||
                            error.identifier.find("llocation") != std::string::npos;
    return !isOfMemory || memoryWasRefused();
}

std::string FaultyCall::flawOfMessages() const {
    for (const zephra::Message& warning : result_->warnings()) {
        if (!isStatedSomewhere(warning, Channel::warning)) {
            return "warning " + shown(warning);
        }
    }
    const auto& error = result_->error();
    if (error && !isOfTheHost(*error) && !isStatedSomewhere(*error, Channel::error)) {
        return "error " + shown(*error);
    }
    return error && !hasCause(*error) ? "error without a cause " + shown(*error) : "";
}

/// A refused array may leave a place empty.
std::size_t FaultyCall::mostEmptied() const {
    if (!memoryWasRefused()) {
        return 0;
    }
    const bool isAlone = !fault_.lasts && settings_.arrayBudget == 0;
    return isAlone ? 1 : std::numeric_limits<std::size_t>::max();
}

std::string FaultyCall::flawOfValue(const FaultyCall& usual) const {
    if (result_->error()) {
        return result_->output() ? "an error and a value" : "";
    }
    const bool readAsUsual = result_->warnings() == usual.result_->warnings();
    const auto emptied = emptiedPlaces(usual.result_->output(), result_->output());
    if (readAsUsual && emptied && *emptied <= mostEmptied()) {
        return {};
    }
    // A position that the system does not report is taken to be -1, and what is read there may be
    // anything.
    if (readAsUsual && !wasRefused(Request::tell)) {
        return "another value without a message";
    }
    return flawOf(result_->output(), defaultFields_);
}

std::string FaultyCall::flawOfReader() const {
    const auto* const error = result_ && result_->error() ? &*result_->error() : nullptr;
    if (result_ && error == nullptr) {
        return leftReader_ ? "a reader is left behind a value" : "";
    }
    const bool byTheModule = error != nullptr && *error != fatalErrorUnconverted();
    const bool mustBeLeft =
        byTheModule && (watch_.stage == Stage::delivering || error->identifier == kUnknown);
    // Exhausted memory may also be met on the way out, with the reader deleted or not.
    const bool mayBeLeft =
        mustBeLeft ||
        ((error == nullptr || *error == badAllocUnconverted()) && watch_.stage == Stage::reading) ||
        (error == nullptr && watch_.stage == Stage::delivering);
    if (leftReader_) {
        return mayBeLeft ? "" : "a reader is left behind";
    }
    return mustBeLeft ? "the reader is gone that could not be deleted safely" : "";
}

std::string FaultyCall::flawOfLeftovers(const FaultyCall& usual) const {
    const zephra::Leftovers& left = result_->leftovers();
    const auto& error = result_->error();
    zephra::Leftovers stated;
    const bool isNameLeft =
        error && (leftReader_ || (watch_.stage == Stage::beforeReading && triedToOpen_) ||
                  (watch_.stage == Stage::reading && *error == fatalErrorUnconverted()));
    if (isNameLeft) {
        stated.blocks = 1;
        stated.blockBytes = fileName_.size() + 1;
    }
    // Arrays that find no place are made all the same.
    const bool mayLeaveArrays =
        error ? watch_.stage == Stage::delivering
              : left.arrays <= usual.result_->leftovers().arrays || wasRefused(Request::tell);
    stated.arrays = mayLeaveArrays ? left.arrays : 0;
    if (left == stated) {
        return {};
    }
    return "left behind: " + std::to_string(left.blocks) + " blocks of " +
           std::to_string(left.blockBytes) + " bytes, " + std::to_string(left.arrays) + " arrays";
}

std::string FaultyCall::differenceFrom(const FaultyCall& other) const {
    if (!result_ || result_->warnings() != other.result_->warnings() ||
        result_->error() != other.result_->error()) {
        return "other messages";
    }
    if (result_->leftovers() != other.result_->leftovers()) {
        return "something else is left behind";
    }
    return emptiedPlaces(other.result_->output(), result_->output()) == 0 ? "" : "another value";
}

std::string FaultyCall::cleanUp() {
    result_.reset();
    if (leftReader_) {
        delete watch_.reader;
        leftReader_ = false;
    }
    if (Injection::streamsOut() != 0) {
        return std::to_string(Injection::streamsOut()) + " streams are open";
    }
    return Injection::blocksOut() == blocksBefore_ ? "" : "memory is left behind";
}

}  // namespace veltrace::test
