#include "readers/module_count.h"

#include <array>
#include <vector>

#include "entry/create_reader.h"
#include "ifd/ifd_set.h"
#include "tag/data_type.h"
#include "tagfile/tag_file.h"

namespace veltrace::bench {

using namespace module;

namespace {

/// Counts chains; those inside chains wait in a list, since they may nest to any depth.
class ChainCount {
public:
    Delivered count(const IFDSet* mainChain) {
        await(mainChain);
        while (!waiting_.empty()) {
            const IFDSet& chain = *waiting_.back();
            waiting_.pop_back();
            for (const IFD& ifd : chain.directories()) {
                countDirectory(ifd);
            }
        }
        return delivered_;
    }

private:
    void await(const IFDSet* chain) {
        if (chain != nullptr) {
            waiting_.push_back(chain);
        }
    }

    void countDirectory(const IFD& ifd) {
        ++delivered_.directories;
        for (const double side : {ifd.width(), ifd.height()}) {
            delivered_.entries += side != 0 ? 1 : 0;
            delivered_.values += side != 0 ? 1 : 0;
        }
        countTags(ifd.knownTags());
        countTags(ifd.unknownTags());
    }

    template <class Tags>
    void countTags(const Tags& tags) {
        for (const TiffTag& tag : tags) {
            countTag(tag);
        }
    }

    void countTag(const TiffTag& tag) {
        const DataType type{tag.dataType()};
        if (type == DataType::noType) {
            return;  // a fallback
        }
        ++delivered_.entries;
        if (tag.subDirectory() != nullptr) {
            await(tag.subDirectory());
        } else if (type != DataType::ascii) {
            delivered_.values += tag.count();
        }
    }

    Delivered delivered_;
    std::vector<const IFDSet*> waiting_;
};

/// Owns a reader whatever ends the call. Closing what was opened for reading does not fail.
Delivered countFile(const char* path) {
    const std::unique_ptr<TagFile> reader(createReader(path));
    reader->readAll();
    return ChainCount().count(reader->ifdSet());
}

}  // namespace

zephra::Settings endingSettings() {
    zephra::Settings settings;
    settings.blockBudget = 2'000'000;
    return settings;
}

Delivered countByModule(const std::string& path, const zephra::Settings& settings) {
    Delivered delivered = refusal();
    const auto entryPoint = [&](int, qvArray*[], int, const qvArray*[]) {
        delivered = countFile(path.c_str());
    };
    static_cast<void>(zephra::Host(settings).call(entryPoint, std::array<zephra::Argument, 0>{}));
    return delivered;
}

}  // namespace veltrace::bench
