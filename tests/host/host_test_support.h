// What the host's own tests share: hosts on the tests' own plugin, and hosts without any plugin.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "support/host_fixture.h"

namespace pxktest {

/// Opens hosts on the tests' own plugin. Its members are an extension and global methods below 2013.0, and a smaller
/// choice of them a module from there on.
class DoubleTest : public HostTest {
  protected:
    static constexpr double extensionHost = 2012.5;
    static constexpr double moduleHost = 2019.03;

    Host& openDouble(double version = extensionHost, ApplicationKind application = ApplicationKind::console) {
        return open({.plugin = PXK_DOUBLE_PLUGIN, .version = version, .application = application});
    }
};

/// Opens hosts without a plugin, whose services the test calls as a plugin would.
class ServiceTest : public HostTest {
  protected:
    Host& openBare(Options options = {}) {
        options.entry = [](pxk::HostResolver resolver) { resolver_ = resolver; };
        return open(std::move(options));
    }
    Host& openBareDesktop(double version = newestVersion) {
        return openBare({.version = version, .application = ApplicationKind::desktop});
    }

    /// A service of the open host as a function; nil when it is denied.
    template <class Signature>
    static Signature* service(const char* name) {
        return reinterpret_cast<Signature*>(resolver_(name));
    }

    inline static pxk::HostResolver resolver_ = nullptr;
};

/// The message of the HostError that an action throws; "" when it throws none.
template <class Action>
std::string errorOf(Action action) {
    try {
        action();
    } catch (const HostError& error) {
        return error.what();
    }
    return "";
}

}  // namespace pxktest
