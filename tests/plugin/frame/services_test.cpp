// How the loaded plugin finds the services of its host.
#include <gtest/gtest.h>

#include <set>
#include <string>

#include "support/host_fixture.h"

namespace pxk {
namespace {

using pxkhost::Exception;
using pxkhost::HostException;
using pxkhost::Picture;
using pxkhost::Ref;

constexpr auto raisingMember = "ReplaceRedChannelPXK(RedChannel as picture) as picture";

class Services : public pxktest::HostTest {
  protected:
    void invert() {
        const Ref<Picture> picture = host().newPicture(4, 4);
        host().invoke<Ref<Picture>>("InvertPXK as picture", picture);
    }

    // The exception that a member raises for a nil argument; empty when none comes.
    Ref<Exception> raised() {
        const Ref<Picture> self = host().newPicture(2, 2);
        const auto member = host().member<Ref<Picture>(Ref<Picture>, Ref<Picture>)>(raisingMember);
        EXPECT_EQ(member.raw()(self->handle(), nullptr), nullptr);
        return host().takeException();
    }
};

TEST_F(Services, AreAskedForOnce) {
    openConsole();
    for (int i = 0; i < 3; ++i) invert();
    const std::set<std::string> names(host().asked().begin(), host().asked().end());
    for (const std::string& name : names) EXPECT_EQ(host().timesAsked(name), 1U) << name;
    EXPECT_TRUE(names.contains("REALLockPictureDescription"));
}

TEST_F(Services, AnsweredWithNilAreAskedForOnceToo) {
    open({.missing = {"PluginPictureGetType", "REALGetPropValueBool"}});
    for (int i = 0; i < 3; ++i) invert();
    EXPECT_EQ(host().timesAsked("PluginPictureGetType"), 1U);
    EXPECT_EQ(host().timesAsked("REALGetPropValueBool"), 1U);
}

TEST_F(Services, ThatSetPropertiesAreAskedForUntilThereIsOne) {
    open({.missing = {"REALSetPropValueString", "REALSetPropValueInteger", "REALSetPropValueInt"}});
    for (int i = 0; i < 2; ++i) {
        const Ref<Exception> exception = raised();
        ASSERT_TRUE(exception);
        EXPECT_FALSE(exception->message);
        EXPECT_EQ(exception->errorNumber, -1) << "nothing could set it";
    }
    EXPECT_EQ(host().timesAsked("REALSetPropValueString"), 2U);
    EXPECT_EQ(host().timesAsked("REALSetPropValueInteger"), 2U);
    EXPECT_EQ(host().timesAsked("REALSetPropValueInt"), 2U);
    for (const char* name : {"REALSetPropValueString", "REALSetPropValueInteger"}) host().allow(name);
    const Ref<Exception> exception = raised();
    EXPECT_EQ(exception->message->bytes(), "The channel picture is nil.");
    EXPECT_EQ(exception->errorNumber, 0);
    raised();
    EXPECT_EQ(host().timesAsked("REALSetPropValueString"), 3U);
    EXPECT_EQ(host().timesAsked("REALSetPropValueInteger"), 3U);
}

TEST_F(Services, ThatSetIntegersGoByAShorterNameOnOlderHosts) {
    open({.missing = {"REALSetPropValueInteger"}});
    EXPECT_EQ(raised()->errorNumber, 0);
    EXPECT_EQ(host().timesAsked("REALSetPropValueInt"), 1U);
}

TEST_F(Services, ThatReadIntegersGoByAShorterNameOnOlderHosts) {
    open({.application = pxkhost::ApplicationKind::desktop, .missing = {"REALGetPropValueInteger"}});
    const Ref<Picture> picture = Picture::drawnOnly(3, 2);
    EXPECT_TRUE(host().invoke<Ref<Picture>>("InvertPXK as picture", picture));
    EXPECT_EQ(host().timesAsked("REALGetPropValueInt"), 1U);
}

TEST_F(Services, WithoutInstancesLetErrorsGoUnsaid) {
    open({.missing = {"PluginNewInstance"}});
    EXPECT_FALSE(raised());
}

TEST_F(Services, WithoutAVersionMakeTheOldestHost) {
    open({.missing = {"REALGetRBVersion"}});
    EXPECT_EQ(host().registry().declaredVersions(), std::vector{9});
    invert();
}

}  // namespace
}  // namespace pxk
