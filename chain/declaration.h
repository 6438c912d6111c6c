/// Parses a member's declaration.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "host/include/pxkhost.h"

namespace pxk::chain {

struct Parameter {
    std::string name;
    std::string type;
    bool byReference = false;
    std::string whenLeftOut;  ///< the declared default as it is written; empty when the argument must be given
};

struct Declaration {
    std::string name;
    std::vector<Parameter> parameters;
    std::string type;  ///< of the result or property; empty when there is none

    /// The smallest number of arguments.
    std::size_t required() const;
};

/// Reads "Name(a as integer, byref b as double, c as color = &cFFFFFF) as picture"; list and result may be missing.
Declaration parseDeclaration(std::string_view text);

/// The kind of value that a declared type stands for; a type that is not the language's own is an instance.
pxk_kind kindOf(std::string_view type);

/// A kind in words, for messages: "an integer".
const char* inWords(pxk_kind kind);

}  // namespace pxk::chain
