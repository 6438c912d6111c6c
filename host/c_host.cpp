// The C interface: a host opened and closed, and what the plugin registered.
#include <memory>
#include <string>

#include "host/c_interface.h"

using namespace pxkhost;

// The C enumerations are those of C++ under other names.
static_assert(PXK_PICTURE_METHOD == static_cast<int>(MemberKind::pictureMethod));
static_assert(PXK_CLASS_PROPERTY == static_cast<int>(MemberKind::classProperty));
static_assert(PXK_CONSOLE == static_cast<int>(ApplicationKind::console));
static_assert(PXK_DESKTOP == static_cast<int>(ApplicationKind::desktop));

std::string& pxkhost::processError() {
    static std::string error;
    return error;
}

extern "C" {

pxk_host* pxk_open(const pxk_options* options) {
    return guarded<pxk_host*>(nullptr, nullptr, [&] {
        Options chosen;
        if (options != nullptr) {
            if (options->plugin_path != nullptr) chosen.plugin = options->plugin_path;
            if (options->host_version != 0) chosen.version = options->host_version;
            const int application = numberOf(options->application);
            if (application != PXK_CONSOLE && application != PXK_DESKTOP)
                throw HostError("application kind " + std::to_string(application) +
                                " is unknown; use PXK_CONSOLE or PXK_DESKTOP");
            chosen.application = static_cast<ApplicationKind>(application);
        }
        return new pxk_host(std::move(chosen));
    });
}

int pxk_close(pxk_host* host) {
    return guarded<int>(nullptr, PXK_FAILED, [&]() -> int {
        const std::unique_ptr<pxk_host> closing(host);
        if (!closing) return PXK_OK;
        std::string all;
        for (const std::string& problem : closing->host.close()) all += (all.empty() ? "" : "; ") + problem;
        if (!all.empty()) throw HostError(all);
        return PXK_OK;
    });
}

const char* pxk_last_error(const pxk_host* host) {
    return host != nullptr ? host->lastError.c_str() : processError().c_str();
}

const char* pxk_version(void) { return PXK_VERSION; }

const char* pxk_inspect(pxk_host* host) {
    return guarded<const char*>(host, nullptr, [&] {
        pxk_host& open = required(host, "host");
        open.inspected = open.host.inspect();
        return open.inspected.c_str();
    });
}

size_t pxk_member_count(pxk_host* host) { return host != nullptr ? host->host.members().all().size() : 0; }

pxk_member pxk_member_at(pxk_host* host, size_t index) {
    pxk_member result{};
    if (index >= pxk_member_count(host)) return result;
    const Member& member = host->host.members().all()[index];
    const std::string& deprecated = host->deprecated[index];
    result.kind = static_cast<pxk_member_kind>(member.kind);
    result.owner = member.owner.c_str();
    result.name = member.declaration.name.c_str();
    result.declaration = member.declaration.text.c_str();
    result.deprecated = deprecated.empty() ? nullptr : deprecated.c_str();
    result.has_setter = member.setter != nullptr ? 1 : 0;
    return result;
}

const char* pxk_class_at(pxk_host* host, size_t index) {
    if (host == nullptr || index >= host->host.registry().classes().size()) return nullptr;
    return host->host.registry().classes()[index].name.c_str();
}

}  // extern "C"
