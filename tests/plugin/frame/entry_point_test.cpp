// How a function of the outside world is looked up.
#include "frame/entry_point.h"

#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

namespace pxk {
namespace {

std::vector<std::string> namesAsked;
bool isOffered = false;

int seven(int added) { return 7 + added; }

void* findSeven(const char* name) {
    namesAsked.emplace_back(name);
    return isOffered && name == std::string("Seven") ? reinterpret_cast<void*>(seven) : nullptr;
}

class EntryPoints : public testing::Test {
  protected:
    void SetUp() override {
        namesAsked.clear();
        isOffered = false;
    }
};

using Names = std::vector<std::string>;

TEST_F(EntryPoints, AreAskedForWhenFirstNeededAndThenKept) {
    isOffered = true;
    EntryPoint<int(int)> entry(findSeven, "Seven");
    EXPECT_EQ(namesAsked, Names{});
    EXPECT_EQ(entry(1), 8);
    EXPECT_EQ(entry(2), 9);
    EXPECT_EQ(entry.find(), seven);
    EXPECT_EQ(namesAsked, Names{"Seven"});
}

TEST_F(EntryPoints, ThatAreMissingYieldNothingAndAreAskedForOnce) {
    EntryPoint<int(int)> entry(findSeven, "Seven");
    EXPECT_EQ(entry(1), 0);
    isOffered = true;
    EXPECT_EQ(entry(1), 0);
    EXPECT_EQ(entry.find(), nullptr);
    EXPECT_EQ(namesAsked, Names{"Seven"});
}

TEST_F(EntryPoints, MayBeAskedForUntilTheyAreThere) {
    EntryPoint<int(int)> entry(findSeven, "Seven", WhenMissing::askAgain);
    EXPECT_EQ(entry(1), 0);
    EXPECT_EQ(entry.find(), nullptr);
    isOffered = true;
    EXPECT_EQ(entry(1), 8);
    EXPECT_EQ(entry(1), 8);
    EXPECT_EQ(namesAsked, (Names{"Seven", "Seven", "Seven"}));
}

TEST_F(EntryPoints, MayHaveAShorterName) {
    isOffered = true;
    EntryPoint<int(int)> entry(findSeven, "SevenInFull", WhenMissing::rememberNil, "Seven");
    EXPECT_EQ(entry(1), 8);
    EXPECT_EQ(entry(1), 8);
    EXPECT_EQ(namesAsked, (Names{"SevenInFull", "Seven"}));
}

// Each thread may be the one that asks, and none sees half of an answer.
TEST_F(EntryPoints, MayBeAskedForByManyThreadsAtOnce) {
    const auto find = [](const char*) { return reinterpret_cast<void*>(seven); };
    for (int round = 0; round < 50; ++round) {
        EntryPoint<int(int)> entry(find, "Seven");
        std::atomic<int> waiting = 3;
        std::atomic<int> wrong = 0;
        const auto ask = [&] {
            --waiting;
            while (waiting > 0) {
            }
            if (entry(1) != 8) ++wrong;
        };
        std::vector<std::jthread> threads;
        for (int i = 0; i < 3; ++i) threads.emplace_back(ask);
        threads.clear();
        ASSERT_EQ(wrong, 0);
    }
}

}  // namespace
}  // namespace pxk
