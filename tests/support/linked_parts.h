/// The plugin's parts linked into the test program, working in a host of a version of choice.
#pragma once

#include "frame/host_services.h"
#include "support/host_fixture.h"

namespace pxk::test {

/// Tests of single parts. The host loads the plugin as ever; the parts linked into this program are pointed at it. They
/// ask for each service once per process, so what a host lacks has to be tried through the loaded plugin.
class LinkedParts : public pxktest::HostTest {
  protected:
    void openAt(double version, pxkhost::ApplicationKind application = pxkhost::ApplicationKind::console) {
        open({.version = version, .application = application});
        gResolver = [](const char* name) { return pxkhost::Host::current().resolve(name); };
        rbversion = version;
    }
};

}  // namespace pxk::test
