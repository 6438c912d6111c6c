#include "host/registration/registry.h"

#include <algorithm>
#include <cstring>

#include "host/objects/instances.h"
#include "host/registration/declarations.h"

namespace pxkhost {

namespace {

// Records of a version below this one have the old layouts.
constexpr pxk::HostWord firstNewLayout = 10;

/// The word counts of a record in both layouts.
struct Layout {
    std::size_t newWords;
    std::size_t oldWords;
    std::size_t words(bool old) const { return old ? oldWords : newWords; }
};

constexpr Layout methodLayout{pxk::wordCount<pxk::REALmethodDefinition>, 4};
constexpr Layout propertyLayout{pxk::wordCount<pxk::REALproperty>, 10};
constexpr Layout classLayout{pxk::wordCount<pxk::REALclassDefinition>, 25};
constexpr Layout moduleLayout{pxk::wordCount<pxk::REALmoduleDefinition>, 12};

Words readWords(const void* record, std::size_t count) {
    Words words(count);
    std::memcpy(words.data(), record, count * sizeof(pxk::HostWord));
    return words;
}

/// A record from its words; what an old layout lacks is 0.
template <class Record>
Record decode(const Words& words) {
    Record record{};
    std::memcpy(static_cast<void*>(&record), words.data(), words.size() * sizeof(pxk::HostWord));
    return record;
}

std::string textOf(const char* text) { return text != nullptr ? text : ""; }

MethodRecord readMethod(const void* address, bool old) {
    MethodRecord method;
    method.words = readWords(address, methodLayout.words(old));
    const auto record = decode<pxk::REALmethodDefinition>(method.words);
    method.function = record.function;
    method.setter = record.setter;
    method.declaration = textOf(record.declaration);
    method.flags = record.flags;
    for (pxk::HostWord i = 0; record.attributes != nullptr && i < record.attributeCount; ++i)
        method.attributes.emplace_back(textOf(record.attributes[i].name), textOf(record.attributes[i].value));
    return method;
}

PropertyRecord readProperty(const void* address, bool old) {
    PropertyRecord property;
    property.words = readWords(address, propertyLayout.words(old));
    const auto record = decode<pxk::REALproperty>(property.words);
    property.name = textOf(record.name);
    property.type = textOf(record.type);
    property.flags = record.flags;
    property.getter = record.getter;
    property.setter = record.setter;
    property.parameter = record.parameter;
    return property;
}

/// Reads `count` records that follow each other in memory.
template <class Record>
std::vector<Record> readArray(const void* first, pxk::HostWord count, bool old, const Layout& layout,
                              Record (*read)(const void*, bool)) {
    std::vector<Record> records;
    const auto* const bytes = static_cast<const std::byte*>(first);
    for (pxk::HostWord i = 0; bytes != nullptr && i < count; ++i)
        records.push_back(read(bytes + static_cast<std::size_t>(i) * layout.words(old) * sizeof(pxk::HostWord), old));
    return records;
}

bool hasOldLayout(const void* record) { return readWords(record, 1)[0] < firstNewLayout; }

ClassRecord readClass(const void* address) {
    const bool old = hasOldLayout(address);
    ClassRecord result;
    result.words = readWords(address, classLayout.words(old));
    const auto record = decode<pxk::REALclassDefinition>(result.words);
    result.name = textOf(record.name);
    result.dataSize = record.dataSize;
    result.constructor = record.constructor;
    result.destructor = record.destructor;
    result.flags = record.flags;
    result.properties = readArray(record.properties, record.propertyCount, old, propertyLayout, readProperty);
    result.methods = readArray(record.methods, record.methodCount, old, methodLayout, readMethod);
    result.sharedProperties =
        readArray(record.sharedProperties, record.sharedPropertyCount, old, propertyLayout, readProperty);
    result.sharedMethods = readArray(record.sharedMethods, record.sharedMethodCount, old, methodLayout, readMethod);
    return result;
}

/// A plugin gives its records away for the life of the process, so they must be reachable even when the registry and
/// the plugin's own memory are gone.
void keepForTheProcess(const Words& words) {
    static auto* const kept = new std::vector<Words>;
    kept->push_back(words);
}

}  // namespace

bool PropertyRecord::isField() const {
    const auto isMarked = [](void* word) { return reinterpret_cast<pxk::HostWord>(word) == pxk::directField; };
    return isMarked(getter) && isMarked(setter);
}

void Registry::declareVersion(std::int32_t version) { declaredVersions_.push_back(version); }

void Registry::addClass(pxk::REALclassDefinition& record) {
    ClassRecord added = readClass(&record);
    keepForTheProcess(added.words);
    // Every class gets another offset, so that a plugin that mixes its classes up is found out.
    added.instanceOffset = static_cast<pxk::HostWord>(instanceAlignment * (classes_.size() + 1));
    record.hostWord = added.instanceOffset;
    order_.push_back({Registration::Kind::classRecord, classes_.size()});
    classes_.push_back(std::move(added));
}

void Registry::addExtension(pxk::REALclassDefinition& record) {
    order_.push_back({Registration::Kind::extension, extensions_.size()});
    extensions_.push_back(readClass(&record));
    keepForTheProcess(extensions_.back().words);
    extensions_.back().isExtension = true;
}

void Registry::addModule(const pxk::REALmoduleDefinition& record) {
    const bool old = hasOldLayout(&record);
    ModuleRecord added;
    added.words = readWords(&record, moduleLayout.words(old));
    keepForTheProcess({reinterpret_cast<pxk::HostWord>(&record)});
    const auto decoded = decode<pxk::REALmoduleDefinition>(added.words);
    added.name = textOf(decoded.name);
    added.methods = readArray(decoded.methods, decoded.methodCount, old, methodLayout, readMethod);
    order_.push_back({Registration::Kind::module, modules_.size()});
    modules_.push_back(std::move(added));
}

void Registry::addGlobalMethod(const pxk::REALmethodDefinition& record) {
    order_.push_back({Registration::Kind::globalMethod, globalMethods_.size()});
    // A global method has six words on every host.
    globalMethods_.push_back(readMethod(&record, false));
}

const ClassRecord* Registry::findClass(std::string_view name) const {
    const std::string wanted = normalised(name);
    for (const ClassRecord& record : classes_)
        if (normalised(record.name) == wanted) return &record;
    return nullptr;
}

}  // namespace pxkhost
