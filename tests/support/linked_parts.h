/// The plugin's parts linked into the test program, working in a host of any version.
#pragma once

#include <string_view>
#include <vector>

#include "frame/host_services.h"
#include "support/host_fixture.h"

namespace pxk::test {

/// Tests of single parts. The host loads the plugin as usual, and the parts linked into this program use the same host.
/// They ask for each service once per process, so what a host lacks has to be tried through the loaded plugin.
class LinkedParts : public pxktest::HostTest {
  protected:
    void openAt(double version, pxkhost::ApplicationKind application = pxkhost::ApplicationKind::console) {
        open({.version = version, .application = application});
        gResolver = resolve;
        rbversion = version;
        encodingsBuilt.clear();
    }

    /// The encodings of the strings that the linked parts have built since the host was opened; `noEncoding` for a
    /// string that was built without one.
    static inline std::vector<std::uint32_t> encodingsBuilt;
    static constexpr std::uint32_t noEncoding = 0xFFFFFFFF;

  private:
    template <class Service>
    static Service* service(const char* name) {
        return reinterpret_cast<Service*>(pxkhost::Host::current().resolve(name));
    }
    static REALstringStruct* buildString(const void* bytes, std::int32_t length) {
        encodingsBuilt.push_back(noEncoding);
        return service<REALstringStruct*(const void*, std::int32_t)>("REALBuildString")(bytes, length);
    }
    static REALstringStruct* buildWithEncoding(const void* bytes, std::int32_t length, std::uint32_t encoding) {
        encodingsBuilt.push_back(encoding);
        return service<REALstringStruct*(const void*, std::int32_t, std::uint32_t)>("REALBuildStringWithEncoding")(
            bytes, length, encoding);
    }
    static void* resolve(const char* name) {
        if (name == std::string_view("REALBuildString")) return reinterpret_cast<void*>(buildString);
        if (name == std::string_view("REALBuildStringWithEncoding")) return reinterpret_cast<void*>(buildWithEncoding);
        return pxkhost::Host::current().resolve(name);
    }
};

}  // namespace pxk::test
