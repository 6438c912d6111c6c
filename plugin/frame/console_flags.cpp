#include "frame/console_flags.h"

#include "frame/host_services.h"

namespace pxk {

namespace {

template <class Record>
void fixAll(Record* records, HostWord count) {
    if (records == nullptr) return;
    for (HostWord i = 0; i < count; ++i) records[i].flags = consoleFlags(records[i].flags);
}

}  // namespace

HostWord consoleFlags(HostWord flags) {
    if (rbversion >= 2010.029) {
        if (flags & 0x40000) flags |= 0x4;
        if (flags & 0x80000) flags |= 0x8;
    }
    return flags & ~HostWord{0x40000 | 0x80000};
}

void FixConsoleFlags(REALclassDefinition* definition) {
    definition->flags = consoleFlags(definition->flags);
    fixAll(definition->methods, definition->methodCount);
    fixAll(definition->sharedMethods, definition->sharedMethodCount);
    fixAll(definition->properties, definition->propertyCount);
    fixAll(definition->sharedProperties, definition->sharedPropertyCount);
}

}  // namespace pxk
