// Default values, as declarations write them.

#include "host/registration/default_values.h"

#include "host/host_test_support.h"

namespace pxktest {
namespace {

TEST(DefaultValue, OfEveryKind) {
    const auto valueOf = [](const char* type, const char* text) {
        Parameter parameter;
        parameter.name = "p";
        parameter.type = parseType(type);
        parameter.defaultText = text;
        return defaultValue(parameter);
    };
    EXPECT_EQ(valueOf("Integer", "-10000").integer, -10000);
    EXPECT_EQ(valueOf("Integer", "&hFF").integer, 255);
    EXPECT_EQ(valueOf("Integer", "&b101").integer, 5);
    EXPECT_EQ(valueOf("Double", "1.5").real, 1.5);
    EXPECT_EQ(valueOf("Color", "&c274C5A").color, 0x274C5Au);
    EXPECT_TRUE(valueOf("Boolean", "True").boolean);
    EXPECT_FALSE(valueOf("Boolean", "false").boolean);
    EXPECT_EQ(valueOf("Picture", "nil").kind, ValueKind::picture);
    EXPECT_FALSE(valueOf("Picture", "Nil").object);
    const Value text = valueOf("String", "\"Two Words\"");
    EXPECT_EQ(static_cast<String&>(*text.object).bytes(), "Two Words");
    EXPECT_EQ(errorOf([&] { valueOf("Integer", "ten"); }), "the default ten of parameter p is not of type Integer");
    EXPECT_EQ(errorOf([&] { valueOf("Boolean", "1"); }), "the default 1 of parameter p is not of type Boolean");
}

}  // namespace
}  // namespace pxktest
