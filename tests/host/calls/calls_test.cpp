// Calls of members: through typed function pointers, and by name through libffi.

#include "host/calls/caller.h"
#include "host/host_test_support.h"

namespace pxktest {
namespace {

using testing::ElementsAre;

class TypedCallTest : public DoubleTest {
  protected:
    void SetUp() override {
        openDouble();
        picture_ = Picture::console(3, 2);
    }
    void TearDown() override {
        picture_ = nullptr;
        DoubleTest::TearDown();
    }

    Ref<Picture> picture_;
};

TEST_F(TypedCallTest, PlainTypes) {
    EXPECT_EQ(host().invoke<int>("PlacePXK(x as integer, y as integer = 5) as integer", picture_, 3, 4), 304);
    EXPECT_EQ(host().invoke<double>("EchoPXK(value as double) as double", picture_, -2.5), -2.5);
    EXPECT_TRUE(host().invoke<bool>("EchoPXK(value as boolean) as boolean", picture_, true));
    EXPECT_FALSE(host().invoke<bool>("EchoPXK(value as boolean) as boolean", picture_, false));
    EXPECT_EQ(host().invoke<std::uint32_t>("EchoPXK(value as color) as color", picture_, 0xFFAABBu), 0xFFAABBu);
    EXPECT_EQ(
        host().invoke<double>("SumPXK(a as integer, b as double, c as boolean, d as color, e as UInt32) as double", -1,
                              0.25, true, 16u, 0x80000000u),
        16.25 + 2147483648.0);
}

TEST_F(TypedCallTest, Objects) {
    {
        const auto result = host().invoke<Ref<Picture>>("SelfPXK as picture", picture_);
        EXPECT_EQ(result, picture_);
        EXPECT_EQ(picture_->references(), 2);
    }
    EXPECT_EQ(picture_->references(), 1);
    const Ref<String> text = String::make("hello");
    EXPECT_EQ(host().invoke<Ref<String>>("EchoPXK(value as string) as string", picture_, text), text);
    EXPECT_FALSE(host().invoke<Ref<String>>("EchoPXK(value as string) as string", picture_, nullptr));
    EXPECT_EQ(host().invoke<Ref<Picture>>("EchoPXK(value as picture) as picture", picture_.get(), picture_.get()),
              picture_);
    EXPECT_FALSE(host().invoke<Ref<Picture>>("EchoPXK(value as picture) as picture", picture_, Ref<Picture>()));
}

TEST_F(TypedCallTest, ByRef) {
    const char* const declaration =
        "VariablesPXK(byref count as integer, byref half as double, byref flag as boolean, byref block as memoryblock)";
    int count = 41;
    double half = 3;
    bool flag = false;
    Ref<MemoryBlock> block;
    host().invoke<void>(declaration, picture_, byRef(count), byRef(half), byRef(flag), byRef(block));
    EXPECT_EQ(count, 42);
    EXPECT_EQ(half, 1.5);
    EXPECT_TRUE(flag);
    ASSERT_TRUE(block);
    EXPECT_EQ(block->size(), 4);
    EXPECT_EQ(block->references(), 1);

    const MemoryBlock* const kept = block.get();
    host().invoke<void>(declaration, picture_, byRef(count), byRef(half), byRef(flag), byRef(block));
    EXPECT_EQ(block.get(), kept);
    EXPECT_EQ(block->references(), 1);
    EXPECT_FALSE(flag);
}

TEST_F(TypedCallTest, Setters) {
    host().assign("LevelPXK(index as integer) as integer", picture_, 2, 77);
    EXPECT_EQ(host().invoke<int>("LevelPXK(index as integer) as integer", picture_, 2), 77);
}

TEST_F(TypedCallTest, BoundOnceCalledOften) {
    const auto place = host().member<int(Picture*, int, int)>("PlacePXK(x as integer, y as integer = 5) as integer");
    for (int i = 0; i < 10; ++i) EXPECT_EQ(place(picture_.get(), i, i), 101 * i);
}

TEST_F(TypedCallTest, ClassMethods) {
    const Ref<Instance> instance = host().newInstance("CounterPXK");
    EXPECT_EQ(host().invoke<int>("CounterPXK.Add(amount as integer = 1) as integer", instance, 5), 5);
    EXPECT_EQ(host().invoke<int>("Add(amount as integer = 1) as integer", instance, -2), 3);
    host().assign("Share(part as UInt32) as double", instance, 4u, 2.5);
    EXPECT_EQ(host().invoke<double>("Share(part as UInt32) as double", instance, 2u), 5.0);
}

TEST_F(TypedCallTest, ExceptionsAreThrownAndTheResultGivenBack) {
    try {
        host().invoke<Ref<Picture>>("RaisePXK as picture", picture_);
        FAIL() << "nothing thrown";
    } catch (const HostException& exception) {
        EXPECT_EQ(exception.className, "OutOfBoundsException");
        EXPECT_EQ(exception.message, "too far: \u00FC");
        EXPECT_EQ(exception.errorNumber, 3);
        EXPECT_STREQ(exception.what(), "OutOfBoundsException: too far: \u00FC");
    }
    EXPECT_EQ(picture_->references(), 1);
    EXPECT_EQ(host().exceptionsRaised(), 1);
    EXPECT_THROW(host().invoke<void>("RaiseOnlyPXK", picture_), HostException);
}

TEST_F(TypedCallTest, RaisedButNeverThrownIsAProblem) {
    reinterpret_cast<void (*)(void*)>(host().function("RaiseOnlyPXK"))(picture_->handle());
    picture_ = nullptr;
    EXPECT_THAT(closeAndTakeProblems(),
                testing::Contains("exception 2 (NilObjectException) was raised and never thrown"));
}

TEST_F(TypedCallTest, WrongTypesAreRefused) {
    const char* const echo = "EchoPXK(value as double) as double";
    EXPECT_EQ(errorOf([&] { host().invoke<double>(echo, picture_, 1); }),
              "\"EchoPXK(value as double) as double\": argument 2 (its object counted) is of another C++ type than "
              "declared");
    EXPECT_EQ(errorOf([&] { host().invoke<int>(echo, picture_, 1.0); }),
              "\"EchoPXK(value as double) as double\": the result is of another C++ type than declared");
    EXPECT_EQ(errorOf([&] { host().invoke<double>(echo, picture_); }),
              "\"EchoPXK(value as double) as double\" takes 2 arguments with its object, not 1");
    EXPECT_EQ(errorOf([&] { host().invoke<double>(echo, MemoryBlock::make(1), 1.0); }),
              "\"EchoPXK(value as double) as double\": argument 1 (its object counted) is of another C++ type than "
              "declared");
    EXPECT_EQ(errorOf([&] { host().assign("SelfPXK as picture", picture_, picture_); }),
              "\"SelfPXK as picture\" has no setter");
    EXPECT_THROW(host().invoke<void>("SelfPXK as picture", picture_), HostError);
}

TEST_F(TypedCallTest, MisbehaviourIsFoundOut) {
    host().invoke<void>("KeepReferencePXK", picture_);
    host().invoke<void>("ReleaseTooOftenPXK", picture_);
    host().invoke<void>("LeakBlockPXK", picture_);
    host().invoke<void>("LockDescriptionPXK", picture_);
    picture_ = nullptr;
    EXPECT_THAT(closeAndTakeProblems(),
                ElementsAre("memory block 2 (3 bytes) was released more often than taken",
                            "picture 1 (3 x 2) was left locked 1 times", "leaked: picture 1 (3 x 2): 1 reference",
                            "leaked: memory block 3 (5 bytes): 1 reference"));
}

TEST_F(TypedCallTest, UnlockWithoutLockIsFoundOut) {
    host().invoke<void>("LockDescriptionPXK", picture_);
    host().invoke<void>("UnlockDescriptionPXK", picture_);
    host().invoke<void>("UnlockDescriptionPXK", picture_);
    EXPECT_THAT(host().accounting().takeProblems(), ElementsAre("picture 1 (3 x 2) was unlocked without a lock"));
}

// ---- by name ----

class NamedCallTest : public TypedCallTest {
  protected:
    void SetUp() override {
        TypedCallTest::SetUp();
        if (!canCallByName()) GTEST_SKIP() << "this build has no libffi";
    }
    Object* self() { return picture_.get(); }
};

TEST_F(NamedCallTest, EveryKindThereAndBack) {
    EXPECT_EQ(host().call(self(), "Echo", {Value::ofInteger(-3)}).integer, -3);
    EXPECT_EQ(host().call(self(), "echo", {Value::ofReal(0.125)}).real, 0.125);
    EXPECT_TRUE(host().call(self(), "ECHO", {Value::ofBoolean(true)}).boolean);
    EXPECT_EQ(host().call(self(), "EchoPXK", {Value::ofColor(0xFFFEFD)}).color, 0xFFFEFDu);
    const Ref<String> text = String::make("x");
    EXPECT_EQ(host().call(self(), "Echo", {Value::ofObject(ValueKind::string, text)}).object.get(), text.get());
    const Value nil = host().call(self(), "Echo", {Value::ofObject(ValueKind::picture, nullptr)});
    EXPECT_EQ(nil.kind, ValueKind::picture);
    EXPECT_FALSE(nil.object);
}

TEST_F(NamedCallTest, NegativeAndLargeIntegersKeepTheirBits) {
    EXPECT_EQ(host().call(self(), "Echo", {Value::ofInteger(INT32_MIN)}).integer, INT32_MIN);
    EXPECT_EQ(host().call(self(), "Echo", {Value::ofColor(0xFFFFFFFFu)}).color, 0xFFFFFFFFu);
}

TEST_F(NamedCallTest, DefaultsAndConversions) {
    EXPECT_EQ(host().call(self(), "Place", {Value::ofInteger(2)}).integer, 205);
    EXPECT_EQ(host().call(self(), "Place", {Value::ofInteger(2), Value()}).integer, 205);
    EXPECT_EQ(host().call(self(), "Place", {Value::ofInteger(2), Value::ofColor(7)}).integer, 207);
    EXPECT_EQ(host().call(self(), "Defaults", {Value::ofInteger(9)}).integer, 9);
    EXPECT_EQ(host()
                  .call(nullptr, "Sum",
                        {Value::ofInteger(1), Value::ofInteger(2), Value::ofBoolean(true), Value::ofInteger(4),
                         Value::ofInteger(-1)})
                  .real,
              8 + 4294967295.0);
}

TEST_F(NamedCallTest, ManyArgumentsSpillToTheStack) {
    std::vector<Value> arguments;
    for (int i = 1; i <= 11; ++i) arguments.push_back(i % 2 == 1 ? Value::ofInteger(i) : Value::ofReal(i));
    arguments.push_back(Value::ofBoolean(true));
    EXPECT_EQ(host().call(nullptr, "Many", arguments).real, 1 + 4 + 9 + 16 + 25 + 36 + 49 + 64 + 81 + 100 + 121 + 12);
}

TEST_F(NamedCallTest, ByRefComesBack) {
    std::vector<Value> arguments{Value::ofInteger(1), Value::ofReal(5), Value::ofBoolean(true),
                                 Value::ofObject(ValueKind::memoryBlock, nullptr)};
    host().call(host().find(self(), "Variables", arguments), self(), arguments);
    EXPECT_EQ(arguments[0].integer, 2);
    EXPECT_EQ(arguments[1].real, 2.5);
    EXPECT_FALSE(arguments[2].boolean);
    ASSERT_TRUE(arguments[3].object);
    EXPECT_EQ(arguments[3].object->references(), 1);
    const Ref<Object> block = arguments[3].object;
    host().call(host().find(self(), "Variables", arguments), self(), arguments);
    EXPECT_EQ(arguments[3].object, block);
    EXPECT_EQ(block->references(), 2);
}

TEST_F(NamedCallTest, ByRefLeftToItsDefaultStartsAtZero) {
    std::vector<Value> arguments(4);
    host().call(host().find(self(), "Variables", arguments), self(), arguments);
    EXPECT_EQ(arguments[0].integer, 1);
    EXPECT_TRUE(arguments[2].boolean);
    EXPECT_TRUE(arguments[3].object);
}

TEST_F(NamedCallTest, Assignments) {
    host().assignByName(self(), "level", {Value::ofInteger(3)}, Value::ofInteger(12));
    EXPECT_EQ(host().call(self(), "Level", {Value::ofInteger(3)}).integer, 12);
    const Ref<Instance> instance = host().newInstance("CounterPXK");
    host().assignByName(instance.get(), "Share", {Value::ofInteger(2)}, Value::ofInteger(3));
    EXPECT_EQ(host().call(instance.get(), "Share", {Value::ofInteger(1)}).real, 6.0);
}

TEST_F(NamedCallTest, ClassMethods) {
    const Ref<Instance> instance = host().newInstance("CounterPXK");
    EXPECT_EQ(host().call(instance.get(), "Add").integer, 1);
    EXPECT_EQ(host().call(instance.get(), "Close").kind, ValueKind::nothing);
}

TEST_F(NamedCallTest, ExceptionsAreThrown) {
    EXPECT_THROW(host().call(self(), "Raise"), HostException);
    EXPECT_EQ(picture_->references(), 1);
}

TEST_F(NamedCallTest, OnlyPicturesAndInstancesHaveMembers) {
    const Ref<MemoryBlock> block = MemoryBlock::make(2);
    EXPECT_EQ(errorOf([&] { host().call(block.get(), "Self"); }),
              "memory block 2 (2 bytes) has no members; call on a picture or an instance of a class");
}

TEST_F(NamedCallTest, ModulesAreCalledAlike) {
    picture_ = nullptr;
    openDouble(moduleHost);
    picture_ = Picture::console(1, 1);
    EXPECT_EQ(host().call(self(), "Place", {Value::ofInteger(2)}).integer, 205);
    host().assignByName(self(), "Level", {Value::ofInteger(1)}, Value::ofInteger(8));
    EXPECT_EQ(host().call(self(), "Level", {Value::ofInteger(1)}).integer, 8);
    EXPECT_EQ(host().call(nullptr, "CountCalls").integer, 1);
}

TEST(NamedCallWithoutLibffi, SaysSo) {
    if (canCallByName()) GTEST_SKIP() << "this build has libffi";
    EXPECT_EQ(errorOf([] { callFunction(nullptr, nullptr, parseDeclaration("F"), {}); }),
              "\"F\" cannot be called by name in a build without libffi");
}

}  // namespace
}  // namespace pxktest
