// The C interface: a host opened and closed, and what the plugin registered.
#include <atomic>
#include <cmath>
#include <memory>
#include <string>
#include <thread>

#include "host/c_interface.h"

using namespace pxkhost;

// The C enumerations are those of C++ under other names.
static_assert(PXK_PICTURE_METHOD == static_cast<int>(MemberKind::pictureMethod));
static_assert(PXK_CLASS_PROPERTY == static_cast<int>(MemberKind::classProperty));
static_assert(PXK_CONSOLE == static_cast<int>(ApplicationKind::console));
static_assert(PXK_DESKTOP == static_cast<int>(ApplicationKind::desktop));

namespace {

/// What pxk_open() handed out last, until it is closed.
struct OpenHandle {
    std::atomic<const pxk_host*> host = nullptr;
    std::thread::id opener;  ///< written before `host`
};

OpenHandle& openHandle() {
    static OpenHandle handle;
    return handle;
}

void checkVersion(double version) {
    if (std::isfinite(version) && version >= 0) return;
    throw HostError("host_version is " + std::to_string(version) +
                    "; use a version such as 2013.04, or 0 for the newest");
}

}  // namespace

std::string& pxkhost::processError() {
    static thread_local std::string error;
    return error;
}

bool pxkhost::isUsable(const pxk_host* host) {
    const OpenHandle& open = openHandle();
    return host != nullptr && open.host == host && open.opener == std::this_thread::get_id();
}

void pxkhost::requireUsable(const pxk_host* host) {
    if (isUsable(host)) return;
    required(host, "host");
    if (openHandle().host != host)
        throw HostError("argument \"host\" is not the open host; it was closed, or did not come from pxk_open");
    throw HostError("the host was opened in another thread; make all calls from the one that called pxk_open");
}

extern "C" {

pxk_host* pxk_open(const pxk_options* options) {
    return reported<pxk_host*>(processError(), nullptr, [&] {
        Options chosen;
        if (options != nullptr) {
            if (options->plugin_path != nullptr) chosen.plugin = options->plugin_path;
            checkVersion(options->host_version);
            if (options->host_version != 0) chosen.version = options->host_version;
            const int application = numberOf(options->application);
            if (application != PXK_CONSOLE && application != PXK_DESKTOP)
                throw HostError("application kind " + std::to_string(application) +
                                " is unknown; use PXK_CONSOLE or PXK_DESKTOP");
            chosen.application = static_cast<ApplicationKind>(application);
        }
        auto* const host = new pxk_host(std::move(chosen));
        openHandle().opener = std::this_thread::get_id();
        openHandle().host = host;
        return host;
    });
}

int pxk_close(pxk_host* host) {
    return reported<int>(processError(), PXK_FAILED, [&]() -> int {
        if (host == nullptr) return PXK_OK;
        requireUsable(host);
        openHandle().host = nullptr;
        const std::unique_ptr<pxk_host> closing(host);
        std::string all;
        for (const std::string& problem : closing->host.close()) all += (all.empty() ? "" : "; ") + problem;
        if (!all.empty()) throw HostError(all);
        return PXK_OK;
    });
}

const char* pxk_last_error(const pxk_host* host) {
    return isUsable(host) ? host->lastError.c_str() : processError().c_str();
}

const char* pxk_version(void) { return PXK_VERSION; }

const char* pxk_inspect(pxk_host* host) {
    return guarded<const char*>(host, nullptr, [&] {
        pxk_host& open = required(host, "host");
        open.inspected = open.host.inspect();
        return open.inspected.c_str();
    });
}

size_t pxk_member_count(pxk_host* host) {
    return guarded<size_t>(host, 0, [&] { return host->host.members().all().size(); });
}

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
    return guarded<const char*>(host, nullptr, [&]() -> const char* {
        const auto& classes = host->host.registry().classes();
        return index < classes.size() ? classes[index].name.c_str() : nullptr;
    });
}

}  // extern "C"
