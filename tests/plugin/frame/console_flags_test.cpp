// The registration flags, rewritten for the running host.
#include "frame/console_flags.h"

#include <gtest/gtest.h>

#include "frame/host_services.h"

namespace pxk {
namespace {

class ConsoleFlags : public testing::Test {
  protected:
    void TearDown() override { rbversion = before_; }

  private:
    double before_ = rbversion;
};

TEST_F(ConsoleFlags, BecomeTheLowBitsFrom2010029On) {
    rbversion = 2010.029;
    EXPECT_EQ(consoleFlags(0x40000), 0x4);
    EXPECT_EQ(consoleFlags(0x80000), 0x8);
    EXPECT_EQ(consoleFlags(0xC0000), 0xC);
    EXPECT_EQ(consoleFlags(0x40002), 0x6);
    EXPECT_EQ(consoleFlags(0x13), 0x13);
}

TEST_F(ConsoleFlags, AreDroppedBefore2010029) {
    rbversion = 2010.0289;
    EXPECT_EQ(consoleFlags(0x40000), 0);
    EXPECT_EQ(consoleFlags(0x80000), 0);
    EXPECT_EQ(consoleFlags(0x40002), 2);
    EXPECT_EQ(consoleFlags(6), 6);
}

TEST_F(ConsoleFlags, AreRewrittenInEveryRecordOfAClass) {
    rbversion = 2013.04;
    REALmethodDefinition method = {.flags = 0x40000};
    REALmethodDefinition sharedMethod = {.flags = 0x80000};
    REALproperty property = {.flags = 0x40002};
    REALproperty sharedProperty = {.flags = 0xC0001};
    REALclassDefinition definition = {
        .properties = &property,
        .propertyCount = 1,
        .methods = &method,
        .methodCount = 1,
        .flags = 0x40004,
        .sharedProperties = &sharedProperty,
        .sharedPropertyCount = 1,
        .sharedMethods = &sharedMethod,
        .sharedMethodCount = 1,
    };
    FixConsoleFlags(&definition);
    EXPECT_EQ(definition.flags, 4);
    EXPECT_EQ(method.flags, 4);
    EXPECT_EQ(sharedMethod.flags, 8);
    EXPECT_EQ(property.flags, 6);
    EXPECT_EQ(sharedProperty.flags, 0xD);
}

TEST_F(ConsoleFlags, SkipMissingArraysAndCountsThatAreNotPositive) {
    rbversion = 2013.04;
    REALmethodDefinition method = {.flags = 0x40000};
    REALclassDefinition definition = {.propertyCount = 3, .methods = &method, .methodCount = -1};
    FixConsoleFlags(&definition);
    EXPECT_EQ(method.flags, 0x40000);
}

}  // namespace
}  // namespace pxk
