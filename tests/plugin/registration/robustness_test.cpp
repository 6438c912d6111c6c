// Every member, in hosts that lack something, and with every allocation failing once.
#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "support/allocation_failure.h"
#include "support/every_member.h"
#include "support/host_fixture.h"
#include "support/host_services.h"
#include "support/lasting_memory.h"

namespace pxk::test {
namespace {

using pxkhost::ApplicationKind;
using pxkhost::Host;
using pxkhost::HostError;
using pxkhost::Options;
using pxkhost::Picture;
using pxkhost::Ref;

constexpr double versions[] = {2010.0, 2011.03, 2012.5, 2013.04, 2019.03, 3000.0};

// Without these nothing can be released, whatever the plugin does.
const std::set<std::string> givingBack = {"REALUnlockObject", "REALUnlockString", "unlockPictureDescription"};

// Without these no picture can be opened, or none made except those with an alpha channel, which have a constructor.
bool isNeededForPictures(const std::string& service, const Ref<Picture>& subject) {
    if (service == "newPicture") return !subject->hasAlphaChannel();
    return service == "REALLockPictureDescription";
}

// Pictures that are read in place and, in desktop applications, some that have to be copied.
std::vector<Ref<Picture>> subjects(ApplicationKind application) {
    if (application == ApplicationKind::console) return {Picture::console(6, 5)};
    const Ref<Picture> masked = Picture::desktop(6, 5);
    masked->setMask(Picture::desktop(6, 5));
    const Ref<Picture> maskedDrawing = Picture::drawnOnly(6, 5);
    maskedDrawing->setMask(Picture::desktop(6, 5));
    return {masked, Picture::desktop(6, 5, {}, true), maskedDrawing, Picture::drawnOnly(6, 5, true)};
}

class Robustness : public pxktest::HostTest {
  protected:
    // Opens a host that lacks the services, calls every member, and returns what was leaked or left locked.
    std::vector<std::string> callEverythingWithout(const std::vector<std::string>& missing, double version,
                                                   ApplicationKind application) {
        Options options;
        options.version = version;
        options.application = application;
        options.missing = missing;
        openWithout(options);
        for (const Ref<Picture>& subject : subjects(application)) {
            for (const MemberCall& call : everyMemberCall()) {
                SCOPED_TRACE(call.name);
                run(call, subject, missing);
            }
        }
        return closeAndTakeProblems();
    }

  private:
    void openWithout(const Options& options) {
        const auto registers = [](const std::string& name) { return name.starts_with("PluginRegister"); };
        if (std::any_of(options.missing.begin(), options.missing.end(), registers)) {
            const LastingMemory records;
            open(options);
        } else {
            open(options);
        }
    }

    void run(const MemberCall& call, const Ref<Picture>& subject, const std::vector<std::string>& missing) {
        try {
            const Outcome outcome = call.run(host(), subject);
            const bool needed = std::any_of(missing.begin(), missing.end(), [&](const std::string& name) {
                return isNeededForPictures(name, subject);
            });
            EXPECT_FALSE(needed && call.makesPicture && outcome == Outcome::full);
        } catch (const HostError&) {
            // The member was never registered: this host lacks the service for it.
        }
    }
};

TEST_F(Robustness, EveryMemberWorksInAWholeHost) {
    for (const double version : versions) {
        for (const ApplicationKind application : {ApplicationKind::console, ApplicationKind::desktop}) {
            Options options;
            options.version = version;
            options.application = application;
            open(options);
            const Ref<Picture> subject = subjects(application).front();
            for (const MemberCall& call : everyMemberCall()) {
                EXPECT_EQ(call.run(host(), subject), Outcome::full) << call.name << " in a host " << version;
            }
        }
    }
}

// A new picture is returned with the reference that it was made with.
TEST_F(Robustness, EveryMemberWorksInAHostThatCannotAddReferences) {
    for (const double version : versions) {
        for (const ApplicationKind application : {ApplicationKind::console, ApplicationKind::desktop}) {
            open({.version = version, .application = application, .missing = {"REALLockObject", "REALLockString"}});
            for (const Ref<Picture>& subject : subjects(application)) {
                // Hosts before 2011.04 make no pictures with an alpha channel.
                if (version < 2011.04 && subject->hasAlphaChannel()) continue;
                for (const MemberCall& call : everyMemberCall()) {
                    const bool full = call.run(host(), subject) == Outcome::full;
                    EXPECT_TRUE(full || !call.makesPicture) << call.name << " in a host " << version;
                }
            }
        }
    }
}

TEST_F(Robustness, EveryServiceMayBeMissing) {
    for (const std::string service : pxktest::hostServices) {
        for (const double version : versions) {
            for (const ApplicationKind application : {ApplicationKind::console, ApplicationKind::desktop}) {
                // A host that does not report its version counts as one of the oldest.
                if (service == "REALGetRBVersion" && version >= 2012.0) continue;
                SCOPED_TRACE(service + " missing in a host " + std::to_string(version));
                const auto problems = callEverythingWithout({service}, version, application);
                if (givingBack.contains(service)) continue;
                for (const std::string& problem : problems) ADD_FAILURE() << problem;
            }
        }
    }
}

TEST_F(Robustness, AllPropertyServicesMayBeMissing) {
    const auto problems =
        callEverythingWithout({"REALSetPropValueString", "REALSetPropValueInteger", "REALSetPropValueInt",
                               "REALSetPropValueColor", "REALGetPropValueInteger", "REALGetPropValueInt"},
                              2013.04, ApplicationKind::desktop);
    EXPECT_EQ(problems, std::vector<std::string>());
}

TEST_F(Robustness, MethodsOfHostObjectsMayBeMissing) {
    for (const char* method : {"Picture.Constructor", "Picture.Mask", "Graphics.DrawPicture", "Picture.Width",
                               "Picture.HasAlphaChannel", "RuntimeException", "NilObjectException"}) {
        SCOPED_TRACE(method);
        const auto problems = callEverythingWithout({method}, 2013.04, ApplicationKind::desktop);
        EXPECT_EQ(problems, std::vector<std::string>());
    }
}

TEST_F(Robustness, EveryAllocationOfAMemberMayFail) {
    for (const ApplicationKind application : {ApplicationKind::console, ApplicationKind::desktop}) {
        open({.application = application});
        for (const Ref<Picture>& subject : subjects(application)) {
            for (const MemberCall& call : everyMemberCall()) {
                SCOPED_TRACE(call.name);
                failEveryAllocation([&] { call.run(host(), subject); });
                EXPECT_EQ(host().exceptionsRaised(), 0) << "a failed allocation is a silent nil";
            }
        }
        close();
    }
}

TEST_F(Robustness, EveryAllocationAtStartUpMayFail) {
    for (const double version : versions) {
        std::size_t whole = 0;
        const std::size_t allocations = failEveryAllocation([&] {
            open({.version = version});
            whole = host().members().all().size();
            close();
        });
        EXPECT_GT(whole, 46U) << "with no failure everything is registered";
        EXPECT_EQ(allocations > 0, version < 2012.0 || (version >= 2013.0 && version < 3000.0)) << version;
    }
}

TEST_F(Robustness, EveryCreationByTheHostMayFail) {
    for (const ApplicationKind application : {ApplicationKind::console, ApplicationKind::desktop}) {
        open({.application = application});
        for (const Ref<Picture>& subject : subjects(application)) {
            for (const MemberCall& call : everyMemberCall()) {
                SCOPED_TRACE(call.name);
                host().failCreation(1000);
                call.run(host(), subject);
                const std::size_t creations = host().creations();
                for (std::size_t which = 0; which < creations; ++which) {
                    host().failCreation(which);
                    const Outcome outcome = call.run(host(), subject);
                    EXPECT_FALSE(call.makesPicture && outcome == Outcome::full) << "creation " << which;
                }
            }
        }
        close();
    }
}

}  // namespace
}  // namespace pxk::test
