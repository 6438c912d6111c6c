/// A chain resolved against what the plugin offers: every name found, every form chosen, every argument checked.
///
/// A plan is made once and run on each picture; it holds no object of the host.
#pragma once

#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "chain/chain.h"
#include "chain/files.h"
#include "chain/lut3d.h"
#include "chain/open_host.h"

namespace pxk::chain {

struct PlannedStep;

/// The current picture, or what these steps make of it.
using PlannedSteps = std::vector<PlannedStep>;

struct PlannedArgument {
    pxk_kind kind;
    /// A number, boolean, colour or nil as it is; a string, or the name of the file that the picture or memory block is
    /// read from; or steps on the current picture.
    std::variant<Value, std::string, PlannedSteps> source;
    /// The name under which the value that the member writes back is shown; empty when it writes none.
    std::string variable;
    std::string parameter;  ///< the parameter's name as declared
};

struct PlannedProperty {
    std::string name;
    bool isMethod;  ///< a method that can be assigned to, with or without an index, instead of a plain property
    std::vector<PlannedArgument> index;
    PlannedArgument value;
};

struct PlannedStep {
    enum class Route {
        onPicture,  ///< a method of the current picture
        global,     ///< a method of nothing
        runClass,   ///< an instance is made, `properties` are set, Run is called
        assign      ///< the one in `properties` is set on the current picture
    };

    Route route;
    std::string name;   ///< as it was registered
    std::string label;  ///< the name for messages, with the step's number when there are several
    std::vector<PlannedArgument> arguments;
    std::vector<PlannedProperty> properties;
    pxk_kind result;
    /// The table that a class is filled with before it runs, if any.
    std::optional<Lut3d> lut = std::nullopt;
    std::size_t position = 0;  ///< the byte of the chain's text where the step is written
};

struct Plan {
    std::vector<PlannedSteps> statements;
};

/// The kind of result that a chain has.
enum class ResultKind {
    picture,  ///< a picture, to be saved
    bytes,    ///< a string or memory block
    value     ///< a number, boolean or colour, or values written back
};
ResultKind resultKindOf(const Plan& plan);

/// Resolves a chain against the plugin in `host`. A global method that needs one more argument takes the current
/// picture as its first picture parameter. A class is a step too: its properties are set, SourcePicture to the current
/// picture first, then Run is called, and DestinationPicture is the result. One with a 3D LUT takes the name of a .cube
/// file, which is read here from `files`. `startsWithPicture` is false when there is no input. Throws ChainError where
/// a name or argument does not fit, WorkError when a .cube file cannot be used.
Plan makePlan(const Chain& chain, OpenHost& host, const Files& files, bool startsWithPicture);

}  // namespace pxk::chain
