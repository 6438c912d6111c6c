#include "chain/declaration.h"

#include <algorithm>

#include "chain/text.h"

namespace pxk::chain {
namespace {

/// Takes the word at the front of `text` when it is `word`.
bool takeWord(std::string_view& text, std::string_view word) {
    if (text.size() <= word.size() || text[word.size()] != ' ' || !sameLetters(text.substr(0, word.size()), word)) {
        return false;
    }
    text = trimmed(text.substr(word.size()));
    return true;
}

/// Where " as " stands in `text`, or its end.
std::size_t findAs(std::string_view text) { return std::min(lowerCase(text).find(" as "), text.size()); }

std::string typeAfter(std::string_view text, std::size_t as) {
    return as == text.size() ? "" : std::string(trimmed(text.substr(as + 4)));
}

Parameter parseParameter(std::string_view text) {
    text = trimmed(text);
    Parameter parameter;
    parameter.byReference = takeWord(text, "byref");
    takeWord(text, "byval");
    takeWord(text, "assigns");
    const std::size_t equals = std::min(text.find('='), text.size());
    if (equals < text.size()) parameter.whenLeftOut = trimmed(text.substr(equals + 1));
    text = trimmed(text.substr(0, equals));
    const std::size_t as = findAs(text);
    parameter.name = trimmed(text.substr(0, as));
    parameter.type = typeAfter(text, as);
    return parameter;
}

}  // namespace

std::size_t Declaration::required() const {
    return static_cast<std::size_t>(std::count_if(parameters.begin(), parameters.end(),
                                                  [](const Parameter& each) { return each.whenLeftOut.empty(); }));
}

Declaration parseDeclaration(std::string_view text) {
    text = trimmed(text);
    Declaration declaration;
    const std::size_t nameEnd = std::min(text.find_first_of(" ("), text.size());
    declaration.name = text.substr(0, nameEnd);
    std::string_view rest = text.substr(nameEnd);
    const std::size_t open = rest.find_first_not_of(' ');
    if (open != std::string_view::npos && rest[open] == '(') {
        const std::size_t close = std::min(rest.find_last_of(')'), rest.size());
        std::string_view list = trimmed(rest.substr(open + 1, close - open - 1));
        while (!list.empty()) {
            const std::size_t comma = std::min(list.find(','), list.size());
            declaration.parameters.push_back(parseParameter(list.substr(0, comma)));
            list.remove_prefix(std::min(comma + 1, list.size()));
        }
        rest = rest.substr(std::min(close + 1, rest.size()));
    }
    declaration.type = typeAfter(rest, findAs(rest));
    return declaration;
}

pxk_kind kindOf(std::string_view type) {
    struct Named {
        std::string_view type;
        pxk_kind kind;
    };
    static constexpr Named known[] = {
        {"", PXK_NOTHING},       {"integer", PXK_INTEGER}, {"int32", PXK_INTEGER},
        {"uint32", PXK_INTEGER}, {"double", PXK_DOUBLE},   {"boolean", PXK_BOOLEAN},
        {"color", PXK_COLOR},    {"picture", PXK_PICTURE}, {"memoryblock", PXK_MEMORY_BLOCK},
        {"string", PXK_STRING},
    };
    for (const Named& each : known) {
        if (sameLetters(each.type, type)) return each.kind;
    }
    return PXK_INSTANCE;
}

const char* inWords(pxk_kind kind) {
    switch (kind) {
        case PXK_NOTHING:
            return "no value";
        case PXK_INTEGER:
            return "an integer";
        case PXK_DOUBLE:
            return "a double";
        case PXK_BOOLEAN:
            return "a boolean";
        case PXK_COLOR:
            return "a colour";
        case PXK_PICTURE:
            return "a picture";
        case PXK_MEMORY_BLOCK:
            return "a memory block";
        case PXK_STRING:
            return "a string";
        case PXK_INSTANCE:
            return "an object";
    }
    return "a value";
}

}  // namespace pxk::chain
