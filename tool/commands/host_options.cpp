#include "tool/commands/command.h"

namespace pxk::tool {
namespace {

/// What is wrong with a version; nothing when it is empty. NaN compares false with everything, so it is refused too.
std::string isVersion(const std::string& written) {
    double version = 0;
    const bool isNumber = CLI::detail::lexical_cast(written, version);
    return isNumber && version >= 1 && version <= 1e6 ? ""
                                                      : "a host version is a number such as 2013.04, not " + written;
}

}  // namespace

void addHostOptions(CLI::App& command, chain::HostOptions& host) {
    const char* group = "Host";
    command.add_option("--host-version", host.version, "The version of the host, such as 2013.04")
        ->check(isVersion)
        ->type_name("VERSION")
        ->group(group);
    command
        .add_option("--application", host.application, "The kind of application: console or desktop (default console)")
        ->check(CLI::IsMember({"console", "desktop"}).description(""))
        ->type_name("KIND")
        ->group(group);
    command.add_option("--plugin", host.plugin, "The plugin to load (default: the one beside this program)")
        ->type_name("PATH")
        ->group(group);
}

}  // namespace pxk::tool
