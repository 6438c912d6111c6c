// How the loaded plugin finds the services of its host.
#include <gtest/gtest.h>

#include <map>
#include <set>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "support/host_fixture.h"

namespace pxk {
namespace {

using pxkhost::Exception;
using pxkhost::HostException;
using pxkhost::Instance;
using pxkhost::MemoryBlock;
using pxkhost::Picture;
using pxkhost::Ref;
using pxkhost::Value;
using pxkhost::ValueKind;

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

// Stands in for the service that sets a string's encoding: throws a given number of times, and then does nothing.
int encodingFailures = 0;
void failingSetStringEncoding(void*, std::uint32_t) {
    if (encodingFailures-- > 0) throw std::range_error("no encoding");
}

// Stands in for the service that raises: class and message of each exception, "(nil)" for none.
std::vector<std::pair<std::string, std::string>> raisedInTurn;
void recordException(void* object) {
    const auto* exception = pxkhost::fromHandle<Exception>(object, "the test");
    raisedInTurn.emplace_back(exception->className(), exception->message ? exception->message->bytes() : "(nil)");
}

TEST_F(Services, ThatThrowWhileAMessageIsBuiltRaiseAnExceptionOfTheirOwn) {
    using Raised = std::vector<std::pair<std::string, std::string>>;
    for (const auto& [failures, expected] :
         {std::pair{0, Raised{{"NilObjectException", "The channel picture is nil."}}},
          {1, Raised{{"OutOfBoundsException", "no encoding"}, {"NilObjectException", "(nil)"}}},
          {1000, Raised{{"OutOfBoundsException", "(nil)"}, {"NilObjectException", "(nil)"}}}}) {
        openConsole();
        host().replaceService("REALSetStringEncoding", reinterpret_cast<void*>(failingSetStringEncoding));
        host().replaceService("RuntimeRaiseException", reinterpret_cast<void*>(recordException));
        encodingFailures = failures;
        raisedInTurn.clear();
        raised();
        EXPECT_EQ(raisedInTurn, expected) << failures << " failures";
    }
}

// Stand in for the services that lock and unlock descriptions: a host may use the record for as long as the lock lasts.
std::map<const void*, REALpictureDescription*> lockedRecords;
bool lockAndRemember(void* picture, REALpictureDescription* description, std::int32_t wantedType) {
    const bool locked = pxkhost::fromHandle<Picture>(picture, "the test")
                            ->lock(*description, wantedType, pxkhost::Host::current().lockRules());
    if (locked) lockedRecords[picture] = description;
    return locked;
}
void checkAndUnlock(void* picture) {
    auto* const locked = pxkhost::fromHandle<Picture>(picture, "the test");
    EXPECT_EQ(lockedRecords.at(picture)->platformImage, locked->gd());
    lockedRecords.erase(picture);
    locked->unlock(pxkhost::Host::current().lockRules());
}

TEST_F(Services, ThatLockDescriptionsGetARecordThatStays) {
    openConsole();
    host().replaceService("REALLockPictureDescription", reinterpret_cast<void*>(lockAndRemember));
    host().replaceService("unlockPictureDescription", reinterpret_cast<void*>(checkAndUnlock));
    EXPECT_TRUE(host().invoke<Ref<Picture>>("MergePicturePXK(source1 as picture, source2 as picture) as picture",
                                            host().newPicture(4, 4), host().newPicture(4, 4)));
    EXPECT_TRUE(lockedRecords.empty());
}

// A host's service may throw, for instance when a program is stopped while it draws.
bool isToThrow = false;
void throwOnce() {
    if (std::exchange(isToThrow, false)) throw std::runtime_error("stopped");
}

TEST_F(Services, ThatThrowLeaveNoReferenceBehind) {
    const auto waveform =
        "RenderSamplesPXK(Samples as memoryblock, SampleCount as integer, Smooth as integer, Width as integer, Height "
        "as integer, outlinewidth as integer, BackColor as color=&c88B5C4, ForeColor as color=&c274C5A, OutLineColor "
        "as color=&c203F4E, Bits as Integer = 8, AutoScale as boolean = false) as Picture";
    for (const char* name : {"REALPictureClearCache", "RuntimeGraphicsDrawLine", "REALSetPropValueColor",
                             "REALSetPropValueInteger", "pluginPictureGraphicsGetter", "unlockPictureDescription"}) {
        SCOPED_TRACE(name);
        openConsole();
        host().replaceService(name, reinterpret_cast<void*>(throwOnce));
        const Ref<MemoryBlock> samples = MemoryBlock::make(8);
        isToThrow = true;
        EXPECT_THROW(
            host().invoke<Ref<Picture>>(waveform, samples, 8, 1, 4, 4, 2, 0x88B5C4U, 0x274C5AU, 0x203F4EU, 8, false),
            std::runtime_error);
        EXPECT_FALSE(isToThrow);
        // The replaced service unlocked nothing.
        const auto problems = closeAndTakeProblems();
        for (const std::string& problem : problems) EXPECT_NE(problem.find("lock"), std::string::npos) << problem;
    }
}

// Stands in for the service that releases: whatever that runs may look at the instance that releases its picture.
Ref<Instance> closing;
void releaseAndLook(void* object) {
    EXPECT_FALSE(pxkhost::Host::current().property(*closing, "SourcePicture").object);
    pxkhost::Object::anyFromHandle(object, "the test")->release();
}

TEST_F(Services, ThatReleaseAFieldFindItNilAlready) {
    openConsole();
    for (const std::string name : {"PictureSepiaPXK", "PictureLut3DPXK"}) {
        closing = host().newInstance(name);
        host().setProperty(*closing, "SourcePicture", Value::ofObject(ValueKind::picture, host().newPicture(2, 2)));
        host().replaceService("REALUnlockObject", reinterpret_cast<void*>(releaseAndLook));
        host().invoke<void>(name + ".Close", closing);
        closing = nullptr;
    }
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
