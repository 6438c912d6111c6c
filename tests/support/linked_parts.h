/// The plugin's parts linked into the test program, working in a host of any version.
#pragma once

#include "frame/host_services.h"
#include "support/host_fixture.h"

namespace pxk::test {

/// Tests of single parts. The host loads the plugin as usual, and the parts linked into this program use the same host.
/// They ask for each service once per process, so what a host lacks has to be tried through the loaded plugin.
class LinkedParts : public pxktest::HostTest {
  protected:
    void openAt(double version, pxkhost::Personality personality = pxkhost::Personality::console) {
        open({.version = version, .personality = personality});
        gResolver = [](const char* name) { return pxkhost::Host::current().resolve(name); };
        rbversion = version;
    }
};

}  // namespace pxk::test
