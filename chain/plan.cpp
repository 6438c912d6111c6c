#include "chain/plan.h"

#include <algorithm>
#include <utility>

#include "chain/catalogue.h"
#include "chain/cube_file.h"
#include "chain/error.h"
#include "chain/text.h"
#include "chain/unknown_name.h"

namespace pxk::chain {
namespace {

/// An argument as it is written, with its calls already planned.
struct Draft {
    const Argument* argument;
    pxk_kind kind;  ///< PXK_NOTHING for nil and variables
    PlannedSteps steps;

    template <class Written>
    bool is() const {
        return std::holds_alternative<Written>(argument->written);
    }
    std::size_t position() const { return argument->position; }
};

bool isObjectKind(pxk_kind kind) { return kind >= PXK_PICTURE; }

bool fits(const Draft& draft, const Parameter& parameter) {
    const pxk_kind wanted = kindOf(parameter.type);
    if (draft.is<Variable>()) return parameter.byReference;
    if (draft.is<Nil>()) return isObjectKind(wanted);
    if (draft.is<std::string>()) return wanted == PXK_PICTURE || wanted == PXK_MEMORY_BLOCK || wanted == PXK_STRING;
    if (draft.kind == PXK_INTEGER) return wanted == PXK_INTEGER || wanted == PXK_DOUBLE || wanted == PXK_COLOR;
    if (draft.kind == PXK_COLOR) return wanted == PXK_COLOR || wanted == PXK_INTEGER;
    return draft.kind == wanted;
}

bool takesCount(const Declaration& declaration, std::size_t count) {
    return declaration.required() <= count && count <= declaration.parameters.size();
}

bool fits(const std::vector<Draft>& drafts, const std::vector<Parameter>& parameters) {
    return std::equal(drafts.begin(), drafts.end(), parameters.begin(),
                      parameters.begin() + static_cast<std::ptrdiff_t>(drafts.size()),
                      [](const Draft& draft, const Parameter& parameter) { return fits(draft, parameter); });
}

std::string asWritten(const Draft& draft) {
    if (draft.is<Nil>()) return "nil";
    if (draft.is<std::string>()) return "a string";
    if (const auto* variable = std::get_if<Variable>(&draft.argument->written)) {
        return "the name " + variable->name + ", which can only receive a value that a member writes back";
    }
    return inWords(draft.kind);
}

ChainError notFitting(const Draft& draft, const Parameter& parameter) {
    const char* asFile = kindOf(parameter.type) == PXK_PICTURE || kindOf(parameter.type) == PXK_MEMORY_BLOCK
                             ? " (the name of a file in quotes)"
                             : "";
    return {draft.position(),
            "expected " + inQuotes(parameter.name + " as " + parameter.type) + asFile + ", not " + asWritten(draft)};
}

/// The written value as a value of the kind wanted; both are known to fit.
Value constant(const Draft& draft, pxk_kind wanted) {
    const auto& written = draft.argument->written;
    if (const auto* real = std::get_if<double>(&written)) return Value::real(*real);
    if (const auto* boolean = std::get_if<bool>(&written)) return Value::boolean(*boolean);
    if (!draft.is<std::int32_t>() && !draft.is<Color>()) return Value::initial(wanted);
    const std::int32_t word =
        draft.is<Color>() ? static_cast<std::int32_t>(std::get<Color>(written).rgb) : std::get<std::int32_t>(written);
    if (wanted == PXK_DOUBLE) return Value::real(word);
    if (wanted == PXK_COLOR) return Value::color(static_cast<std::uint32_t>(word));
    return Value::integer(word);
}

PlannedArgument planned(Draft draft, const Parameter& parameter) {
    PlannedArgument result{kindOf(parameter.type), Value{}, "", parameter.name};
    if (const auto* text = std::get_if<std::string>(&draft.argument->written)) {
        result.source = *text;
    } else if (draft.is<FromPicture>()) {
        result.source = std::move(draft.steps);
    } else {
        result.source = constant(draft, result.kind);
    }
    if (parameter.byReference) {
        const auto* variable = std::get_if<Variable>(&draft.argument->written);
        result.variable = variable != nullptr ? variable->name : parameter.name;
    }
    return result;
}

std::vector<PlannedArgument> planned(std::vector<Draft> drafts, const std::vector<Parameter>& parameters) {
    std::vector<PlannedArgument> result;
    for (std::size_t i = 0; i < drafts.size(); ++i) result.push_back(planned(std::move(drafts[i]), parameters[i]));
    return result;
}

std::string counted(std::size_t count) {
    if (count == 0) return "no arguments";
    return count == 1 ? "one argument" : std::to_string(count) + " arguments";
}

std::string listed(const std::vector<const Member*>& members, std::string Member::*words, const char* between) {
    std::string list;
    for (const Member* each : members) list += (list.empty() ? "" : between) + each->*words;
    return list;
}

class Planner {
  public:
    Planner(OpenHost& host, const Files& files, bool startsWithPicture)
        : catalogue_(host), host_(host), files_(files), havePicture_(startsWithPicture) {}

    PlannedSteps statement(const Statement& written) {
        PlannedSteps result = steps(written.steps);
        if (written.assigned) makeAssignment(result.back(), written);
        return result;
    }

  private:
    PlannedSteps steps(const std::vector<Step>& written) {
        PlannedSteps result;
        for (const Step& each : written) {
            if (!result.empty() && result.back().result != PXK_PICTURE) {
                throw ChainError(each.position, result.back().name + " returns " + inWords(result.back().result) +
                                                    ", so no call can follow it");
            }
            result.push_back(step(each));
            result.back().position = each.position;
            havePicture_ = havePicture_ || result.back().result == PXK_PICTURE;
        }
        return result;
    }

    PlannedStep step(const Step& written) {
        if (const std::string* className = catalogue_.findClass(written.name)) return classStep(written, *className);
        const std::vector<const Member*> forms = catalogue_.methods(written.name);
        if (forms.empty()) throw ChainError(written.position, whyUnknown(host_, catalogue_, written.name));
        if (!written.properties.empty()) {
            throw ChainError(written.properties.front().position,
                             forms.front()->name + " takes its arguments by position, not by name");
        }
        return methodStep(written, forms);
    }

    PlannedStep methodStep(const Step& written, const std::vector<const Member*>& forms) {
        std::vector<Draft> given = drafts(written.arguments);
        for (const Member* form : forms) {
            const Declaration& declaration = form->declaration;
            if (!takesCount(declaration, given.size()) || !fits(given, declaration.parameters)) continue;
            const bool onPicture = form->kind == PXK_PICTURE_METHOD;
            if (onPicture) needPicture(written.position);
            return {onPicture ? PlannedStep::Route::onPicture : PlannedStep::Route::global,
                    form->name,
                    form->name,
                    planned(std::move(given), declaration.parameters),
                    {},
                    kindOf(declaration.type)};
        }
        for (const Member* form : forms) {
            if (form->kind != PXK_GLOBAL_METHOD) continue;
            const Declaration& declaration = form->declaration;
            std::vector<Draft> completed = given;
            if (!completeWithPicture(completed, declaration)) continue;
            needPicture(written.position);
            return {PlannedStep::Route::global,
                    form->name,
                    form->name,
                    planned(std::move(completed), declaration.parameters),
                    {},
                    kindOf(declaration.type)};
        }
        throw noFormFits(written, given, forms);
    }

    /// Puts the current picture in the place of the first picture parameter, if the arguments then fit.
    static bool completeWithPicture(std::vector<Draft>& given, const Declaration& declaration) {
        static const Argument currentPicture{0, FromPicture{}};
        if (!takesCount(declaration, given.size() + 1)) return false;
        const auto& parameters = declaration.parameters;
        const auto place = std::find_if(parameters.begin(), parameters.end(),
                                        [](const Parameter& each) { return kindOf(each.type) == PXK_PICTURE; });
        const auto index = place - parameters.begin();
        if (place == parameters.end() || index > static_cast<std::ptrdiff_t>(given.size())) return false;
        given.insert(given.begin() + index, Draft{&currentPicture, PXK_PICTURE, {}});
        return fits(given, parameters);
    }

    static ChainError noFormFits(const Step& written, const std::vector<Draft>& given,
                                 const std::vector<const Member*>& forms) {
        std::vector<const Member*> sameCount;
        std::copy_if(forms.begin(), forms.end(), std::back_inserter(sameCount),
                     [&](const Member* form) { return takesCount(form->declaration, given.size()); });
        if (sameCount.size() == 1) {
            const auto& parameters = sameCount.front()->declaration.parameters;
            const auto wrong = std::mismatch(given.begin(), given.end(), parameters.begin(),
                                             [](const Draft& a, const Parameter& b) { return fits(a, b); });
            if (wrong.first != given.end()) return notFitting(*wrong.first, *wrong.second);
        }
        return {written.position, "no form of " + forms.front()->name + " takes " + counted(given.size()) +
                                      (sameCount.empty() ? "" : " of these types") +
                                      (forms.size() == 1 ? "; its form is " : "; its forms are ") +
                                      listed(forms, &Member::text, "; ")};
    }

    PlannedStep classStep(const Step& written, const std::string& className) {
        for (const char* needed : {"SourcePicture", "Run", "DestinationPicture"}) {
            if (catalogue_.findInClass(className, needed) == nullptr) {
                throw ChainError(written.position, className + " cannot be a step of a chain: it has no " + needed);
            }
        }
        needPicture(written.position);
        PlannedStep step{PlannedStep::Route::runClass, className, className, {}, {}, PXK_PICTURE};
        if (!written.arguments.empty()) step.lut = lutOf(written.arguments, className);
        for (const NamedArgument& each : written.properties) step.properties.push_back(property(each, className));
        return step;
    }

    /// The only argument by position that a class takes: the name of a file for its table.
    Lut3d lutOf(const std::vector<Argument>& arguments, const std::string& className) const {
        const bool takesCube = catalogue_.hasLut3d(className);
        const auto* file = std::get_if<std::string>(&arguments.front().written);
        if (takesCube && arguments.size() == 1 && file != nullptr)
            return resampled(parseCube(*file, files_.bytes(*file)));
        const char* afterCube = takesCube ? ", after the name of one .cube file in quotes" : "";
        throw ChainError(arguments.front().position, className + " takes its properties by name" + afterCube +
                                                         ": Name = value; its properties are " +
                                                         propertiesOf(className));
    }

    PlannedProperty property(const NamedArgument& written, const std::string& className) {
        const Member* member = catalogue_.findInClass(className, written.name);
        if (member == nullptr || (member->kind == PXK_CLASS_METHOD && !member->hasSetter)) {
            throw ChainError(written.position, className + " has no property " + written.name +
                                                   "; its properties are " + propertiesOf(className));
        }
        if (sameName(member->name, "DestinationPicture"))
            throw ChainError(written.position,
                             "DestinationPicture is what Run makes, and what the step returns; leave "
                             "it out");
        const Declaration& declaration = member->declaration;
        std::vector<Draft> index = drafts(written.index);
        if (index.size() != declaration.parameters.size()) {
            throw ChainError(written.position,
                             member->name + " takes " + counted(declaration.parameters.size()) + ": " + member->text);
        }
        for (std::size_t i = 0; i < index.size(); ++i) {
            if (!fits(index[i], declaration.parameters[i])) throw notFitting(index[i], declaration.parameters[i]);
        }
        return {member->name, member->kind == PXK_CLASS_METHOD, planned(std::move(index), declaration.parameters),
                assignable(written.value, {member->name, declaration.type, false, ""})};
    }

    std::string propertiesOf(const std::string& className) const {
        return listed(catalogue_.membersOf(className, PXK_CLASS_PROPERTY), &Member::name, ", ");
    }

    /// Turns the last step of a statement, planned as a call, into an assignment to that property.
    void makeAssignment(PlannedStep& step, const Statement& written) {
        const std::vector<const Member*> forms = catalogue_.methods(step.name);
        const auto property = std::find_if(forms.begin(), forms.end(), [](const Member* each) {
            return each->hasSetter && each->kind == PXK_PICTURE_METHOD;
        });
        if (property == forms.end()) {
            throw ChainError(written.steps.back().position, step.name + " cannot be assigned to");
        }
        PlannedArgument value = assignable(*written.assigned, {"value", (*property)->declaration.type, false, ""});
        step.properties.push_back({step.name, true, std::move(step.arguments), std::move(value)});
        step.arguments.clear();
        step.route = PlannedStep::Route::assign;
        step.result = PXK_NOTHING;
    }

    PlannedArgument assignable(const Argument& written, const Parameter& target) {
        Draft value = draft(written);
        if (!fits(value, target)) throw notFitting(value, target);
        return planned(std::move(value), target);
    }

    std::vector<Draft> drafts(const std::vector<Argument>& arguments) {
        std::vector<Draft> result;
        for (const Argument& each : arguments) result.push_back(draft(each));
        return result;
    }

    Draft draft(const Argument& argument) {
        struct Kinds {
            pxk_kind operator()(std::int32_t) const { return PXK_INTEGER; }
            pxk_kind operator()(double) const { return PXK_DOUBLE; }
            pxk_kind operator()(bool) const { return PXK_BOOLEAN; }
            pxk_kind operator()(const Color&) const { return PXK_COLOR; }
            pxk_kind operator()(const Nil&) const { return PXK_NOTHING; }
            pxk_kind operator()(const std::string&) const { return PXK_STRING; }
            pxk_kind operator()(const Variable&) const { return PXK_NOTHING; }
            pxk_kind operator()(const FromPicture&) const { return PXK_PICTURE; }
        };
        Draft result{&argument, std::visit(Kinds{}, argument.written), {}};
        if (const auto* from = std::get_if<FromPicture>(&argument.written)) {
            needPicture(argument.position);
            result.steps = steps(from->steps);
            if (!result.steps.empty()) result.kind = result.steps.back().result;
        }
        return result;
    }

    void needPicture(std::size_t position) const {
        if (!havePicture_) throw ChainError(position, "there is no picture to work on yet; name an input file");
    }

    Catalogue catalogue_;
    OpenHost& host_;
    const Files& files_;
    bool havePicture_;
};

/// With several steps in a chain, each is named by its number as well.
void numberSteps(Plan& plan) {
    std::size_t count = 0;
    for (const PlannedSteps& statement : plan.statements) count += statement.size();
    if (count < 2) return;
    std::size_t number = 0;
    for (PlannedSteps& statement : plan.statements) {
        for (PlannedStep& step : statement) step.label = "step " + std::to_string(++number) + ", " + step.name;
    }
}

}  // namespace

ResultKind resultKindOf(const Plan& plan) {
    if (plan.statements.empty()) return ResultKind::picture;
    const PlannedStep& last = plan.statements.back().back();
    if (last.result == PXK_STRING || last.result == PXK_MEMORY_BLOCK) return ResultKind::bytes;
    const bool writesBack = std::any_of(last.arguments.begin(), last.arguments.end(),
                                        [](const PlannedArgument& each) { return !each.variable.empty(); });
    const bool changesThePicture = last.result == PXK_NOTHING && !writesBack;
    return last.result == PXK_PICTURE || changesThePicture ? ResultKind::picture : ResultKind::value;
}

Plan makePlan(const Chain& chain, OpenHost& host, const Files& files, bool startsWithPicture) {
    Planner planner(host, files, startsWithPicture);
    Plan plan;
    for (const Statement& each : chain.statements) plan.statements.push_back(planner.statement(each));
    numberSteps(plan);
    return plan;
}

}  // namespace pxk::chain
