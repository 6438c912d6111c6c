/// Declaration strings of the host language, parsed.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/objects/values.h"

namespace pxkhost {

struct Type {
    ValueKind kind = ValueKind::nothing;
    std::string name;  ///< as written: "Integer", "UInt32", "PictureSepiaPXK"
};

struct Parameter {
    std::string name;
    Type type;
    bool byRef = false;
    bool extends = false;                    ///< the object that the method is called on
    bool assigns = false;                    ///< the value assigned
    std::optional<std::string> defaultText;  ///< as written: "10", "&c88B5C4", "nil"
};

struct Declaration {
    std::string text;  ///< as registered
    std::string name;
    std::vector<Parameter> parameters;
    Type result;  ///< kind `nothing` for a method without result
};

/// Parses a declaration. Throws HostError with the place and what was expected there.
Declaration parseDeclaration(std::string_view text);

Type parseType(std::string_view name);

/// A declaration as a program reads it: without the parameter marked "extends", and with the type of the one marked
/// "assigns" as its result, for that is what the member is when read. The text is rebuilt.
Declaration asProgramsReadIt(Declaration declaration);

/// In lower case and without blanks, for comparing declarations and names.
std::string normalised(std::string_view text);

}  // namespace pxkhost
