// Host exceptions, and the guard that raises them.
#include "frame/errors.h"

#include <gtest/gtest.h>

#include <functional>
#include <new>
#include <stdexcept>
#include <string>
#include <typeinfo>

#include "support/linked_parts.h"

namespace pxk {
namespace {

using pxkhost::Exception;
using pxkhost::Ref;

class Errors : public test::LinkedParts {
  protected:
    void SetUp() override { openAt(2013.04); }

    void expectRaised(const std::string& className, const std::string& message) {
        const Ref<Exception> raised = host().takeException();
        ASSERT_TRUE(raised);
        EXPECT_EQ(raised->className(), className);
        ASSERT_TRUE(raised->message);
        EXPECT_EQ(raised->message->bytes(), message);
        EXPECT_EQ(raised->message->encoding(), pxkhost::encoding::utf8);
        EXPECT_EQ(raised->errorNumber, 0);
    }

    void expectGuarded(const std::function<void()>& thrower, const std::string& className, const std::string& message) {
        const int* result = guarded([&]() -> const int* {
            thrower();
            return nullptr;
        });
        EXPECT_EQ(result, nullptr);
        expectRaised(className, message);
    }
};

TEST_F(Errors, AreRaisedWithClassAndMessage) {
    RaiseException("NilObjectException", "caf\xc3\xa9 is nil", 77, 5);
    expectRaised("NilObjectException", "caf\xc3\xa9 is nil");
    EXPECT_EQ(host().exceptionsRaised(), 1);
}

TEST_F(Errors, OfAnUnknownClassBecomeRuntimeExceptions) {
    RaiseException("NoSuchException", "still said");
    expectRaised("RuntimeException", "still said");
}

TEST_F(Errors, WithoutAMessageHaveNil) {
    for (const char* message : {static_cast<const char*>(nullptr), ""}) {
        RaiseException("NilObjectException", message);
        const Ref<Exception> raised = host().takeException();
        ASSERT_TRUE(raised);
        EXPECT_FALSE(raised->message);
        EXPECT_EQ(raised->errorNumber, 0);
    }
}

TEST_F(Errors, AreSilentWhenNoClassIsKnown) {
    host().deny("NilObjectException");
    host().deny("RuntimeException");
    RaiseException("NilObjectException", "unheard");
    EXPECT_EQ(host().exceptionsRaised(), 0);
}

class LocalError : public std::exception {
  public:
    const char* what() const noexcept override { return "local"; }
};

TEST_F(Errors, StandForTheExceptionsOfTheStandardLibrary) {
    expectGuarded([] { throw std::bad_alloc(); }, "OutOfMemoryException", "Failed to allocate memory.");
    expectGuarded([] { throw std::range_error("range"); }, "OutOfBoundsException", "range");
    expectGuarded([] { throw std::out_of_range("outside"); }, "OutOfBoundsException", "outside");
    expectGuarded([] { throw std::overflow_error("over"); }, "OutOfBoundsException", "over");
    expectGuarded([] { throw std::underflow_error("under"); }, "OutOfBoundsException", "under");
    expectGuarded([] { throw std::invalid_argument("logic"); }, "RuntimeException", "logic");
    expectGuarded([] { throw std::runtime_error("runtime"); }, "RuntimeException", "runtime");
    expectGuarded([] { throw std::bad_cast(); }, "IllegalCastException", std::bad_cast().what());
    expectGuarded([] { throw LocalError(); }, "RuntimeException", "local");
    expectGuarded([] { throw 42; }, "RuntimeException", "Sorry, but there was an unnamed C++ Exception.");
}

TEST_F(Errors, LeaveAResultAloneWhenNothingIsThrown) {
    EXPECT_EQ(guarded([] { return 5; }), 5);
    EXPECT_EQ(host().exceptionsRaised(), 0);
}

}  // namespace
}  // namespace pxk
