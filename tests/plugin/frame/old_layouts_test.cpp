// The shorter records of older hosts.
#include "frame/old_layouts.h"

#include <gtest/gtest.h>

#include <memory>
#include <numeric>
#include <vector>

#include "frame/host_services.h"

namespace pxk {
namespace {

using Words = std::unique_ptr<HostWord[]>;

// Records whose words count up from `first`, so that every copied word shows where it came from.
template <class Record>
std::vector<Record> counting(std::size_t count, HostWord first) {
    std::vector<Record> records(count);
    auto* words = reinterpret_cast<HostWord*>(records.data());
    std::iota(words, words + count * wordCount<Record>, first);
    return records;
}

std::vector<HostWord> countingWords(std::size_t count, HostWord first) {
    std::vector<HostWord> words(count);
    std::iota(words.begin(), words.end(), first);
    return words;
}

const HostWord* array(HostWord word) { return reinterpret_cast<const HostWord*>(word); }

// `records` old records of `kept` words, cut from new ones of `length` words that count up from `first`.
void expectCut(HostWord word, std::size_t records, std::size_t length, std::size_t kept, HostWord first) {
    const HostWord* words = array(word);
    ASSERT_NE(words, nullptr);
    for (std::size_t record = 0; record < records; ++record) {
        for (std::size_t i = 0; i < kept; ++i) {
            EXPECT_EQ(words[record * kept + i], first + static_cast<HostWord>(record * length + i));
        }
    }
    delete[] words;
}

class OldLayouts : public testing::Test {
  protected:
    void SetUp() override { CurrentREALControlVersion = 9; }
    void TearDown() override { CurrentREALControlVersion = before_; }

  private:
    std::int32_t before_ = CurrentREALControlVersion;
};

TEST_F(OldLayouts, PropertiesKeepTheirFirstTenWords) {
    const auto properties = counting<REALproperty>(3, 100);
    expectCut(reinterpret_cast<HostWord>(FixProperties(properties.data(), 3)), 3, 12, 10, 100);
}

TEST_F(OldLayouts, PropertiesOfNothingAreNil) {
    const REALproperty property;
    EXPECT_EQ(FixProperties(nullptr, 3), nullptr);
    EXPECT_EQ(FixProperties(&property, 0), nullptr);
    EXPECT_EQ(FixProperties(&property, -1), nullptr);
}

TEST_F(OldLayouts, SizesOf2To31BytesAreRefused) {
    const REALproperty property;
    constexpr auto tooMany = static_cast<HostWord>((std::uint64_t{1} << 31) / (10 * sizeof(HostWord)) + 1);
    EXPECT_EQ(FixProperties(&property, tooMany), nullptr);
}

TEST_F(OldLayouts, ClassKeepsTwentyFiveWords) {
    auto properties = counting<REALproperty>(2, 100);
    auto methods = counting<REALmethodDefinition>(3, 200);
    auto events = countingWords(4, 300);
    auto constants = countingWords(10, 400);
    auto sharedProperties = counting<REALproperty>(1, 500);
    auto sharedMethods = counting<REALmethodDefinition>(2, 600);
    int eventInstances = 0;
    int bindDescriptions = 0;
    int constructor = 0;
    int destructor = 0;
    const REALclassDefinition definition = {
        .version = 13,
        .name = "Name",
        .superName = "Super",
        .dataSize = 64,
        .hostWord = 7,
        .constructor = &constructor,
        .destructor = &destructor,
        .properties = properties.data(),
        .propertyCount = 2,
        .methods = methods.data(),
        .methodCount = 3,
        .events = events.data(),
        .eventCount = 2,
        .eventInstances = &eventInstances,
        .eventInstanceCount = 5,
        .interfaces = "Interfaces",
        .bindDescriptions = &bindDescriptions,
        .bindDescriptionCount = 6,
        .constants = constants.data(),
        .constantCount = 2,
        .flags = 4,
        .sharedProperties = sharedProperties.data(),
        .sharedPropertyCount = 1,
        .sharedMethods = sharedMethods.data(),
        .sharedMethodCount = 2,
        .reserved = {1, 2, 3, 4},
    };
    const Words old(FixClass(&definition));
    ASSERT_NE(old, nullptr);
    EXPECT_EQ(old[0], 9);
    EXPECT_EQ(old[1], reinterpret_cast<HostWord>(definition.name));
    EXPECT_EQ(old[2], reinterpret_cast<HostWord>(definition.superName));
    EXPECT_EQ(old[3], 64);
    EXPECT_EQ(old[4], 7);
    EXPECT_EQ(old[5], reinterpret_cast<HostWord>(&constructor));
    EXPECT_EQ(old[6], reinterpret_cast<HostWord>(&destructor));
    expectCut(old[7], 2, 12, 10, 100);
    EXPECT_EQ(old[8], 2);
    expectCut(old[9], 3, 6, 4, 200);
    EXPECT_EQ(old[10], 3);
    expectCut(old[11], 2, 2, 2, 300);
    EXPECT_EQ(old[12], 2);
    EXPECT_EQ(old[13], reinterpret_cast<HostWord>(&eventInstances));
    EXPECT_EQ(old[14], 5);
    EXPECT_EQ(old[15], reinterpret_cast<HostWord>(definition.interfaces));
    EXPECT_EQ(old[16], 0) << "bind descriptions are not carried over";
    EXPECT_EQ(old[17], 0);
    expectCut(old[18], 2, 5, 3, 400);
    EXPECT_EQ(old[19], 2);
    EXPECT_EQ(old[20], 4);
    expectCut(old[21], 1, 12, 10, 500);
    EXPECT_EQ(old[22], 1);
    expectCut(old[23], 2, 6, 4, 600);
    EXPECT_EQ(old[24], 2);
}

TEST_F(OldLayouts, EmptyClassHasNoArrays) {
    const REALclassDefinition definition = {.version = 13, .name = "Name"};
    const Words old(FixClass(&definition));
    for (const std::size_t place : {7U, 9U, 11U, 13U, 16U, 18U, 21U, 23U}) {
        EXPECT_EQ(old[place], 0) << place;
        EXPECT_EQ(old[place + 1], 0) << place;
    }
}

TEST_F(OldLayouts, ModuleIsFourWordsAndFourArrays) {
    auto methods = counting<REALmethodDefinition>(2, 100);
    auto constants = countingWords(15, 200);
    auto properties = counting<REALproperty>(2, 300);
    auto sixWords = countingWords(12, 400);
    auto sevenWords = countingWords(21, 500);
    const REALmoduleDefinition module = {
        .version = 13,
        .name = "Module",
        .methods = methods.data(),
        .methodCount = 2,
        .constants = constants.data(),
        .constantCount = 3,
        .properties = properties.data(),
        .propertyCount = 2,
        .sixWordRecords = sixWords.data(),
        .sixWordRecordCount = 2,
        .sevenWordRecords = sevenWords.data(),
        .sevenWordRecordCount = 3,
    };
    const Words old(FixModule(&module));
    ASSERT_NE(old, nullptr);
    EXPECT_EQ(old[0], 9);
    EXPECT_EQ(old[1], reinterpret_cast<HostWord>(module.name));
    expectCut(old[2], 2, 6, 4, 100);
    EXPECT_EQ(old[3], 2);
    expectCut(old[4], 3, 5, 3, 200);
    EXPECT_EQ(old[5], 3);
    expectCut(old[6], 2, 12, 10, 300);
    EXPECT_EQ(old[7], 2);
    expectCut(old[8], 2, 6, 4, 400);
    EXPECT_EQ(old[9], 2);
    expectCut(old[10], 3, 7, 5, 500);
    EXPECT_EQ(old[11], 3);
}

}  // namespace
}  // namespace pxk
