#include "frame/plugin_main.h"

#include <algorithm>
#include <memory>

#include "frame/console_flags.h"
#include "frame/host_services.h"
#include "frame/modules.h"
#include "frame/old_layouts.h"
#include "frame/registration_tables.h"

namespace pxk {

namespace {

constexpr const char* partName = "Picture";

std::int32_t controlVersion() {
    if (rbversion >= 2013.04) return 13;
    if (rbversion >= 2013.03) return 12;
    if (rbversion >= 2013.0) return 11;
    if (rbversion >= 2012.0) return 10;
    return 9;
}

bool hostTakesNewLayouts() { return CurrentREALControlVersion > 9; }

// Hosts of the old layouts read the first words of the static record itself, so the converted record is copied back
// over it: the host word that the host writes at registration must land where the class will look for it.
void registerRecord(REALclassDefinition& definition, void (*registerClass)(REALclassDefinition*)) {
    if (hostTakesNewLayouts()) {
        definition.version = CurrentREALControlVersion;
    } else {
        const std::unique_ptr<HostWord[]> old(FixClass(&definition));
        if (old == nullptr) return;
        std::copy_n(old.get(), oldClassWords, reinterpret_cast<HostWord*>(&definition));
    }
    registerClass(&definition);
}

void registerClass(REALclassDefinition& definition) {
    definition.dataSize = (definition.dataSize + 15) & ~HostWord{15};
    registerRecord(definition, REALRegisterClass);
}

void registerModule(REALmoduleDefinition* module) {
    if (module == nullptr) return;
    if (hostTakesNewLayouts()) {
        module->version = CurrentREALControlVersion;
        REALRegisterModule(module);
    } else if (HostWord* old = FixModule(module)) {
        REALRegisterModule(reinterpret_cast<REALmoduleDefinition*>(old));
    }
}

void registerExtension() {
    if (hostTakesModules() && pictureClass.methodCount > 0) {
        registerModule(buildExtensionModule(pictureClass, partName));
    } else {
        registerRecord(pictureClass, REALRegisterClassExtension);
    }
}

void registerGlobalMethods() {
    if (hostTakesModules()) {
        registerModule(buildGlobalsModule(pluginGlobalMethods(), partName));
    } else {
        for (REALmethodDefinition& method : pluginGlobalMethods()) REALRegisterMethod(&method);
    }
}

void fixFlags() {
    for (REALclassDefinition* definition : pluginClasses()) FixConsoleFlags(definition);
    FixConsoleFlags(&pictureClass);
    for (REALmethodDefinition& method : pluginGlobalMethods()) method.flags = consoleFlags(method.flags);
}

}  // namespace

}  // namespace pxk

extern "C" void REALPluginMain(pxk::HostResolver resolver) {
    using namespace pxk;
    gResolver = resolver;
    askHostVersion();
    CurrentREALControlVersion = controlVersion();
    announceControlVersion();
    fixFlags();
    for (REALclassDefinition* definition : pluginClasses()) registerClass(*definition);
    registerExtension();
    registerGlobalMethods();
}
