// Everything registered as text, word by word; declared in registry.h.
#include <array>
#include <span>
#include <sstream>

#include "host/registration/registry.h"

namespace pxkhost {

namespace {

/// How a word reads best.
enum class Show { number, flags, text, address };

struct Field {
    const char* name;
    Show show;
};

constexpr std::array<Field, 6> methodFields{{{"function", Show::address},
                                             {"setter", Show::address},
                                             {"declaration", Show::text},
                                             {"flags", Show::flags},
                                             {"attribute count", Show::number},
                                             {"attributes", Show::address}}};

constexpr std::array<Field, 12> propertyFields{{{"group", Show::text},
                                                {"name", Show::text},
                                                {"type", Show::text},
                                                {"flags", Show::flags},
                                                {"getter", Show::address},
                                                {"setter", Show::address},
                                                {"parameter", Show::number},
                                                {"reserved 1", Show::number},
                                                {"reserved 2", Show::number},
                                                {"reserved 3", Show::number},
                                                {"reserved 4", Show::number},
                                                {"reserved 5", Show::number}}};

constexpr std::array<Field, 29> classFields{{{"version", Show::number},
                                             {"name", Show::text},
                                             {"super name", Show::text},
                                             {"data size", Show::number},
                                             {"host word", Show::number},
                                             {"constructor", Show::address},
                                             {"destructor", Show::address},
                                             {"properties", Show::address},
                                             {"property count", Show::number},
                                             {"methods", Show::address},
                                             {"method count", Show::number},
                                             {"events", Show::address},
                                             {"event count", Show::number},
                                             {"event instances", Show::address},
                                             {"event instance count", Show::number},
                                             {"interfaces", Show::text},
                                             {"bind descriptions", Show::address},
                                             {"bind description count", Show::number},
                                             {"constants", Show::address},
                                             {"constant count", Show::number},
                                             {"flags", Show::flags},
                                             {"shared properties", Show::address},
                                             {"shared property count", Show::number},
                                             {"shared methods", Show::address},
                                             {"shared method count", Show::number},
                                             {"reserved 1", Show::number},
                                             {"reserved 2", Show::number},
                                             {"reserved 3", Show::number},
                                             {"reserved 4", Show::number}}};

constexpr std::array<Field, 4> moduleFields{
    {{"version", Show::number}, {"name", Show::text}, {"methods", Show::address}, {"method count", Show::number}}};

class Writer {
  public:
    void heading(int depth, const std::string& title, const Words& words) {
        indent(depth);
        out_ << title << ": " << words.size() << " words\n";
    }

    /// One line a word; words behind the named fields are numbered as reserved.
    void words(int depth, const Words& words, std::span<const Field> fields) {
        for (std::size_t i = 0; i < words.size(); ++i) {
            const Field field = i < fields.size() ? fields[i] : Field{"", Show::number};
            std::string name = field.name;
            if (i >= fields.size()) name = "reserved " + std::to_string(i - fields.size() + 1);
            indent(depth);
            out_ << name << std::string(name.size() < 24 ? 24 - name.size() : 1, ' ') << shown(words[i], field.show)
                 << '\n';
        }
    }

    void line(int depth, const std::string& text) {
        indent(depth);
        out_ << text << '\n';
    }

    std::string text() const { return out_.str(); }

  private:
    void indent(int depth) { out_ << std::string(static_cast<std::size_t>(depth) * 2, ' '); }

    static std::string shown(pxk::HostWord word, Show show) {
        std::ostringstream out;
        if (show == Show::number)
            out << word;
        else if (show == Show::flags)
            out << "0x" << std::hex << word;
        else if (word == 0)
            out << "nil";
        else if (show == Show::text)
            out << '"' << reinterpret_cast<const char*>(word) << '"';
        else
            out << (word == pxk::directField ? "all ones" : "set");
        return out.str();
    }

    std::ostringstream out_;
};

std::string numbered(const char* what, std::size_t index, std::size_t count) {
    return std::string(what) + ' ' + std::to_string(index + 1) + " of " + std::to_string(count);
}

void writeMethod(Writer& writer, int depth, const std::string& title, const MethodRecord& method) {
    writer.heading(depth, title, method.words);
    writer.words(depth + 1, method.words, methodFields);
    for (const auto& [name, value] : method.attributes) writer.line(depth + 2, name + " = " + value);
}

void writeMethods(Writer& writer, const char* what, const std::vector<MethodRecord>& methods) {
    for (std::size_t i = 0; i < methods.size(); ++i)
        writeMethod(writer, 1, numbered(what, i, methods.size()), methods[i]);
}

void writeProperties(Writer& writer, const char* what, const std::vector<PropertyRecord>& properties) {
    for (std::size_t i = 0; i < properties.size(); ++i) {
        writer.heading(1, numbered(what, i, properties.size()), properties[i].words);
        writer.words(2, properties[i].words, propertyFields);
    }
}

void writeClass(Writer& writer, const char* what, const ClassRecord& record) {
    writer.heading(0, std::string(what) + ' ' + record.name, record.words);
    writer.words(1, record.words, classFields);
    writeProperties(writer, "property", record.properties);
    writeMethods(writer, "method", record.methods);
    writeProperties(writer, "shared property", record.sharedProperties);
    writeMethods(writer, "shared method", record.sharedMethods);
}

}  // namespace

std::string inspect(const Registry& registry) {
    Writer writer;
    for (const std::int32_t version : registry.declaredVersions())
        writer.line(0, "record version " + std::to_string(version));
    for (const Registration& registration : registry.order()) {
        switch (registration.kind) {
            case Registration::Kind::classRecord:
                writeClass(writer, "class", registry.classes()[registration.index]);
                break;
            case Registration::Kind::extension:
                writeClass(writer, "extension of", registry.extensions()[registration.index]);
                break;
            case Registration::Kind::module: {
                const ModuleRecord& module = registry.modules()[registration.index];
                writer.heading(0, "module " + module.name, module.words);
                writer.words(1, module.words, moduleFields);
                writeMethods(writer, "method", module.methods);
                break;
            }
            case Registration::Kind::globalMethod:
                writeMethod(writer, 0, "global method", registry.globalMethods()[registration.index]);
                break;
        }
    }
    return writer.text();
}

}  // namespace pxkhost
