/// The syntax tree of a chain of calls, before anything is known of what the plugin offers.
///
/// Every part keeps its position, the byte in the chain's text where it starts, so that a later error message can point
/// at it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace pxk::chain {

struct Step;

struct Nil {};

/// A colour, 0xRRGGBB.
struct Color {
    std::uint32_t rgb;
};

/// A name of the user's own, for a value that a member writes back.
struct Variable {
    std::string name;
};

/// `pic`, the current picture, followed by the calls that make another picture or a value of it.
struct FromPicture {
    std::vector<Step> steps;
};

/// One argument. A string is the text between the quotes: the name of a file for a picture or memory block.
struct Argument {
    std::size_t position;
    std::variant<std::int32_t, double, bool, Color, Nil, std::string, Variable, FromPicture> written;
};

/// A property of a class step: `Name = value`, or `Name(index, ...) = value` for one that takes arguments itself.
struct NamedArgument {
    std::size_t position;
    std::string name;
    std::vector<Argument> index;
    Argument value;
};

/// One call: a member or class by name, with arguments by position and then by name.
struct Step {
    std::size_t position;
    std::string name;
    std::vector<Argument> arguments;
    std::vector<NamedArgument> properties;
};

/// Calls joined by dots: the first works on the current picture, each other on the result of the one before. With
/// `assigned`, the last call is a property that the value is assigned to.
struct Statement {
    std::vector<Step> steps;
    std::optional<Argument> assigned;
};

/// Statements in the order in which they run, at least one.
struct Chain {
    std::vector<Statement> statements;
};

}  // namespace pxk::chain
