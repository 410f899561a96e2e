// A thread may exit while the module reads on it.
#include <gtest/gtest.h>
#include <pthread.h>

#include "entry/guarded_read.h"
#include "support/memory_file.h"
#include "tagfile/classic_tiff_tag_file.h"

namespace veltrace::test {

using namespace module;

namespace {

class ThreadEndingReader : public ClassicTiffTagFile {
public:
    using ClassicTiffTagFile::ClassicTiffTagFile;

    void readAll() override {
        called_ = true;
        pthread_exit(nullptr);
    }
    [[nodiscard]] bool called() const { return called_; }

private:
    bool called_ = false;
};

struct Read {
    ThreadEndingReader reader;
    bool returned = false;
};

TEST(GuardedRead, LetsTheThreadExitDuringTheRead) {
    const MemoryFile file(bytesOf("kiln"));
    Read read{ThreadEndingReader(file.name().c_str())};
    const auto body = [](void* argument) -> void* {
        auto* const running = static_cast<Read*>(argument);
        readAllGuarded(&running->reader, nullptr);
        running->returned = true;
        return nullptr;
    };
    pthread_t thread{};
    ASSERT_EQ(pthread_create(&thread, nullptr, body, &read), 0);
    ASSERT_EQ(pthread_join(thread, nullptr), 0);
    EXPECT_TRUE(read.reader.called());
    EXPECT_FALSE(read.returned);
}

}  // namespace

}  // namespace veltrace::test
