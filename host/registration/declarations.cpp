#include "host/registration/declarations.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <utility>

#include "host/objects/errors.h"

namespace pxkhost {

namespace {

char small(char c) { return static_cast<char>(std::tolower(static_cast<unsigned char>(c))); }

bool isBlank(char c) { return c == ' ' || c == '\t'; }

bool isWordPart(char c) { return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_' || c == '.'; }

/// Reads a declaration from left to right.
class Scanner {
  public:
    explicit Scanner(std::string_view text) : text_(text) {}

    bool atEnd() {
        skipBlanks();
        return place_ == text_.size();
    }

    /// Takes one character when it is the next.
    bool take(char wanted) {
        skipBlanks();
        if (place_ == text_.size() || text_[place_] != wanted) return false;
        ++place_;
        return true;
    }

    /// Takes one word when it is the next, in any letter case.
    bool takeWord(std::string_view wanted) {
        const std::size_t before = place_;
        if (normalised(peekWord()) == wanted) return true;
        place_ = before;
        return false;
    }

    std::string word(const char* what) {
        const std::string_view found = peekWord();
        if (found.empty()) fail(what);
        return std::string(found);
    }

    /// Everything up to the next "," or ")" outside double quotes, without blanks around it.
    std::string defaultText() {
        skipBlanks();
        const std::size_t start = place_;
        bool quoted = false;
        while (place_ < text_.size() && (quoted || (text_[place_] != ',' && text_[place_] != ')'))) {
            if (text_[place_] == '"') quoted = !quoted;
            ++place_;
        }
        std::size_t end = place_;
        while (end > start && isBlank(text_[end - 1])) --end;
        if (end == start) fail("a default value");
        return std::string(text_.substr(start, end - start));
    }

    [[noreturn]] void fail(const std::string& expected) const {
        throw HostError("declaration \"" + std::string(text_) + "\": expected " + expected + " at character " +
                        std::to_string(place_ + 1));
    }

  private:
    void skipBlanks() {
        while (place_ < text_.size() && isBlank(text_[place_])) ++place_;
    }

    std::string_view peekWord() {
        skipBlanks();
        const std::size_t start = place_;
        while (place_ < text_.size() && isWordPart(text_[place_])) ++place_;
        return text_.substr(start, place_ - start);
    }

    std::string_view text_;
    std::size_t place_ = 0;
};

Parameter readParameter(Scanner& scanner) {
    Parameter parameter;
    for (bool more = true; more;) {
        more = false;
        if (scanner.takeWord("byref")) parameter.byRef = more = true;
        if (scanner.takeWord("extends")) parameter.extends = more = true;
        if (scanner.takeWord("assigns")) parameter.assigns = more = true;
        if (scanner.takeWord("byval")) more = true;
    }
    parameter.name = scanner.word("a parameter's name");
    if (!scanner.takeWord("as")) scanner.fail("\"as\" and a type");
    parameter.type = parseType(scanner.word("a type"));
    if (scanner.take('=')) parameter.defaultText = scanner.defaultText();
    return parameter;
}

/// A declaration's text from its parts.
std::string compose(const Declaration& declaration) {
    std::string text = declaration.name;
    const char* separator = "(";
    for (const Parameter& parameter : declaration.parameters) {
        text += separator;
        separator = ", ";
        if (parameter.byRef) text += "byref ";
        if (parameter.extends) text += "extends ";
        if (parameter.assigns) text += "assigns ";
        text += parameter.name + " as " + parameter.type.name;
        if (parameter.defaultText) text += " = " + *parameter.defaultText;
    }
    if (!declaration.parameters.empty()) text += ')';
    if (declaration.result.kind != ValueKind::nothing) text += " as " + declaration.result.name;
    return text;
}

}  // namespace

Type parseType(std::string_view name) {
    static constexpr std::array<std::pair<std::string_view, ValueKind>, 9> known{
        {{"integer", ValueKind::integer},
         {"int32", ValueKind::integer},
         {"uint32", ValueKind::integer},
         {"double", ValueKind::real},
         {"boolean", ValueKind::boolean},
         {"color", ValueKind::color},
         {"picture", ValueKind::picture},
         {"memoryblock", ValueKind::memoryBlock},
         {"string", ValueKind::string}}};
    const std::string wanted = normalised(name);
    const auto* const found =
        std::find_if(known.begin(), known.end(), [&](auto& pair) { return pair.first == wanted; });
    return {found != known.end() ? found->second : ValueKind::instance, std::string(name)};
}

Declaration parseDeclaration(std::string_view text) {
    Scanner scanner(text);
    Declaration declaration;
    declaration.text = text;
    declaration.name = scanner.word("a name");
    if (scanner.take('(') && !scanner.take(')')) {
        do {
            declaration.parameters.push_back(readParameter(scanner));
        } while (scanner.take(','));
        if (!scanner.take(')')) scanner.fail("\",\" or \")\"");
    }
    if (scanner.takeWord("as")) declaration.result = parseType(scanner.word("a result type"));
    if (!scanner.atEnd()) scanner.fail("the end");
    return declaration;
}

Declaration asProgramsReadIt(Declaration declaration) {
    std::erase_if(declaration.parameters, [](const Parameter& parameter) { return parameter.extends; });
    const auto assigned = std::find_if(declaration.parameters.begin(), declaration.parameters.end(),
                                       [](const Parameter& parameter) { return parameter.assigns; });
    if (assigned != declaration.parameters.end()) {
        declaration.result = assigned->type;
        declaration.parameters.erase(assigned);
    }
    declaration.text = compose(declaration);
    return declaration;
}

std::string normalised(std::string_view text) {
    std::string result;
    for (const char c : text)
        if (!isBlank(c)) result += small(c);
    return result;
}

}  // namespace pxkhost
