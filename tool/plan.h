/// A chain fitted to what the plugin offers: every name found, every form chosen, every argument of the kind wanted.
///
/// A plan is made once and run on each picture; nothing in it belongs to the host.
#pragma once

#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "catalogue.h"
#include "chain.h"
#include "look_table.h"
#include "open_host.h"

namespace pxk::tool {

struct PlannedStep;

/// The current picture, or what these steps make of it.
using PlannedSteps = std::vector<PlannedStep>;

struct PlannedArgument {
    pxk_kind kind;
    /// A number, boolean, colour or nil as it is; a text, or the name of the file that the picture or memory block is
    /// read from; or steps on the current picture.
    std::variant<Value, std::string, PlannedSteps> source;
    /// The name under which the value that the member writes back is shown; empty when it writes none.
    std::string variable;
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
    /// The table that a class is filled with before it runs; none when it is left as it is.
    std::optional<LookTable> look = std::nullopt;
};

struct Plan {
    std::vector<PlannedSteps> statements;
};

/// What a chain leaves behind.
enum class Ending {
    picture,  ///< a picture, to be saved
    bytes,    ///< a string or memory block
    value     ///< a number, boolean or colour, or values written back
};
Ending endingOf(const Plan& plan);

/// Fits a chain to the plugin. A method's missing picture is the current one: for a global method that fits only with
/// one argument more, the first picture parameter. A class is a step too: its properties are set, SourcePicture to the
/// current picture first, then Run is called and DestinationPicture is what the step gives. One with a
/// three-dimensional table takes the name of a .cube file, which is read here. `startsWithPicture` is false when there
/// is no input. Throws ChainError where a name or argument does not fit, WorkError when a .cube file cannot be used.
Plan makePlan(const Chain& chain, const Catalogue& catalogue, OpenHost& host, bool startsWithPicture);

}  // namespace pxk::tool
