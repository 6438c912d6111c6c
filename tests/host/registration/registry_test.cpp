// Registration records in every layout, and how they read as text.

#include <array>

#include "host/host_test_support.h"

namespace pxktest {
namespace {

using pxk::HostWord;
using testing::ElementsAre;

template <class T>
HostWord word(T* pointer) {
    return reinterpret_cast<HostWord>(pointer);
}

void functionA() {}
void functionB() {}
HostWord functionWord(void (*function)()) { return reinterpret_cast<HostWord>(function); }

class RegistryTest : public ServiceTest {
  protected:
    void SetUp() override { openBare(); }

    template <std::size_t size>
    static void registerWords(const char* name, std::array<HostWord, size>& words) {
        service<void(void*)>(name)(words.data());
    }
};

const pxk::REALattribute attribute{"Deprecated", "\"Other\""};

TEST_F(RegistryTest, VersionsDeclared) {
    service<void(std::int32_t)>("RegisterPluginVersion")(13);
    EXPECT_THAT(host().registry().declaredVersions(), ElementsAre(13));
}

TEST_F(RegistryTest, GlobalMethodHasSixWordsOnEveryHost) {
    service<void(std::int32_t)>("RegisterPluginVersion")(9);
    std::array<HostWord, 6> words{functionWord(functionA), 0, word("F as integer"), 4, 1, word(&attribute)};
    registerWords("PluginRegisterMethod", words);
    ASSERT_EQ(host().registry().globalMethods().size(), 1u);
    const MethodRecord& method = host().registry().globalMethods()[0];
    EXPECT_THAT(method.words, testing::ElementsAreArray(words));
    EXPECT_EQ(method.function, reinterpret_cast<void*>(functionA));
    EXPECT_EQ(method.declaration, "F as integer");
    EXPECT_EQ(method.flags, 4);
    EXPECT_THAT(method.attributes, ElementsAre(testing::Pair("Deprecated", "\"Other\"")));
}

std::array<HostWord, 8> oldMethods{functionWord(functionA), 0, 0, 16, functionWord(functionB), 0, 0, 17};

TEST_F(RegistryTest, OldModule) {
    oldMethods[2] = word("F(extends ref as Picture) as integer");
    oldMethods[6] = word("G as integer");
    std::array<HostWord, 12> words{9, word("ModulePXK"), word(oldMethods.data()), 2};
    registerWords("PluginRegisterModule", words);
    const ModuleRecord& module = host().registry().modules()[0];
    EXPECT_EQ(module.words.size(), 12u);
    EXPECT_EQ(module.name, "ModulePXK");
    ASSERT_EQ(module.methods.size(), 2u);
    EXPECT_EQ(module.methods[1].words.size(), 4u);
    EXPECT_EQ(module.methods[1].declaration, "G as integer");
    EXPECT_EQ(module.methods[1].function, reinterpret_cast<void*>(functionB));
    EXPECT_EQ(module.methods[1].flags, 17);
    EXPECT_TRUE(module.methods[1].attributes.empty());
}

TEST_F(RegistryTest, NewModule) {
    std::array<HostWord, 12> methods{functionWord(functionA), 0, word("F as integer"), 20, 0, 0,
                                     functionWord(functionB), 0, word("G as integer"), 20, 0, 0};
    std::array<HostWord, 24> words{10, word("ModulePXK"), word(methods.data()), 2};
    registerWords("PluginRegisterModule", words);
    const ModuleRecord& module = host().registry().modules()[0];
    EXPECT_EQ(module.words.size(), 24u);
    ASSERT_EQ(module.methods.size(), 2u);
    EXPECT_EQ(module.methods[1].words.size(), 6u);
    EXPECT_EQ(module.methods[1].declaration, "G as integer");
}

TEST_F(RegistryTest, OldClass) {
    std::array<HostWord, 20> properties{0,
                                        word("One"),
                                        word("Integer"),
                                        6,
                                        -1,
                                        -1,
                                        24,
                                        0,
                                        0,
                                        0,
                                        0,
                                        word("Two"),
                                        word("Double"),
                                        6,
                                        functionWord(functionA),
                                        0,
                                        0};
    oldMethods[2] = word("Close");
    oldMethods[6] = word("Run as boolean");
    std::array<HostWord, 25> words{};
    words[0] = 9;
    words[1] = word("ThingPXK");
    words[3] = 64;
    words[7] = word(properties.data());
    words[8] = 2;
    words[9] = word(oldMethods.data());
    words[10] = 2;
    words[20] = 0x80;
    registerWords("PluginRegisterClass", words);
    const ClassRecord& record = host().registry().classes()[0];
    EXPECT_EQ(record.words.size(), 25u);
    EXPECT_EQ(record.words[4], 0) << "as passed";
    EXPECT_EQ(words[4], record.instanceOffset) << "written by the host";
    EXPECT_EQ(record.name, "ThingPXK");
    EXPECT_EQ(record.dataSize, 64);
    EXPECT_EQ(record.flags, 0x80);
    ASSERT_EQ(record.properties.size(), 2u);
    EXPECT_EQ(record.properties[0].words.size(), 10u);
    EXPECT_TRUE(record.properties[0].isField());
    EXPECT_EQ(record.properties[0].parameter, 24);
    EXPECT_EQ(record.properties[1].name, "Two");
    EXPECT_FALSE(record.properties[1].isField());
    ASSERT_EQ(record.methods.size(), 2u);
    EXPECT_EQ(record.methods[1].declaration, "Run as boolean");
}

TEST_F(RegistryTest, NewClassWithSharedMembers) {
    std::array<HostWord, 12> property{0, word("One"), word("Integer"), 6, -1, -1, 24};
    std::array<HostWord, 6> method{functionWord(functionA), 0, word("Make as picture"), 4, 0, 0};
    std::array<HostWord, 29> words{};
    words[0] = 13;
    words[1] = word("ThingPXK");
    words[21] = word(property.data());
    words[22] = 1;
    words[23] = word(method.data());
    words[24] = 1;
    registerWords("PluginRegisterClass", words);
    const ClassRecord& record = host().registry().classes()[0];
    EXPECT_EQ(record.words.size(), 29u);
    EXPECT_EQ(record.sharedProperties.at(0).name, "One");
    EXPECT_EQ(record.sharedMethods.at(0).declaration, "Make as picture");
}

TEST_F(RegistryTest, EveryClassHasItsOwnAlignedOffset) {
    std::array<HostWord, 29> first{13, word("FirstPXK")};
    std::array<HostWord, 29> second{13, word("SecondPXK")};
    registerWords("PluginRegisterClass", first);
    registerWords("PluginRegisterClass", second);
    EXPECT_NE(first[4], second[4]);
    for (const HostWord offset : {first[4], second[4]}) {
        EXPECT_GE(offset, static_cast<HostWord>(sizeof(pxk::REALobjectHeader)));
        EXPECT_EQ(offset % 16, 0);
    }
}

TEST_F(RegistryTest, CountsThatAreNotPositiveSkipTheirArrays) {
    std::array<HostWord, 29> words{13, word("ThingPXK")};
    words[7] = 0;
    words[8] = 5;
    words[9] = word(oldMethods.data());
    words[10] = -1;
    registerWords("PluginRegisterClass", words);
    EXPECT_TRUE(host().registry().classes()[0].properties.empty());
    EXPECT_TRUE(host().registry().classes()[0].methods.empty());
}

TEST_F(RegistryTest, ClassesAreFoundInAnyLetterCase) {
    std::array<HostWord, 29> words{13, word("ThingPXK")};
    registerWords("PluginRegisterClass", words);
    EXPECT_NE(host().registry().findClass("thingpxk"), nullptr);
    EXPECT_EQ(host().registry().findClass("Thing"), nullptr);
    EXPECT_NE(service<void*(const char*)>("pluginObjectType")("ThingPXK"), nullptr);
}

TEST_F(RegistryTest, InspectShowsEveryWordOfEveryRecord) {
    service<void(std::int32_t)>("RegisterPluginVersion")(9);
    std::array<HostWord, 10> property{0, word("One"), word("Integer"), 6, -1, -1, 24};
    std::array<HostWord, 4> method{functionWord(functionA), 0, word("Run as boolean"), 0x10};
    std::array<HostWord, 25> record{};
    record[0] = 9;
    record[1] = word("ThingPXK");
    record[3] = 64;
    record[5] = functionWord(functionA);
    record[7] = word(property.data());
    record[8] = 1;
    record[9] = word(method.data());
    record[10] = 1;
    record[20] = 4;
    registerWords("PluginRegisterClass", record);
    std::array<HostWord, 6> global{functionWord(functionB), 0, word("F as integer"), 4, 1, word(&attribute)};
    registerWords("PluginRegisterMethod", global);

    EXPECT_EQ(host().inspect(), R"(record version 9
class ThingPXK: 25 words
  version                 9
  name                    "ThingPXK"
  super name              nil
  data size               64
  host word               0
  constructor             set
  destructor              nil
  properties              set
  property count          1
  methods                 set
  method count            1
  events                  nil
  event count             0
  event instances         nil
  event instance count    0
  interfaces              nil
  bind descriptions       nil
  bind description count  0
  constants               nil
  constant count          0
  flags                   0x4
  shared properties       nil
  shared property count   0
  shared methods          nil
  shared method count     0
  property 1 of 1: 10 words
    group                   nil
    name                    "One"
    type                    "Integer"
    flags                   0x6
    getter                  all ones
    setter                  all ones
    parameter               24
    reserved 1              0
    reserved 2              0
    reserved 3              0
  method 1 of 1: 4 words
    function                set
    setter                  nil
    declaration             "Run as boolean"
    flags                   0x10
global method: 6 words
  function                set
  setter                  nil
  declaration             "F as integer"
  flags                   0x4
  attribute count         1
  attributes              set
    Deprecated = "Other"
)");
}

TEST_F(RegistryTest, InspectOfAModule) {
    std::array<HostWord, 12> words{9, word("ModulePXK")};
    registerWords("PluginRegisterModule", words);
    EXPECT_THAT(host().inspect(), testing::StartsWith("module ModulePXK: 12 words\n"
                                                      "  version                 9\n"
                                                      "  name                    \"ModulePXK\"\n"
                                                      "  methods                 nil\n"
                                                      "  method count            0\n"
                                                      "  reserved 1              0\n"));
    EXPECT_THAT(host().inspect(), testing::EndsWith("  reserved 8              0\n"));
}

}  // namespace
}  // namespace pxktest
