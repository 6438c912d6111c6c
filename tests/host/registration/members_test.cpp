// Members found by name, arguments and declaration, however they were registered.

#include "host/host_test_support.h"

namespace pxktest {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class MembersTest : public DoubleTest {
  protected:
    void SetUp() override { openDouble(); }

    const Member& find(std::string_view owner, std::string_view name, std::vector<Value> arguments = {}) {
        return host().members().byCall(owner, name, arguments);
    }
};

TEST_F(MembersTest, NamesInAnyLetterCaseWithAndWithoutSuffix) {
    for (const char* name : {"SelfPXK", "selfpxk", "Self", "SELF"})
        EXPECT_EQ(find("Picture", name).declaration.name, "SelfPXK") << name;
}

TEST_F(MembersTest, OverloadsByType) {
    EXPECT_EQ(find("Picture", "Echo", {Value::ofInteger(1)}).declaration.result.kind, ValueKind::integer);
    EXPECT_EQ(find("Picture", "Echo", {Value::ofReal(1)}).declaration.result.kind, ValueKind::real);
    EXPECT_EQ(find("Picture", "Echo", {Value::ofColor(1)}).declaration.result.kind, ValueKind::color);
    EXPECT_EQ(find("Picture", "Echo", {Value::ofBoolean(true)}).declaration.result.kind, ValueKind::boolean);
    EXPECT_EQ(find("Picture", "Echo", {Value::ofObject(ValueKind::string, nullptr)}).declaration.result.kind,
              ValueKind::string);
    EXPECT_EQ(find("Picture", "Echo", {Value::ofObject(ValueKind::picture, nullptr)}).declaration.result.kind,
              ValueKind::picture);
}

TEST_F(MembersTest, DefaultsMayBeLeftOut) {
    EXPECT_EQ(find("Picture", "Place", {Value::ofInteger(1)}).declaration.name, "PlacePXK");
    EXPECT_EQ(find("Picture", "Place", {Value::ofInteger(1), Value()}).declaration.name, "PlacePXK");
    EXPECT_THAT(errorOf([&] { find("Picture", "Place"); }), HasSubstr("no form of \"Place\" takes ()"));
}

TEST_F(MembersTest, ByRefTakesTheVeryTypeOnly) {
    const Value block = Value::ofObject(ValueKind::memoryBlock, nullptr);
    EXPECT_NO_THROW(
        find("Picture", "Variables", {Value::ofInteger(1), Value::ofReal(1), Value::ofBoolean(true), block}));
    EXPECT_NO_THROW(find("Picture", "Variables", {Value(), Value(), Value(), Value()}));
    EXPECT_THROW(
        find("Picture", "Variables", {Value::ofInteger(1), Value::ofInteger(1), Value::ofBoolean(true), block}),
        HostError);
}

TEST_F(MembersTest, WrongArgumentsListTheForms) {
    EXPECT_EQ(errorOf([&] {
                  find("Picture", "Place", {Value::ofBoolean(true), Value()});
              }),
              "no form of \"Place\" takes (boolean, default); there is PlacePXK(x as integer, y as integer = 5) as "
              "integer");
    EXPECT_THAT(errorOf([&] { find("Picture", "Echo"); }),
                HasSubstr("EchoPXK(value as integer) as integer; EchoPXK(value as double) as double; "));
}

TEST_F(MembersTest, MisspeltNamesGetTheNearest) {
    EXPECT_EQ(errorOf([&] { find("Picture", "Palce"); }),
              "there is no member \"Palce\" to call on a Picture; did you mean PlacePXK?");
    EXPECT_EQ(errorOf([&] { find("", "Smu"); }), "there is no member \"Smu\" to call on nothing; did you mean SumPXK?");
    EXPECT_EQ(errorOf([&] { find("Picture", "Quixotic"); }), "there is no member \"Quixotic\" to call on a Picture");
}

TEST_F(MembersTest, NamesOfAnotherOwnerSayWhose) {
    EXPECT_EQ(errorOf([&] { find("", "Self"); }), "SelfPXK is called on a Picture, not on nothing");
    EXPECT_EQ(errorOf([&] { find("Picture", "Sum"); }), "SumPXK is called on nothing, not on a Picture");
    EXPECT_EQ(errorOf([&] { find("Picture", "Add"); }), "Add is called on a CounterPXK, not on a Picture");
}

TEST_F(MembersTest, NearestName) {
    const std::vector<std::string> names{"InvertPXK", "InvertGrayPXK", "Run"};
    EXPECT_EQ(nearestName("invret", names), "InvertPXK");
    EXPECT_EQ(nearestName("InvertGreyPXK", names), "InvertGrayPXK");
    EXPECT_EQ(nearestName("Rum", names), "Run");
    EXPECT_EQ(nearestName("Multiply", names), "");
}

TEST_F(MembersTest, Assignments) {
    const Value seven = Value::ofInteger(7);
    const std::vector<Value> index{Value::ofInteger(1)};
    EXPECT_EQ(host().members().byAssignment("Picture", "Level", index, seven).declaration.name, "LevelPXK");
    EXPECT_EQ(errorOf([&] { host().members().byAssignment("Picture", "Level", index, Value::ofReal(1)); }),
              "no form of \"Level\" takes (integer) and is assigned a double; there is LevelPXK(index as integer) as "
              "integer");
    EXPECT_EQ(errorOf([&] { host().members().byAssignment("Picture", "Leval", index, seven); }),
              "there is no assignable member \"Leval\" to call on a Picture; did you mean LevelPXK?");
}

TEST_F(MembersTest, Attributes) {
    EXPECT_EQ(find("Picture", "Self").deprecated(), "Something else");
    EXPECT_EQ(find("Picture", "RaiseOnly").deprecated(), "");
}

TEST_F(MembersTest, KindsAndOwners) {
    EXPECT_EQ(find("Picture", "Self").kind, MemberKind::pictureMethod);
    EXPECT_EQ(find("", "CountCalls").kind, MemberKind::globalMethod);
    EXPECT_EQ(find("CounterPXK", "Add").kind, MemberKind::classMethod);
    EXPECT_EQ(find("counterpxk", "Add").owner, "CounterPXK");
    EXPECT_EQ(host().members().property("CounterPXK", "count").kind, MemberKind::classProperty);
}

TEST_F(MembersTest, MisspeltProperties) {
    EXPECT_EQ(errorOf([&] { host().members().property("CounterPXK", "Rato"); }),
              "a CounterPXK has no property \"Rato\"; did you mean Ratio?");
}

TEST_F(MembersTest, Declarations) {
    const Members& members = host().members();
    EXPECT_NE(members.byDeclaration("PlacePXK(x as integer, y as integer = 5) as integer").function, nullptr);
    EXPECT_EQ(&members.byDeclaration("placepxk(x as integer,y as integer=5) as Integer"),
              &members.byDeclaration("Picture.PlacePXK(x as integer, y as integer = 5) as integer"));
    EXPECT_EQ(members.byDeclaration("CounterPXK.Close").owner, "CounterPXK");
    EXPECT_EQ(errorOf([&] { members.byDeclaration("Close"); }),
              "\"Close\" is declared by OtherPXK and by CounterPXK; put the class and a dot in front");
    EXPECT_EQ(errorOf([&] { members.byDeclaration("PlacePXK as integer"); }),
              "the plugin registered no \"PlacePXK as integer\"");
    EXPECT_NE(host().setter("LevelPXK(index as integer) as integer"), nullptr);
    EXPECT_EQ(host().setter("SelfPXK as picture"), nullptr);
}

class ModuleMembersTest : public MembersTest {
  protected:
    void SetUp() override { openDouble(moduleHost); }
};

TEST_F(ModuleMembersTest, ExtendsMakesAPictureMethod) {
    const Member& place = find("Picture", "Place", {Value::ofInteger(1)});
    EXPECT_EQ(place.declaration.text, "PlacePXK(x as integer, y as integer = 5) as integer");
    EXPECT_EQ(place.kind, MemberKind::pictureMethod);
    EXPECT_EQ(place.owner, "Picture");
    EXPECT_EQ(find("Picture", "Self").declaration.text, "SelfPXK as picture");
    EXPECT_EQ(find("", "CountCalls").kind, MemberKind::globalMethod);
}

TEST_F(ModuleMembersTest, GetterAndSetterAreOneMember) {
    const Member& level = host().members().byDeclaration("LevelPXK(index as integer) as integer");
    EXPECT_NE(level.function, nullptr);
    EXPECT_NE(level.setter, nullptr);
    EXPECT_NE(level.function, level.setter);
    EXPECT_EQ(level.declaration.parameters.size(), 1u);
}

TEST_F(ModuleMembersTest, AttributesComeAlong) { EXPECT_EQ(find("Picture", "Self").deprecated(), "Something else"); }

TEST_F(ModuleMembersTest, OrderOfRegistration) {
    std::vector<std::string> names;
    for (const Member& member : host().members().all())
        if (member.kind == MemberKind::pictureMethod || member.kind == MemberKind::globalMethod)
            names.push_back(member.declaration.name);
    EXPECT_THAT(names, ElementsAre("PlacePXK", "EchoPXK", "SelfPXK", "LevelPXK", "CountCallsPXK"));
}

}  // namespace
}  // namespace pxktest
