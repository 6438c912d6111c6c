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

class BooleanByte : public DoubleTest {};

TEST_F(BooleanByte, IsZeroOrOneAndAnythingElseIsAProblem) {
    openDouble();
    EXPECT_FALSE(booleanFrom(0));
    EXPECT_TRUE(booleanFrom(1));
    EXPECT_TRUE(host().accounting().takeProblems().empty());
    EXPECT_TRUE(booleanFrom(2));
    EXPECT_TRUE(booleanFrom(-1));
    EXPECT_THAT(host().accounting().takeProblems(),
                testing::ElementsAre("a boolean was 2, neither 0 nor 1", "a boolean was -1, neither 0 nor 1"));
}

}  // namespace
}  // namespace pxktest
