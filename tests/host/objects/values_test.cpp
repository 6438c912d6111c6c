// Values whose type is known at run time only.

#include "host/host_test_support.h"

namespace pxktest {
namespace {

TEST(Value, ServesAsAnotherKind) {
    EXPECT_EQ(Value::ofInteger(3).as(ValueKind::real)->real, 3.0);
    EXPECT_EQ(Value::ofInteger(-1).as(ValueKind::color)->color, 0xFFFFFFFFu);
    EXPECT_EQ(Value::ofColor(0xFF).as(ValueKind::integer)->integer, 255);
    EXPECT_FALSE(Value::ofReal(3).as(ValueKind::integer));
    EXPECT_FALSE(Value::ofBoolean(true).as(ValueKind::integer));
    EXPECT_TRUE(Value::ofObject(ValueKind::picture, nullptr).as(ValueKind::string));
    EXPECT_FALSE(Value::ofObject(ValueKind::string, String::make("x")).as(ValueKind::picture));
}

}  // namespace
}  // namespace pxktest
