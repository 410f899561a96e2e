#include "names/inputs.h"

#include <gtest/gtest.h>
#include <utility>

#include "names/listed_names.h"

namespace veltrace::cli {
namespace {

using Numbered = std::vector<std::pair<std::uint64_t, std::string>>;

std::unique_ptr<NameSource> names(std::vector<std::string> names) {
    return std::make_unique<ArgumentNames>(std::move(names));
}

Inputs inputs(std::vector<std::vector<std::string>> lists,
              std::optional<Shard> shard = std::nullopt) {
    std::vector<std::unique_ptr<NameSource>> sources;
    for (auto& list : lists) {
        sources.push_back(names(std::move(list)));
    }
    return {std::move(sources), shard, std::nullopt};
}

Numbered allOf(Inputs& inputs) {
    Numbered all;
    std::uint64_t id = 0;
    std::string name;
    while (inputs.next(id, name) == Inputs::State::name) {
        all.emplace_back(id, name);
    }
    return all;
}

/// Returns `later` before its only name.
class SlowNames : public NameSource {
public:
    State next(std::string& name) override {
        name = "slow";
        return std::exchange(state_, state_ == State::later ? State::name : State::end);
    }
    [[nodiscard]] int descriptor() const override { return 42; }

private:
    State state_ = State::later;
};

TEST(Inputs, AreTheSourcesOneAfterTheOther) {
    Inputs all = inputs({{"b", "a"}, {}, {"c"}});
    EXPECT_EQ(allOf(all), (Numbered{{0, "b"}, {1, "a"}, {2, "c"}}));
    EXPECT_EQ(all.seen(), 3U);
    EXPECT_EQ(all.taken(), 3U);
}

TEST(Inputs, KeepTheirIdsInEveryShard) {
    const std::vector<std::string> list{"a", "b", "c", "d", "e", "f", "g", "h"};
    Numbered together;
    for (std::uint32_t index = 1; index <= 3; ++index) {
        Inputs part = inputs({list}, Shard{index, 3});
        for (auto& name : allOf(part)) {
            EXPECT_EQ(name.second, list.at(name.first));
            together.push_back(std::move(name));
        }
        EXPECT_EQ(part.seen(), list.size());
    }
    EXPECT_EQ(together.size(), list.size());
}

TEST(Inputs, WaitForASlowSourceBeforeTheNext) {
    std::vector<std::unique_ptr<NameSource>> sources;
    sources.push_back(std::make_unique<SlowNames>());
    sources.push_back(names({"quick"}));
    Inputs all(std::move(sources), std::nullopt, std::nullopt);
    std::uint64_t id = 0;
    std::string name;
    EXPECT_EQ(all.next(id, name), Inputs::State::later);
    EXPECT_EQ(all.descriptor(), 42);
    EXPECT_EQ(allOf(all), (Numbered{{0, "slow"}, {1, "quick"}}));
}

TEST(Inputs, WithoutNamesEndAtOnce) {
    Inputs none = inputs({});
    EXPECT_EQ(allOf(none), Numbered{});
    EXPECT_EQ(none.seen(), 0U);
    EXPECT_EQ(none.descriptor(), -1);
}

}  // namespace
}  // namespace veltrace::cli
