// Declaration strings, taken apart.

#include "host/registration/declarations.h"

#include "host/host_test_support.h"

namespace pxktest {
namespace {

TEST(Declaration, WithoutParametersAndResult) {
    const Declaration close = parseDeclaration("Close");
    EXPECT_EQ(close.name, "Close");
    EXPECT_TRUE(close.parameters.empty());
    EXPECT_EQ(close.result.kind, ValueKind::nothing);
}

TEST(Declaration, WithoutParametersWithResult) {
    const Declaration invert = parseDeclaration("InvertPXK as picture");
    EXPECT_EQ(invert.name, "InvertPXK");
    EXPECT_TRUE(invert.parameters.empty());
    EXPECT_EQ(invert.result.kind, ValueKind::picture);
}

TEST(Declaration, EmptyParentheses) { EXPECT_TRUE(parseDeclaration("Run() as boolean").parameters.empty()); }

TEST(Declaration, ParametersWithoutBlanks) {
    const Declaration invert =
        parseDeclaration("InvertPXK(left as integer,top as integer,width as integer,height as integer) as picture");
    ASSERT_EQ(invert.parameters.size(), 4u);
    EXPECT_EQ(invert.parameters[3].name, "height");
    EXPECT_EQ(invert.parameters[3].type.kind, ValueKind::integer);
}

TEST(Declaration, ByRefWithoutResult) {
    const Declaration count =
        parseDeclaration("CountPXK(byref red as memoryblock, BYREF count as integer, ByRef  spare as picture)");
    ASSERT_EQ(count.parameters.size(), 3u);
    for (const Parameter& parameter : count.parameters) EXPECT_TRUE(parameter.byRef);
    EXPECT_EQ(count.parameters[0].type.kind, ValueKind::memoryBlock);
    EXPECT_EQ(count.parameters[1].name, "count");
    EXPECT_EQ(count.result.kind, ValueKind::nothing);
}

TEST(Declaration, Defaults) {
    const Declaration render = parseDeclaration(
        "Render(Back as color=&c88B5C4, Bits as Integer = 8, Auto as boolean = false, dest as picture = nil, "
        "sw as Integer = -10000, text as string = \"a, (b)\") as Picture");
    std::vector<std::string> defaults;
    for (const Parameter& parameter : render.parameters) defaults.push_back(parameter.defaultText.value());
    EXPECT_THAT(defaults, testing::ElementsAre("&c88B5C4", "8", "false", "nil", "-10000", "\"a, (b)\""));
}

TEST(Declaration, ExtendsAndAssigns) {
    const Declaration setter =
        parseDeclaration("EmbeddedMaskPXK(extends ref as Picture, swap as boolean, assigns value as picture)");
    EXPECT_TRUE(setter.parameters[0].extends);
    EXPECT_EQ(setter.parameters[0].name, "ref");
    EXPECT_FALSE(setter.parameters[1].extends || setter.parameters[1].assigns);
    EXPECT_TRUE(setter.parameters[2].assigns);
}

TEST(Declaration, AsProgramsReadIt) {
    const auto read = [](const char* text) { return asProgramsReadIt(parseDeclaration(text)).text; };
    EXPECT_EQ(read("InvertPXK(extends ref as Picture) as picture"), "InvertPXK as picture");
    EXPECT_EQ(read("InvertPXK(extends ref as Picture, left as integer,top as integer) as picture"),
              "InvertPXK(left as integer, top as integer) as picture");
    EXPECT_EQ(read("EmbeddedMaskPXK(extends ref as Picture, swap as boolean, assigns value as picture)"),
              "EmbeddedMaskPXK(swap as boolean) as picture");
    EXPECT_EQ(read("R(BackColor as color=&c88B5C4, byref Bits as Integer)"),
              "R(BackColor as color = &c88B5C4, byref Bits as Integer)");
}

TEST(Declaration, ParameterNamedLikeAModifierInside) {
    // "ref" is a name like any other, and "reference" only begins like "ref".
    EXPECT_EQ(parseDeclaration("F(extends ref as Picture, reference as integer)").parameters[1].name, "reference");
}

TEST(Declaration, Types) {
    EXPECT_EQ(parseType("UInt32").kind, ValueKind::integer);
    EXPECT_EQ(parseType("DOUBLE").kind, ValueKind::real);
    EXPECT_EQ(parseType("Color").kind, ValueKind::color);
    EXPECT_EQ(parseType("MemoryBlock").kind, ValueKind::memoryBlock);
    EXPECT_EQ(parseType("String").kind, ValueKind::string);
    EXPECT_EQ(parseType("PictureSepiaPXK").kind, ValueKind::instance);
}

TEST(Declaration, BrokenOnesSayWhere) {
    EXPECT_EQ(errorOf([] { parseDeclaration(""); }), "declaration \"\": expected a name at character 1");
    EXPECT_EQ(errorOf([] { parseDeclaration("F(a as integer"); }),
              "declaration \"F(a as integer\": expected \",\" or \")\" at character 15");
    EXPECT_EQ(errorOf([] { parseDeclaration("F(a integer)"); }),
              "declaration \"F(a integer)\": expected \"as\" and a type at character 4");
    EXPECT_EQ(errorOf([] { parseDeclaration("F(a as integer = )"); }),
              "declaration \"F(a as integer = )\": expected a default value at character 18");
    EXPECT_EQ(errorOf([] { parseDeclaration("F as"); }), "declaration \"F as\": expected a result type at character 5");
    EXPECT_EQ(errorOf([] { parseDeclaration("F as integer nonsense"); }),
              "declaration \"F as integer nonsense\": expected the end at character 14");
}

}  // namespace
}  // namespace pxktest
