/// The options that choose the host: --host-version, --application and --plugin.
#include "tool/commands/command.h"

namespace pxk::tool {
namespace {

/// The error message for a text that is no host version; empty when it is one. NaN fails every comparison.
std::string checkVersion(const std::string& written) {
    double version = 0;
    const bool isVersion = CLI::detail::lexical_cast(written, version) && version >= 1 && version <= 1e6;
    return isVersion ? "" : "expected a number from 1 to 1000000, such as 2013.04, not " + written;
}

std::string checkApplication(const std::string& written) {
    return written == "console" || written == "desktop" ? "" : "expected console or desktop, not " + written;
}

}  // namespace

void addHostOptions(CLI::App& command, chain::HostOptions& host) {
    const char* group = "Host";
    command.add_option("--host-version", host.version, "The version of the host, such as 2013.04")
        ->check(checkVersion)
        ->type_name("VERSION")
        ->group(group);
    command
        .add_option("--application", host.application, "The kind of application: console or desktop (default console)")
        ->check(checkApplication)
        ->type_name("KIND")
        ->group(group);
    command.add_option("--plugin", host.plugin, "The plugin to load (default: the one beside this program)")
        ->type_name("PATH")
        ->group(group);
}

chain::HostOptions exactHost(chain::HostOptions host) {
    if (host.application.empty()) host.application = "desktop";
    return host;
}

}  // namespace pxk::tool
