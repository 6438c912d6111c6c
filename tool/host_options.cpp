#include "command.h"

namespace pxk::tool {

void addHostOptions(CLI::App& command, HostOptions& host) {
    const char* group = "The host to be";
    command.add_option("--host-version", host.version, "Its version, such as 2013.04")
        ->check(CLI::Range(1.0, 1e6).description(""))
        ->type_name("VERSION")
        ->group(group);
    command.add_option("--personality", host.personality, "The kind of application: console or desktop")
        ->check(CLI::IsMember({"console", "desktop"}).description(""))
        ->type_name("KIND")
        ->group(group);
    command.add_option("--plugin", host.plugin, "The plugin's file; the one beside this program when left out")
        ->type_name("PATH")
        ->group(group);
}

}  // namespace pxk::tool
