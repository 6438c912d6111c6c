/// What the plugin registered, kept word by word and decoded.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "plugin/frame/host_records.h"

namespace pxkhost {

using Words = std::vector<pxk::HostWord>;

/// A method record: six words, or four in the old layout of classes and modules.
struct MethodRecord {
    Words words;
    void* function = nullptr;
    void* setter = nullptr;
    std::string declaration;
    pxk::HostWord flags = 0;
    std::vector<std::pair<std::string, std::string>> attributes;
};

/// A property record: twelve words, or ten in the old layout.
struct PropertyRecord {
    Words words;
    std::string name;
    std::string type;
    pxk::HostWord flags = 0;
    void* getter = nullptr;
    void* setter = nullptr;
    pxk::HostWord parameter = 0;

    /// True when the host reads and writes the instance data itself.
    bool isField() const;
};

/// A class or class extension: 29 words, or 25 in the old layout.
struct ClassRecord {
    bool isExtension = false;
    Words words;  ///< as they were passed, before the host wrote its word
    std::string name;
    pxk::HostWord dataSize = 0;
    pxk::HostWord instanceOffset = 0;  ///< what the host wrote: from an instance's handle to its data
    void* constructor = nullptr;
    void* destructor = nullptr;
    pxk::HostWord flags = 0;
    std::vector<PropertyRecord> properties;
    std::vector<MethodRecord> methods;
    std::vector<PropertyRecord> sharedProperties;
    std::vector<MethodRecord> sharedMethods;
};

/// A module: 24 words, or 12 in the old layout.
struct ModuleRecord {
    Words words;
    std::string name;
    std::vector<MethodRecord> methods;
};

/// Which of the lists a registration went to, and its place there.
struct Registration {
    enum class Kind { classRecord, extension, module, globalMethod };
    Kind kind;
    std::size_t index;
};

class Registry {
  public:
    void declareVersion(std::int32_t version);
    void addClass(pxk::REALclassDefinition& record);
    void addExtension(pxk::REALclassDefinition& record);
    void addModule(const pxk::REALmoduleDefinition& record);
    void addGlobalMethod(const pxk::REALmethodDefinition& record);

    /// Every version declared through RegisterPluginVersion.
    const std::vector<std::int32_t>& declaredVersions() const { return declaredVersions_; }
    const std::deque<ClassRecord>& classes() const { return classes_; }
    const std::deque<ClassRecord>& extensions() const { return extensions_; }
    const std::deque<ModuleRecord>& modules() const { return modules_; }
    const std::deque<MethodRecord>& globalMethods() const { return globalMethods_; }

    /// All registrations in the order they were made.
    const std::vector<Registration>& order() const { return order_; }

    /// A class registered by the plugin, in any letter case; nil when there is none.
    const ClassRecord* findClass(std::string_view name) const;

  private:
    std::vector<std::int32_t> declaredVersions_;
    std::deque<ClassRecord> classes_;
    std::deque<ClassRecord> extensions_;
    std::deque<ModuleRecord> modules_;
    std::deque<MethodRecord> globalMethods_;
    std::vector<Registration> order_;
};

/// Everything registered as text, one line a word, each with its field's name. Function addresses appear as "set" or
/// "nil" and flags in hexadecimal, so that the text is the same in every run.
std::string inspect(const Registry& registry);

}  // namespace pxkhost
