// The C interface, as another language binds to it.

#include <array>
#include <cstring>
#include <limits>
#include <string>
#include <thread>
#include <vector>

#include "host/calls/caller.h"
#include "host/host_test_support.h"
#include "host/include/pxkhost.h"

namespace pxktest {
namespace {

using testing::HasSubstr;

class CInterfaceTest : public ::testing::TestWithParam<pxk_application> {
  protected:
    void SetUp() override { open(2012.5); }

    void TearDown() override {
        if (host_ != nullptr) close();
    }

    void open(double version) {
        const pxk_options options{PXK_DOUBLE_PLUGIN, version, GetParam()};
        host_ = pxk_open(&options);
        ASSERT_NE(host_, nullptr) << pxk_last_error(nullptr);
    }

    void close() {
        EXPECT_EQ(pxk_close(host_), PXK_OK) << pxk_last_error(nullptr);
        host_ = nullptr;
    }

    std::string error() const { return pxk_last_error(host_); }

    static pxk_value integer(std::int32_t number) {
        pxk_value value{};
        value.kind = PXK_INTEGER;
        value.as.integer = number;
        return value;
    }
    static pxk_value object(pxk_kind kind, pxk_object* given) {
        pxk_value value{};
        value.kind = kind;
        value.as.object = given;
        return value;
    }

    pxk_host* host_ = nullptr;
};

INSTANTIATE_TEST_SUITE_P(Applications, CInterfaceTest, ::testing::Values(PXK_CONSOLE, PXK_DESKTOP),
                         [](const auto& each) { return each.param == PXK_CONSOLE ? "console" : "desktop"; });

TEST_P(CInterfaceTest, OpenFailures) {
    const pxk_options options{PXK_DOUBLE_PLUGIN, 0, GetParam()};
    EXPECT_EQ(pxk_open(&options), nullptr);
    EXPECT_STREQ(pxk_last_error(nullptr), "a host is open already; close it before opening another");
    close();
    const pxk_options missing{"/nowhere/Plugin.so", 0, GetParam()};
    EXPECT_EQ(pxk_open(&missing), nullptr);
    EXPECT_THAT(pxk_last_error(nullptr), HasSubstr("/nowhere/Plugin.so"));
    pxk_options odd{PXK_DOUBLE_PLUGIN, 0, GetParam()};
    const int unknown = 2;
    std::memcpy(&odd.application, &unknown, sizeof odd.application);
    EXPECT_EQ(pxk_open(&odd), nullptr);
    EXPECT_THAT(pxk_last_error(nullptr), HasSubstr("application kind 2 is unknown"));
    EXPECT_EQ(pxk_close(nullptr), PXK_OK);
    EXPECT_STREQ(pxk_last_error(nullptr), "");
}

TEST_P(CInterfaceTest, VersionsThatAreNoNumberAreRefused) {
    close();
    const double infinity = std::numeric_limits<double>::infinity();
    for (const double version : {std::numeric_limits<double>::quiet_NaN(), infinity, -infinity, -1.0}) {
        const pxk_options options{PXK_DOUBLE_PLUGIN, version, GetParam()};
        EXPECT_EQ(pxk_open(&options), nullptr) << version;
        EXPECT_THAT(pxk_last_error(nullptr), HasSubstr("; use a version such as 2013.04, or 0 for the newest"));
    }
    open(0);
}

/// Calls every function of a host, none of which may succeed; the message of each.
std::vector<std::string> messagesOfAllCalls(pxk_host* host, pxk_object* picture, pxk_object* block) {
    std::vector<std::string> messages;
    const auto note = [&](bool failed) {
        EXPECT_TRUE(failed) << messages.size();
        messages.emplace_back(pxk_last_error(host));
    };
    std::array<std::uint32_t, 4> pixels{};
    pxk_value value{};
    note(pxk_inspect(host) == nullptr);
    note(pxk_member_count(host) == 0);
    note(pxk_member_at(host, 0).name == nullptr);
    note(pxk_class_at(host, 0) == nullptr);
    note(pxk_call(host, picture, "CalcPXK", nullptr, 0, nullptr) == PXK_FAILED);
    note(pxk_assign(host, picture, "LevelPXK", nullptr, 0, value) == PXK_FAILED);
    note(pxk_new_instance(host, "AnyPXK") == nullptr);
    note(pxk_get_property(host, block, "Any", &value) == PXK_FAILED);
    note(pxk_set_property(host, block, "Any", value) == PXK_FAILED);
    note(pxk_new_picture(host, 2, 2) == nullptr);
    note(pxk_get_pixels(host, picture, pixels.data()) == PXK_FAILED);
    note(pxk_set_pixels(host, picture, pixels.data()) == PXK_FAILED);
    note(pxk_load_picture(host, "none.png") == nullptr);
    note(pxk_save_picture(host, picture, "none.png") == PXK_FAILED);
    note(pxk_new_memory_block(host, nullptr, 1) == nullptr);
    note(pxk_new_string(host, "", 0, 0xFFFF) == nullptr);
    return messages;
}

TEST_P(CInterfaceTest, EveryCallNeedsAHost) {
    pxk_object* const picture = pxk_new_picture(host_, 2, 2);
    EXPECT_THAT(messagesOfAllCalls(nullptr, picture, nullptr), testing::Each("argument \"host\" is NULL"));
    EXPECT_EQ(pxk_close(nullptr), PXK_OK);
    pxk_release(picture);
}

TEST_P(CInterfaceTest, AClosedHostIsRefused) {
    pxk_host* const closed = host_;
    close();
    EXPECT_EQ(pxk_close(closed), PXK_FAILED);
    EXPECT_THAT(pxk_last_error(nullptr), HasSubstr("\"host\" is not the open host; it was closed"));
    EXPECT_THAT(
        messagesOfAllCalls(closed, nullptr, nullptr),
        testing::Each(HasSubstr("\"host\" is not the open host; it was closed, or did not come from pxk_open")));
    open(0);
}

TEST_P(CInterfaceTest, AnotherThreadIsRefused) {
    pxk_object* const picture = pxk_new_picture(host_, 2, 2);
    std::vector<std::string> messages;
    int closed = PXK_OK;
    std::thread([&] {
        messages = messagesOfAllCalls(host_, picture, nullptr);
        closed = pxk_close(host_);
    }).join();
    EXPECT_THAT(messages,
                testing::Each(HasSubstr("opened in another thread; make all calls from the one that called")));
    EXPECT_EQ(closed, PXK_FAILED);
    EXPECT_EQ(error(), "");
    EXPECT_GT(pxk_member_count(host_), 0u);
    pxk_release(picture);
}

TEST_P(CInterfaceTest, VersionIsThatOfTheProject) { EXPECT_THAT(pxk_version(), testing::MatchesRegex("[0-9.]+")); }

TEST_P(CInterfaceTest, CloseNamesWhatLeaked) {
    pxk_object* const picture = pxk_new_picture(host_, 3, 2);
    EXPECT_EQ(pxk_close(host_), PXK_FAILED);
    host_ = nullptr;
    EXPECT_STREQ(pxk_last_error(nullptr), "leaked: picture 1 (3 x 2): 1 reference");
    pxk_release(picture);
}

TEST_P(CInterfaceTest, MembersInOrder) {
    std::vector<std::string> lines;
    for (std::size_t i = 0; i < pxk_member_count(host_); ++i) {
        const pxk_member member = pxk_member_at(host_, i);
        lines.push_back(std::to_string(member.kind) + ' ' + member.owner + ' ' + member.declaration +
                        (member.deprecated != nullptr ? std::string(" -> ") + member.deprecated : "") +
                        (member.has_setter != 0 ? " =" : ""));
    }
    EXPECT_THAT(lines,
                testing::IsSupersetOf(
                    {"3 CounterPXK Source as Picture", "2 CounterPXK Add(amount as integer = 1) as integer",
                     "2 CounterPXK Share(part as UInt32) as double =", "0 Picture SelfPXK as picture -> Something else",
                     "0 Picture LevelPXK(index as integer) as integer =", "1  CountCallsPXK as integer"}));
    EXPECT_EQ(lines.front(), "2 OtherPXK Close");
    const pxk_member none = pxk_member_at(host_, pxk_member_count(host_));
    EXPECT_EQ(none.name, nullptr);
    EXPECT_STREQ(pxk_class_at(host_, 0), "OtherPXK");
    EXPECT_STREQ(pxk_class_at(host_, 1), "CounterPXK");
    EXPECT_EQ(pxk_class_at(host_, 2), nullptr);
}

TEST_P(CInterfaceTest, Inspect) {
    EXPECT_THAT(pxk_inspect(host_), HasSubstr("class CounterPXK: 29 words"));
    EXPECT_EQ(pxk_inspect(nullptr), nullptr);
    EXPECT_STREQ(pxk_last_error(nullptr), "argument \"host\" is NULL");
}

TEST_P(CInterfaceTest, PixelsThereAndBack) {
    pxk_object* const picture = pxk_new_picture(host_, 3, 2);
    EXPECT_EQ(pxk_picture_width(picture), 3);
    EXPECT_EQ(pxk_picture_height(picture), 2);
    std::vector<std::uint32_t> pixels(6);
    ASSERT_EQ(pxk_get_pixels(host_, picture, pixels.data()), PXK_OK);
    EXPECT_THAT(pixels, testing::Each(GetParam() == PXK_CONSOLE ? 0xFF000000u : 0xFFFFFFFFu));
    const std::vector<std::uint32_t> wanted{0xFF010203, 0xFF040506, 0xFF070809, 0xFF0A0B0C, 0xFF0D0E0F, 0xFFFFEEDD};
    ASSERT_EQ(pxk_set_pixels(host_, picture, wanted.data()), PXK_OK);
    ASSERT_EQ(pxk_get_pixels(host_, picture, pixels.data()), PXK_OK);
    EXPECT_EQ(pixels, wanted);
    pxk_release(picture);
}

TEST_P(CInterfaceTest, PictureSizes) {
    EXPECT_EQ(pxk_new_picture(host_, 0, 5), nullptr);
    EXPECT_EQ(error(), "a picture of 0 x 5 pixels cannot be; each side is 1 to 32767");
    EXPECT_EQ(pxk_new_picture(host_, 5, 32768), nullptr);
    pxk_object* const widest = pxk_new_picture(host_, 32767, 1);
    EXPECT_NE(widest, nullptr);
    EXPECT_EQ(error(), "");
    pxk_release(widest);
    EXPECT_EQ(pxk_picture_width(nullptr), 0);
}

TEST_P(CInterfaceTest, BytesOfBlocksAndStrings) {
    pxk_object* const block = pxk_new_memory_block(host_, "abc", 3);
    pxk_object* const zeros = pxk_new_memory_block(host_, nullptr, 2);
    pxk_object* const text = pxk_new_string(host_, "x\xC3\xBC", 3, 0x08000100);
    std::int32_t size = -1;
    EXPECT_EQ(std::string(static_cast<char*>(pxk_bytes(block, &size)), 3), "abc");
    EXPECT_EQ(size, 3);
    EXPECT_EQ(static_cast<char*>(pxk_bytes(zeros, nullptr))[1], 0);
    EXPECT_STREQ(static_cast<char*>(pxk_bytes(text, &size)), "x\xC3\xBC");
    EXPECT_EQ(pxk_string_encoding(text), 0x08000100u);
    EXPECT_EQ(pxk_string_encoding(block), 0xFFFFu);
    EXPECT_EQ(pxk_bytes(nullptr, &size), nullptr);
    EXPECT_EQ(size, 0);
    EXPECT_EQ(pxk_new_memory_block(host_, nullptr, -1), nullptr);
    EXPECT_THAT(error(), HasSubstr("-1 bytes cannot be"));
    EXPECT_EQ(pxk_new_string(host_, nullptr, 4, 0), nullptr);
    EXPECT_EQ(error(), "argument \"bytes\" is NULL");
    for (pxk_object* each : {block, zeros, text}) pxk_release(each);
    pxk_release(nullptr);
    pxk_retain(nullptr);
}

TEST_P(CInterfaceTest, Properties) {
    pxk_object* const picture = pxk_new_picture(host_, 1, 1);
    pxk_object* const counter = pxk_new_instance(host_, "CounterPXK");
    ASSERT_NE(counter, nullptr);
    EXPECT_EQ(pxk_set_property(host_, counter, "Count", integer(5)), PXK_OK);
    EXPECT_EQ(pxk_set_property(host_, counter, "Source", object(PXK_PICTURE, picture)), PXK_OK);
    pxk_value value{};
    EXPECT_EQ(pxk_get_property(host_, counter, "Count", &value), PXK_OK);
    EXPECT_EQ(value.as.integer, 5);
    EXPECT_EQ(pxk_get_property(host_, counter, "Source", &value), PXK_OK);
    EXPECT_EQ(value.as.object, picture);
    pxk_release(value.as.object);
    EXPECT_EQ(pxk_get_property(host_, counter, "Cuont", &value), PXK_FAILED);
    EXPECT_EQ(error(), "a CounterPXK has no property \"Cuont\"; did you mean Count?");
    EXPECT_EQ(pxk_get_property(host_, picture, "Count", &value), PXK_FAILED);
    EXPECT_EQ(error(), "argument \"instance\" is a picture, not a instance");
    EXPECT_EQ(pxk_new_instance(host_, "Counter"), nullptr);
    EXPECT_EQ(error(), "the plugin has no class \"Counter\"; did you mean CounterPXK?");
    pxk_release(counter);
    pxk_release(picture);
}

class CCallTest : public CInterfaceTest {
  protected:
    void SetUp() override {
        if (!canCallByName()) GTEST_SKIP() << "this build has no libffi";
        CInterfaceTest::SetUp();
        picture_ = pxk_new_picture(host_, 2, 2);
    }
    void TearDown() override {
        pxk_release(picture_);
        CInterfaceTest::TearDown();
    }
    pxk_object* picture_ = nullptr;
};

INSTANTIATE_TEST_SUITE_P(Applications, CCallTest, ::testing::Values(PXK_CONSOLE, PXK_DESKTOP),
                         [](const auto& each) { return each.param == PXK_CONSOLE ? "console" : "desktop"; });

TEST_P(CCallTest, ResultsOfEveryKind) {
    pxk_value result{};
    pxk_value argument = integer(7);
    ASSERT_EQ(pxk_call(host_, picture_, "place", &argument, 1, &result), PXK_OK) << error();
    EXPECT_EQ(result.kind, PXK_INTEGER);
    EXPECT_EQ(result.as.integer, 705);

    argument.kind = PXK_BOOLEAN;
    argument.as.boolean = 1;
    ASSERT_EQ(pxk_call(host_, picture_, "Echo", &argument, 1, &result), PXK_OK) << error();
    EXPECT_EQ(result.kind, PXK_BOOLEAN);
    EXPECT_EQ(result.as.boolean, 1);

    argument.kind = PXK_DOUBLE;
    argument.as.real = 0.5;
    ASSERT_EQ(pxk_call(host_, picture_, "Echo", &argument, 1, &result), PXK_OK) << error();
    EXPECT_EQ(result.as.real, 0.5);

    ASSERT_EQ(pxk_call(host_, picture_, "Self", nullptr, 0, &result), PXK_OK) << error();
    EXPECT_EQ(result.kind, PXK_PICTURE);
    EXPECT_EQ(result.as.object, picture_);
    pxk_release(result.as.object);
    ASSERT_EQ(pxk_call(host_, picture_, "Self", nullptr, 0, nullptr), PXK_OK) << "a result nobody wants is given back";

    argument = object(PXK_PICTURE, nullptr);
    ASSERT_EQ(pxk_call(host_, picture_, "Echo", &argument, 1, &result), PXK_OK) << error();
    EXPECT_EQ(result.kind, PXK_PICTURE);
    EXPECT_EQ(result.as.object, nullptr);
}

TEST_P(CCallTest, ByRefIsWrittenBack) {
    std::array<pxk_value, 4> arguments{integer(1), {}, {}, object(PXK_MEMORY_BLOCK, nullptr)};
    pxk_value result = integer(9);
    ASSERT_EQ(pxk_call(host_, picture_, "Variables", arguments.data(), 4, &result), PXK_OK) << error();
    EXPECT_EQ(result.kind, PXK_NOTHING);
    EXPECT_EQ(arguments[0].as.integer, 2);
    EXPECT_EQ(arguments[1].kind, PXK_DOUBLE);
    EXPECT_EQ(arguments[2].as.boolean, 1);
    ASSERT_NE(arguments[3].as.object, nullptr);
    pxk_object* const block = arguments[3].as.object;
    ASSERT_EQ(pxk_call(host_, picture_, "Variables", arguments.data(), 4, nullptr), PXK_OK) << error();
    EXPECT_EQ(arguments[3].as.object, block) << "an object left in place is not replaced";
    pxk_release(block);
}

TEST_P(CCallTest, Failures) {
    EXPECT_EQ(pxk_call(host_, picture_, "Palce", nullptr, 0, nullptr), PXK_FAILED);
    EXPECT_THAT(error(), HasSubstr("did you mean PlacePXK?"));
    EXPECT_EQ(pxk_call(host_, picture_, "Raise", nullptr, 0, nullptr), PXK_FAILED);
    EXPECT_EQ(error(), "OutOfBoundsException: too far: \u00FC");
    EXPECT_EQ(pxk_call(host_, picture_, nullptr, nullptr, 0, nullptr), PXK_FAILED);
    EXPECT_EQ(error(), "argument \"name\" is NULL");
    EXPECT_EQ(pxk_call(host_, picture_, "Place", nullptr, 1, nullptr), PXK_FAILED);
    EXPECT_EQ(error(), "argument \"arguments\" is NULL");
    pxk_value wrong = object(PXK_STRING, picture_);
    EXPECT_EQ(pxk_call(host_, picture_, "Echo", &wrong, 1, nullptr), PXK_FAILED);
    EXPECT_THAT(error(), HasSubstr("a value of kind string holds picture"));
    EXPECT_EQ(pxk_call(host_, picture_, "Self", nullptr, 0, nullptr), PXK_OK);
    EXPECT_EQ(error(), "");
}

TEST_P(CCallTest, Assignments) {
    const pxk_value index = integer(4);
    ASSERT_EQ(pxk_assign(host_, picture_, "Level", &index, 1, integer(55)), PXK_OK) << error();
    pxk_value argument = index;
    pxk_value result{};
    ASSERT_EQ(pxk_call(host_, picture_, "Level", &argument, 1, &result), PXK_OK) << error();
    EXPECT_EQ(result.as.integer, 55);
    EXPECT_EQ(pxk_assign(host_, picture_, "Self", nullptr, 0, integer(1)), PXK_FAILED);
}

}  // namespace
}  // namespace pxktest
