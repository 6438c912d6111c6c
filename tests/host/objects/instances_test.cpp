// Instances of a plugin's classes, and their properties.

#include <algorithm>
#include <cstdint>

#include "host/host_test_support.h"

namespace pxktest {
namespace {

class InstanceTest : public DoubleTest {
  protected:
    void SetUp() override { openDouble(); }

    Value get(const Ref<Instance>& instance, std::string_view name) { return host().property(*instance, name); }
    void set(const Ref<Instance>& instance, std::string_view name, const Value& value) {
        host().setProperty(*instance, name, value);
    }
};

TEST_F(InstanceTest, DataIsAlignedAndZeroButForTheConstructor) {
    const Ref<Instance> instance = host().newInstance("CounterPXK");
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(instance->data()) % 16, 0u);
    EXPECT_EQ(
        reinterpret_cast<std::byte*>(instance->handle()) + host().registry().findClass("CounterPXK")->instanceOffset,
        instance->data());
    EXPECT_EQ(get(instance, "Ratio").real, 0.5);
    EXPECT_EQ(get(instance, "Count").integer, 0);
    EXPECT_FALSE(get(instance, "Source").object);
    std::byte* const rest = instance->data() + sizeof(double);
    EXPECT_TRUE(std::all_of(rest, instance->data() + instance->dataSize(),
                            [](std::byte byte) { return byte == std::byte{0}; }));
}

TEST_F(InstanceTest, FieldsOfEveryType) {
    const Ref<Instance> instance = host().newInstance("counterpxk");
    set(instance, "Count", Value::ofInteger(-5));
    set(instance, "Ratio", Value::ofReal(2.25));
    set(instance, "Shade", Value::ofColor(0xABCDEF));
    set(instance, "Flag", Value::ofBoolean(true));
    EXPECT_EQ(get(instance, "count").integer, -5);
    EXPECT_EQ(get(instance, "Ratio").real, 2.25);
    EXPECT_EQ(get(instance, "Shade").color, 0xABCDEFu);
    EXPECT_TRUE(get(instance, "Flag").boolean);
    set(instance, "Ratio", Value::ofInteger(3));
    EXPECT_EQ(get(instance, "Ratio").real, 3.0);
}

TEST_F(InstanceTest, AccessorsGetTheInstanceAndTheParameter) {
    const Ref<Instance> instance = host().newInstance("CounterPXK");
    EXPECT_EQ(get(instance, "Scale").real, 7.0) << "0 in the instance and the parameter 7";
    set(instance, "Scale", Value::ofReal(10.5));
    EXPECT_EQ(get(instance, "Scale").real, 10.5);
    set(instance, "Hidden", Value::ofInteger(4));
    EXPECT_EQ(get(instance, "Hidden").integer, 4);
}

TEST_F(InstanceTest, AccessorsMayRaise) {
    const Ref<Instance> instance = host().newInstance("CounterPXK");
    EXPECT_THROW(set(instance, "Scale", Value::ofReal(-1)), HostException);
}

TEST_F(InstanceTest, ObjectFieldsAreCounted) {
    const Ref<Picture> first = Picture::console(1, 1);
    const Ref<Picture> second = Picture::console(1, 1);
    const Ref<Instance> instance = host().newInstance("CounterPXK");
    set(instance, "Source", Value::ofObject(ValueKind::picture, first));
    EXPECT_EQ(first->references(), 2);
    set(instance, "Source", Value::ofObject(ValueKind::picture, first));
    EXPECT_EQ(first->references(), 2);
    {
        const Value read = get(instance, "Source");
        EXPECT_EQ(read.object.get(), first.get());
        EXPECT_EQ(first->references(), 3);
        const Value copy = get(instance, "SourceCopy");
        EXPECT_EQ(copy.object.get(), first.get());
        EXPECT_EQ(first->references(), 4);
    }
    set(instance, "Source", Value::ofObject(ValueKind::picture, second));
    EXPECT_EQ(first->references(), 1);
    EXPECT_EQ(second->references(), 2);
    set(instance, "Source", Value::ofObject(ValueKind::picture, nullptr));
    EXPECT_EQ(second->references(), 1);
}

TEST_F(InstanceTest, DestructorRunsAtTheLastRelease) {
    const Ref<Picture> picture = Picture::console(1, 1);
    Ref<Instance> instance = host().newInstance("CounterPXK");
    set(instance, "Source", Value::ofObject(ValueKind::picture, picture));
    Ref<Instance> second = instance;
    instance = nullptr;
    EXPECT_EQ(picture->references(), 2);
    second = nullptr;
    EXPECT_EQ(picture->references(), 1);
}

TEST_F(InstanceTest, DestructorDoesNotRunOnceThePluginIsGone) {
    const Ref<Instance> instance = host().newInstance("CounterPXK");
    EXPECT_THAT(closeAndTakeProblems(), testing::ElementsAre("leaked: instance 1 (CounterPXK): 1 reference"));
    openDouble();
}

TEST_F(InstanceTest, MistakesAreExplained) {
    const Ref<Instance> instance = host().newInstance("CounterPXK");
    EXPECT_EQ(errorOf([&] { set(instance, "Count", Value::ofReal(1)); }),
              "property CounterPXK.Count takes a Integer, not a double");
    EXPECT_EQ(errorOf([&] { set(instance, "SourceCopy", Value::ofObject(ValueKind::picture, nullptr)); }),
              "property CounterPXK.SourceCopy cannot be assigned; it has no setter");
    EXPECT_EQ(errorOf([&] { host().newInstance("CuonterPXK"); }),
              "the plugin has no class \"CuonterPXK\"; did you mean CounterPXK?");
}

TEST_F(InstanceTest, MadeByThePluginsOwnRequest) {
    auto* const service = reinterpret_cast<REALobjectStruct* (*)(const char*)>(host().resolve("PluginNewInstance"));
    const Ref<Instance> instance = Ref<Instance>::adopt(fromHandle<Instance>(service("CounterPXK"), "test"));
    EXPECT_EQ(instance->className(), "CounterPXK");
    EXPECT_EQ(get(instance, "Ratio").real, 0.5);
}

}  // namespace
}  // namespace pxktest
