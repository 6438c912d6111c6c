#include "host/host.h"

#include <dlfcn.h>
#include <malloc.h>

#include <algorithm>
#include <list>
#include <utility>

#include "host/calls/caller.h"
#include "host/registration/default_values.h"
#include "host/services.h"

namespace pxkhost {

namespace {

// Hosts below this version need an unlock also after a lock that was refused.
constexpr double firstVersionWithoutUndo = 2012.0;

/// Keeps the memory of freed pictures in the process: making a picture again then costs no page faults, which would be
/// several times the price of the picture itself.
void keepFreedMemory() {
    mallopt(M_MMAP_MAX, 0);
    mallopt(M_TRIM_THRESHOLD, -1);
    mallopt(M_TOP_PAD, 16 << 20);
}

/// The file that this code was loaded from.
std::filesystem::path ownLibrary() {
    Dl_info self{};
    return dladdr(reinterpret_cast<const void*>(&ownLibrary), &self) != 0 ? self.dli_fname : "";
}

/// Makes this library's symbols visible to plugins, even where it was itself loaded privately, as bindings of other
/// languages do.
void publishOwnSymbols() {
    if (void* const library = dlopen(ownLibrary().c_str(), RTLD_NOW | RTLD_NOLOAD | RTLD_GLOBAL)) dlclose(library);
}

/// The records of every plugin opened so far, which a host keeps as long as it runs.
std::list<Registry>& oldRegistries() {
    static auto& registries = *new std::list<Registry>;
    return registries;
}

void* resolveForCurrent(const char* name) { return Host::current().resolve(name); }

std::string ownerOf(const Object* self) {
    if (self == nullptr) return "";
    if (self->kind() == Object::Kind::picture) return "Picture";
    if (self->kind() == Object::Kind::instance) return static_cast<const Instance*>(self)->className();
    throw HostError(self->describe() + " has no members; call on a picture or an instance of a class");
}

/// Converts every argument to its parameter's kind and fills in what was left out.
void complete(std::vector<Value>& arguments, const Declaration& declaration) {
    arguments.resize(declaration.parameters.size());
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const Parameter& parameter = declaration.parameters[i];
        if (arguments[i].kind == ValueKind::nothing)
            arguments[i] = parameter.defaultText ? defaultValue(parameter) : Value::zeroOf(parameter.type.kind);
        else
            arguments[i] = arguments[i].as(parameter.type.kind).value();
    }
}

}  // namespace

Host* Host::current_ = nullptr;

Host::Host(Options options) : options_(std::move(options)) {
    if (isOpen()) throw HostError("a host is open already; close it before opening another");
    missing_.insert(options_.missing.begin(), options_.missing.end());
    keepFreedMemory();
    publishOwnSymbols();
    Accounting::instance().startAfresh();
    current_ = this;
    try {
        load();
    } catch (...) {
        close();
        throw;
    }
}

Host::~Host() { close(); }

void Host::load() {
    PluginMain entry = options_.entry;
    if (entry == nullptr) {
        if (options_.plugin.empty()) options_.plugin = ownLibrary().replace_filename("PicturePXK" PXK_MODULE_SUFFIX);
        library_ = dlopen(options_.plugin.c_str(), RTLD_NOW | RTLD_LOCAL);
        if (library_ == nullptr) throw HostError(std::string("cannot load the plugin: ") + dlerror());
        entry = reinterpret_cast<PluginMain>(dlsym(library_, "REALPluginMain"));
        if (entry == nullptr)
            throw HostError(options_.plugin.string() + " is not a plugin: it has no function REALPluginMain");
    }
    loaded_ = std::make_shared<bool>(true);
    entry(resolveForCurrent);
    members_.collect(registry_);
}

std::vector<std::string> Host::close() {
    if (current_ != this) return {};
    if (const Ref<Exception> exception = pending_.take())
        accounting().addProblem(exception->describe() + " was raised and never thrown");

    std::vector<std::string> problems = accounting().takeProblems();
    for (const std::string& line : accounting().openLocks()) problems.push_back(line);
    for (const std::string& line : accounting().living()) problems.push_back("leaked: " + line);

    accounting().startAfresh();
    oldRegistries().push_back(std::exchange(registry_, {}));
    current_ = nullptr;
    loaded_ = nullptr;
    if (library_ != nullptr) {
        dlclose(std::exchange(library_, nullptr));
        if (void* const still = dlopen(options_.plugin.c_str(), RTLD_NOW | RTLD_NOLOAD)) {
            dlclose(still);
            problems.push_back(options_.plugin.string() + " stayed loaded after dlclose");
        }
    }
    return problems;
}

void* Host::resolve(const char* name) {
    asked_.emplace_back(name);
    if (!offers(name)) return nullptr;
    const auto replaced = replaced_.find(name);
    return replaced != replaced_.end() ? replaced->second : findService(name);
}

std::size_t Host::timesAsked(std::string_view name) const {
    return static_cast<std::size_t>(std::count(asked_.begin(), asked_.end(), name));
}

void Host::failCreation(std::size_t which) {
    creations_ = 0;
    creationToFail_ = which;
}

bool Host::creationFails() {
    const std::size_t place = creations_++;
    return creationToFail_ == place;
}

std::string Host::inspect() const { return pxkhost::inspect(registry_); }

Ref<Picture> Host::newPicture(int width, int height) const {
    if (width < 1 || height < 1) return nullptr;
    if (options_.application == ApplicationKind::desktop) return Picture::desktop(width, height, options_.newPictures);
    return Picture::console(width, height);
}

bool Host::construct(Picture& picture, int width, int height) const {
    if (options_.application == ApplicationKind::desktop)
        return picture.constructDesktop(width, height, options_.newPictures);
    return picture.constructConsole(width, height);
}

LockRules Host::lockRules() const {
    if (options_.version >= firstVersionWithoutUndo) return {};
    // A plugin cannot distinguish a lock service that is missing from a lock that is refused, and undoes both.
    return {.refusalsAreUnlocked = true, .missingLocksAreUnlocked = !offers("REALLockPictureDescription")};
}

Ref<Instance> Host::newInstance(std::string_view className) const {
    if (const ClassRecord* const record = registry_.findClass(className)) return newInstance(*record);
    std::vector<std::string> names;
    for (const ClassRecord& record : registry_.classes()) names.push_back(record.name);
    const std::string nearest = nearestName(className, names);
    throw HostError("the plugin has no class \"" + std::string(className) + "\"" +
                    (nearest.empty() ? "" : "; did you mean " + nearest + "?"));
}

Ref<Instance> Host::newInstance(const ClassRecord& record) const {
    return Instance::make({.name = record.name,
                           .dataSize = static_cast<std::size_t>(record.dataSize),
                           .offset = static_cast<std::size_t>(record.instanceOffset),
                           .constructor = reinterpret_cast<InstanceClass::Function>(record.constructor),
                           .destructor = reinterpret_cast<InstanceClass::Function>(record.destructor),
                           .plugin = loaded_});
}

Value Host::property(Instance& instance, std::string_view name) {
    Value value = getProperty(instance, members_.property(instance.className(), name));
    throwPending();
    return value;
}

void Host::setProperty(Instance& instance, std::string_view name, const Value& value) {
    pxkhost::setProperty(instance, members_.property(instance.className(), name), value);
    throwPending();
}

const Member& Host::find(const Object* self, std::string_view name, std::span<const Value> arguments) const {
    return members_.byCall(ownerOf(self), name, arguments);
}

Value Host::call(const Member& member, Object* self, std::vector<Value>& arguments) {
    complete(arguments, member.declaration);
    Value result = callFunction(member.function, self, member.declaration, arguments);
    throwPending();
    return result;
}

Value Host::call(Object* self, std::string_view name, std::vector<Value> arguments) {
    return call(find(self, name, arguments), self, arguments);
}

void Host::assignByName(Object* self, std::string_view name, std::vector<Value> arguments, const Value& value) {
    const Member& member = members_.byAssignment(ownerOf(self), name, arguments, value);
    complete(arguments, member.declaration);
    const Value converted = value.as(member.declaration.result.kind).value();
    callFunction(member.setter, self, member.declaration, arguments, &converted);
    throwPending();
}

}  // namespace pxkhost
