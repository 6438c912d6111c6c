#include "frame/modules.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <vector>

#include "frame/allocation.h"
#include "frame/host_services.h"

namespace pxk {

namespace {

using Text = std::unique_ptr<char[]>;

constexpr HostWord moduleFunctionFlag = 0x10;
constexpr std::size_t longestDeclaration = 999;
constexpr std::size_t longestName = 99;

bool isEmpty(const char* text) { return text == nullptr || *text == '\0'; }

// The pieces joined, truncated to `longest` characters.
Text join(std::size_t longest, std::initializer_list<const char*> pieces) {
    Text joined = allocateZeroed<char>(longest + 1);
    if (joined == nullptr) return nullptr;
    std::size_t length = 0;
    for (const char* piece : pieces) {
        const std::size_t taken = std::min(std::strlen(piece), longest - length);
        std::memcpy(joined.get() + length, piece, taken);
        length += taken;
    }
    return joined;
}

Text copyUpTo(const char* text, const char* end) {
    Text copy = allocateZeroed<char>(static_cast<std::uint64_t>(end - text) + 1);
    if (copy != nullptr) std::memcpy(copy.get(), text, static_cast<std::size_t>(end - text));
    return copy;
}

REALmoduleDefinition* newModule(Text name, std::unique_ptr<REALmethodDefinition[]> methods, std::size_t count) {
    auto module = allocateZeroed<REALmoduleDefinition>(1);
    if (name == nullptr || methods == nullptr || module == nullptr) return nullptr;
    module[0].version = 13;
    module[0].name = name.release();
    module[0].methods = methods.release();
    module[0].methodCount = static_cast<HostWord>(count);
    return module.release();
}

// Module methods under construction: their declarations are freed with them unless the module is finished.
class ModuleMethods {
  public:
    explicit ModuleMethods(std::size_t capacity)
        : methods_(allocateZeroed<REALmethodDefinition>(capacity)), texts_(allocateZeroed<Text>(capacity)) {}

    bool allocated() const { return methods_ != nullptr && texts_ != nullptr; }

    bool add(HostFunction function, Text declaration, const REALmethodDefinition& model) {
        if (declaration == nullptr) return false;
        methods_[count_] = {.function = function,
                            .setter = nullptr,
                            .declaration = declaration.get(),
                            .flags = model.flags | moduleFunctionFlag,
                            .attributeCount = model.attributeCount,
                            .attributes = model.attributes};
        texts_[count_++] = std::move(declaration);
        return true;
    }

    REALmoduleDefinition* finish(Text name) {
        REALmoduleDefinition* module = newModule(std::move(name), std::move(methods_), count_);
        if (module == nullptr) return nullptr;
        for (std::size_t i = 0; i < count_; ++i) static_cast<void>(texts_[i].release());
        return module;
    }

  private:
    std::unique_ptr<REALmethodDefinition[]> methods_;
    std::unique_ptr<Text[]> texts_;
    std::size_t count_ = 0;
};

}  // namespace

bool hostTakesModules() { return rbversion >= 2013.0 && rbversion < 3000.0; }

std::unique_ptr<char[]> AddClassParameter(const char* declaration, const char* className) {
    if (isEmpty(declaration)) return nullptr;
    const char* end = declaration + std::strcspn(declaration, " (");
    const Text name = copyUpTo(declaration, end);
    if (name == nullptr) return nullptr;
    if (*end == ' ') return join(longestDeclaration, {name.get(), "(extends ref as ", className, ")", end});
    if (*end == '(') return join(longestDeclaration, {name.get(), "(extends ref as ", className, ", ", end + 1});
    return join(longestDeclaration, {name.get(), "(extends ref as ", className, ")"});
}

std::unique_ptr<char[]> setterDeclaration(const char* declaration, const char* className) {
    const Text getter = AddClassParameter(declaration, className);
    if (getter == nullptr) return nullptr;
    const char* text = getter.get();
    const char* close = std::strchr(text, ')');
    const char* end = close != nullptr ? close : text + std::strcspn(text, " ");
    const Text front = copyUpTo(text, end);
    if (front == nullptr) return nullptr;
    return close != nullptr ? join(longestDeclaration, {front.get(), ", assigns value", close + 1, ")"})
                            : join(longestDeclaration, {front.get(), "(assigns value", end, ")"});
}

REALmoduleDefinition* buildExtensionModule(const REALclassDefinition& extension, const char* partName) {
    const std::span methods(extension.methods, static_cast<std::size_t>(extension.methodCount));
    std::size_t count = 0;
    for (const REALmethodDefinition& method : methods) {
        count += (method.setter != nullptr ? 1U : 0U) + (method.function != nullptr ? 1U : 0U);
    }
    ModuleMethods built(count);
    if (!built.allocated()) return nullptr;
    for (const REALmethodDefinition& method : methods) {
        if (method.setter != nullptr &&
            !built.add(method.setter, setterDeclaration(method.declaration, extension.name), method)) {
            return nullptr;
        }
        if (method.function != nullptr &&
            !built.add(method.function, AddClassParameter(method.declaration, extension.name), method)) {
            return nullptr;
        }
    }
    return built.finish(join(longestName, {extension.name, partName, "ExtensionPXK"}));
}

REALmoduleDefinition* buildGlobalsModule(std::span<const REALmethodDefinition> methods, const char* partName) {
    auto copies = allocateZeroed<REALmethodDefinition>(methods.size());
    if (copies == nullptr) return nullptr;
    for (std::size_t i = 0; i < methods.size(); ++i) {
        copies[i] = methods[i];
        copies[i].flags |= moduleFunctionFlag;
    }
    return newModule(join(longestName, {partName, "GlobalsPXK"}), std::move(copies), methods.size());
}

}  // namespace pxk
