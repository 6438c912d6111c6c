// Opening and closing hosts, and what they offer or withhold.

#include "host/host.h"

#include <dlfcn.h>
#include <sys/resource.h>

#include "host/host_test_support.h"
#include "support/host_services.h"
#include "support/sanitizers.h"

namespace pxktest {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class OpeningTest : public DoubleTest {};

TEST_F(OpeningTest, ClosingUnloadsThePlugin) {
    EXPECT_EQ(dlopen(PXK_DOUBLE_PLUGIN, RTLD_NOW | RTLD_NOLOAD), nullptr);
    openDouble();
    void* const loaded = dlopen(PXK_DOUBLE_PLUGIN, RTLD_NOW | RTLD_NOLOAD);
    EXPECT_NE(loaded, nullptr);
    dlclose(loaded);
    close();
    EXPECT_EQ(dlopen(PXK_DOUBLE_PLUGIN, RTLD_NOW | RTLD_NOLOAD), nullptr);
}

TEST_F(OpeningTest, APluginThatStaysLoadedIsAProblem) {
    openDouble();
    void* const loaded = dlopen(PXK_DOUBLE_PLUGIN, RTLD_NOW);
    EXPECT_THAT(closeAndTakeProblems(), ElementsAre(std::string(PXK_DOUBLE_PLUGIN) + " stayed loaded after dlclose"));
    dlclose(loaded);
}

TEST_F(OpeningTest, EveryHostGetsAFreshPlugin) {
    for (int i = 0; i < 3; ++i) {
        openDouble();
        EXPECT_EQ(host().invoke<int>("CountCallsPXK as integer"), 1);
        EXPECT_EQ(host().invoke<int>("CountCallsPXK as integer"), 2);
    }
}

TEST_F(OpeningTest, OneHostAtATime) {
    openDouble();
    EXPECT_EQ(errorOf([] { const Host second{Options{.plugin = PXK_DOUBLE_PLUGIN}}; }),
              "a host is open already; close it before opening another");
    EXPECT_TRUE(Host::isOpen());
    EXPECT_EQ(&Host::current(), &host());
}

TEST_F(OpeningTest, MissingPluginIsExplained) {
    EXPECT_THAT(
        errorOf([&] { open({.plugin = "/nowhere/Plugin.so"}); }),
        testing::AllOf(testing::StartsWith("cannot load the plugin: /nowhere/Plugin.so"), HasSubstr("No such file")));
    EXPECT_FALSE(Host::isOpen());
}

TEST_F(OpeningTest, LibraryWithoutEntryPointIsExplained) {
    EXPECT_EQ(errorOf([&] { open({.plugin = "libdl.so.2"}); }),
              "libdl.so.2 is not a plugin: it has no function REALPluginMain");
    EXPECT_FALSE(Host::isOpen());
}

TEST_F(OpeningTest, ClosingTwiceDoesNothing) {
    openDouble();
    EXPECT_TRUE(host().close().empty());
    EXPECT_TRUE(host().close().empty());
}

class OfferTest : public ServiceTest {};

TEST_F(OfferTest, VersionIsAnsweredAsAsked) {
    for (const double version : {2009.0, 2013.04, 3000.0}) {
        openBare({.version = version});
        EXPECT_EQ(service<double()>("REALGetRBVersion")(), version);
    }
}

TEST_F(OfferTest, EveryServiceOfTheInterface) {
    openBare();
    for (const char* name : hostServices) EXPECT_NE(resolver_(name), nullptr) << name;
    EXPECT_EQ(resolver_("REALMakeCoffee"), nullptr);
    EXPECT_EQ(resolver_("newpicture"), nullptr) << "names are matched as they are";
}

TEST_F(OfferTest, WhatIsMissingFromTheStart) {
    openBare({.missing = {"newPicture"}});
    EXPECT_EQ(resolver_("newPicture"), nullptr);
    EXPECT_NE(resolver_("newMemoryBlock"), nullptr);
}

TEST_F(OfferTest, WhatIsDeniedAndAllowedLater) {
    openBare();
    host().deny("newPicture");
    EXPECT_EQ(resolver_("newPicture"), nullptr);
    host().allow("newPicture");
    EXPECT_NE(resolver_("newPicture"), nullptr);
}

TEST_F(OfferTest, ReplacedServices) {
    openBare();
    const auto own = +[]() -> double { return 1.0; };
    host().replaceService("REALGetRBVersion", reinterpret_cast<void*>(own));
    EXPECT_EQ(service<double()>("REALGetRBVersion")(), 1.0);
}

TEST_F(OfferTest, QuestionsAreRecordedInOrder) {
    openBare();
    for (const char* name : {"newPicture", "Unknown", "newPicture"}) resolver_(name);
    EXPECT_THAT(host().asked(), ElementsAre("newPicture", "Unknown", "newPicture"));
    EXPECT_EQ(host().timesAsked("newPicture"), 2u);
    EXPECT_EQ(host().timesAsked("REALLockObject"), 0u);
}

TEST_F(OfferTest, ApplicationClasses) {
    const auto known = [&](ApplicationKind application) {
        openBare({.application = application});
        std::string names;
        for (const char* name : {"Application", "WebApplication", "ConsoleApplication"})
            if (service<void*(const char*)>("pluginObjectType")(name) != nullptr) names += std::string(name) + ' ';
        return names;
    };
    EXPECT_EQ(known(ApplicationKind::desktop), "Application ");
    EXPECT_EQ(known(ApplicationKind::web), "WebApplication ");
    EXPECT_EQ(known(ApplicationKind::console), "ConsoleApplication ");
}

TEST_F(OfferTest, ClassesCanBeDenied) {
    openBare({.application = ApplicationKind::desktop, .missing = {"Application", "NilObjectException"}});
    EXPECT_EQ(service<void*(const char*)>("pluginObjectType")("Application"), nullptr);
    EXPECT_EQ(service<void*(const char*)>("PluginNewInstance")("NilObjectException"), nullptr);
    EXPECT_EQ(service<void*(const char*)>("PluginNewInstance")("NoSuchException"), nullptr);
    void* const other = service<void*(const char*)>("PluginNewInstance")("RuntimeException");
    ASSERT_NE(other, nullptr);
    service<void(void*)>("REALUnlockObject")(other);
}

TEST_F(OfferTest, CreationsFailOneByOne) {
    openBare();
    const auto block = [&] { return service<void*(std::int32_t)>("newMemoryBlock")(4); };
    const auto picture = [&] { return service<void*(int, int, int)>("newPicture")(2, 2, 32); };
    const auto text = [&] { return service<void*(const void*, std::int32_t)>("REALBuildString")("x", 1); };
    const auto instance = [&] { return service<void*(const char*)>("PluginNewInstance")("RuntimeException"); };
    for (std::size_t failing = 0; failing <= 4; ++failing) {
        host().failCreation(failing);
        const std::array made{block(), picture(), text(), instance()};
        for (std::size_t i = 0; i < made.size(); ++i) {
            EXPECT_EQ(made[i] == nullptr, i == failing);
            service<void(void*)>("REALUnlockObject")(made[i]);
        }
        EXPECT_EQ(host().creations(), 4u);
    }
}

TEST_F(OfferTest, ExceptionProperties) {
    openBare();
    void* const handle = service<void*(const char*)>("PluginNewInstance")("RuntimeException");
    const Ref<Exception> exception = Ref<Exception>::adopt(fromHandle<Exception>(handle, "test"));
    EXPECT_EQ(exception->errorNumber, -1);
    EXPECT_FALSE(exception->message);
    const Ref<String> text = String::make("why");
    const auto setString = service<void(void*, const char*, void*)>("REALSetPropValueString");
    setString(handle, "message", text->handle());
    EXPECT_EQ(exception->message, text);
    EXPECT_EQ(text->references(), 2);
    setString(handle, "Message", nullptr);
    EXPECT_FALSE(exception->message);
    service<void(void*, const char*, std::int32_t)>("REALSetPropValueInt")(handle, "ErrorNumber", 0);
    EXPECT_EQ(exception->errorNumber, 0);
    service<void(void*)>("RuntimeRaiseException")(handle);
    EXPECT_EQ(exception->references(), 2);
    EXPECT_EQ(host().takeException(), exception);
    EXPECT_NO_THROW(host().throwPending());
}

// A sanitizer does not hand out memory again.
#ifndef PXK_ADDRESS_SANITIZER
long pageFaults() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_minflt;
}

class WarmMemoryTest : public ServiceTest, public ::testing::WithParamInterface<ApplicationKind> {};

TEST_P(WarmMemoryTest, PicturesMadeAgainCostNoPageFaults) {
    openBare({.application = GetParam()});
    constexpr int width = 4096;
    constexpr int height = 1024;
    for (int i = 0; i < 3; ++i) host().newPicture(width, height);
    const long before = pageFaults();
    for (int i = 0; i < 5; ++i) host().newPicture(width, height);
    EXPECT_LT(pageFaults() - before, 50) << "a picture has 4096 pages";
}

INSTANTIATE_TEST_SUITE_P(Applications, WarmMemoryTest,
                         ::testing::Values(ApplicationKind::console, ApplicationKind::desktop), [](const auto& each) {
                             return each.param == ApplicationKind::console ? "console" : "desktop";
                         });
#endif

}  // namespace
}  // namespace pxktest
