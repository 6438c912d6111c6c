/// Declarations of members.
#include "chain/declaration.h"

#include <gtest/gtest.h>

namespace pxk::chain {
namespace {

TEST(Declaration, ReadsANameWithAResult) {
    const Declaration declaration = parseDeclaration("InvertPXK as picture");
    EXPECT_EQ(declaration.name, "InvertPXK");
    EXPECT_EQ(declaration.type, "picture");
    EXPECT_TRUE(declaration.parameters.empty());
}

TEST(Declaration, ReadsParametersWrittenWithoutBlanks) {
    const Declaration declaration = parseDeclaration("InvertPXK(left as integer,top as integer) as picture");
    ASSERT_EQ(declaration.parameters.size(), 2U);
    EXPECT_EQ(declaration.parameters[0].name, "left");
    EXPECT_EQ(declaration.parameters[1].name, "top");
    EXPECT_EQ(declaration.parameters[1].type, "integer");
    EXPECT_EQ(declaration.required(), 2U);
}

TEST(Declaration, ReadsByrefAndDefaults) {
    const Declaration declaration = parseDeclaration(
        "FindPicturePXK(pic as picture, byref x as integer, StartX as Integer = 0, c as color=&c88B5C4, q as picture = "
        "nil) as boolean");
    ASSERT_EQ(declaration.parameters.size(), 5U);
    EXPECT_FALSE(declaration.parameters[0].byReference);
    EXPECT_TRUE(declaration.parameters[1].byReference);
    EXPECT_EQ(declaration.parameters[1].name, "x");
    EXPECT_EQ(declaration.parameters[2].whenLeftOut, "0");
    EXPECT_EQ(declaration.parameters[3].whenLeftOut, "&c88B5C4");
    EXPECT_EQ(declaration.parameters[3].type, "color");
    EXPECT_EQ(declaration.parameters[4].whenLeftOut, "nil");
    EXPECT_EQ(declaration.required(), 2U);
    EXPECT_EQ(declaration.type, "boolean");
}

TEST(Declaration, ReadsMethodsWithoutResultAndNamesAlone) {
    EXPECT_EQ(parseDeclaration("CountColorsPXK(byref count as integer)").type, "");
    const Declaration close = parseDeclaration("Close");
    EXPECT_EQ(close.name, "Close");
    EXPECT_EQ(close.type, "");
}

TEST(Declaration, ReadsProperties) {
    const Declaration property = parseDeclaration("FactorRed as Double");
    EXPECT_EQ(property.name, "FactorRed");
    EXPECT_EQ(property.type, "Double");
}

TEST(Declaration, SurvivesBrokenText) {
    for (const char* text :
         {"", " ", "(", ")", ")(", "A(", "A)", "A(,", "A(byref", "A(as", "A( as )", "A as ", "A(= ) as"}) {
        EXPECT_NO_THROW(parseDeclaration(text)) << text;
    }
}

TEST(Declaration, KnowsTheTypesOfTheLanguageInAnyLetterCase) {
    EXPECT_EQ(kindOf("integer"), PXK_INTEGER);
    EXPECT_EQ(kindOf("Integer"), PXK_INTEGER);
    EXPECT_EQ(kindOf("UInt32"), PXK_INTEGER);
    EXPECT_EQ(kindOf("double"), PXK_DOUBLE);
    EXPECT_EQ(kindOf("boolean"), PXK_BOOLEAN);
    EXPECT_EQ(kindOf("color"), PXK_COLOR);
    EXPECT_EQ(kindOf("Picture"), PXK_PICTURE);
    EXPECT_EQ(kindOf("memoryblock"), PXK_MEMORY_BLOCK);
    EXPECT_EQ(kindOf("String"), PXK_STRING);
    EXPECT_EQ(kindOf(""), PXK_NOTHING);
    EXPECT_EQ(kindOf("PictureSepiaPXK"), PXK_INSTANCE);
}

}  // namespace
}  // namespace pxk::chain
