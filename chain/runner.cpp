#include "chain/runner.h"

#include "chain/catalogue.h"
#include "chain/curve.h"
#include "chain/declaration.h"
#include "chain/error.h"
#include "chain/why_nil.h"

namespace pxk::chain {
namespace {

class Runner {
  public:
    Runner(OpenHost& host, const Files& files, Object picture)
        : host_(host), files_(files), outcome_{std::move(picture), {}, {}} {}

    void statement(const PlannedSteps& steps, bool isLast) {
        outcome_.value = Value();
        outcome_.variables.clear();
        for (const PlannedStep& each : steps) {
            Value result = run(each, outcome_.picture);
            if (result.kind() == PXK_PICTURE) {
                outcome_.picture = result.asObject();
            } else {
                outcome_.value = std::move(result);
            }
        }
        if (!isLast && outcome_.value.kind() == PXK_BOOLEAN && !outcome_.value.asBoolean()) {
            throw WorkError(steps.back().label + " returned false");
        }
    }

    /// Reads the files that the arguments of these steps name, and runs none of the steps.
    void check(const PlannedSteps& steps) {
        for (const PlannedStep& step : steps) {
            try {
                for (const PlannedArgument& each : step.arguments) check(each, step.name);
                for (const PlannedProperty& property : step.properties) {
                    for (const PlannedArgument& each : property.index) check(each, property.name);
                    check(property.value, property.name);
                }
            } catch (const WorkError& error) {
                throw WorkError(step.label + ": " + error.what());
            }
        }
    }

    Outcome finish() { return std::move(outcome_); }

  private:
    /// Runs one step on a picture; an error message names the step.
    Value run(const PlannedStep& step, const Object& picture) {
        try {
            switch (step.route) {
                case PlannedStep::Route::onPicture:
                    return callMethod(step, picture, picture);
                case PlannedStep::Route::global:
                    return callMethod(step, Object(), picture);
                case PlannedStep::Route::runClass:
                    return runClass(step, picture);
                case PlannedStep::Route::assign:
                    setProperties(step, picture, picture);
                    break;
            }
            return {};
        } catch (const WorkError& error) {
            throw WorkError(step.label + ": " + error.what());
        }
    }

    Value callMethod(const PlannedStep& step, const Object& self, const Object& picture) {
        std::vector<Value> arguments = values(step.arguments, picture, step.name);
        const std::vector<Value> given = arguments;
        Value result = host_.call(self, step.name, arguments);
        if (result.isNil()) refuseNil(step, whyNil(step, self, given));
        for (std::size_t i = 0; i < step.arguments.size(); ++i) {
            const std::string& variable = step.arguments[i].variable;
            if (!variable.empty()) outcome_.variables.emplace_back(variable, arguments[i]);
        }
        return result;
    }

    [[noreturn]] static void refuseNil(const PlannedStep& step, const std::string& reason) {
        throw WorkError("returned nil instead of " + std::string(inWords(step.result)) +
                        (reason.empty() ? "" : ": " + reason));
    }

    Value runClass(const PlannedStep& step, const Object& picture) {
        const Object instance = host_.newInstance(step.name);
        host_.setProperty(instance, "SourcePicture", Value::object(PXK_PICTURE, picture));
        if (step.lut) fillTable(instance, *step.lut);
        setProperties(step, instance, picture);
        std::vector<Value> none;
        const Value done = host_.call(instance, "Run", none);
        if (done.kind() == PXK_BOOLEAN && !done.asBoolean())
            throw WorkError("Run returned false" + whyRunFailed(instance));
        Value result = host_.property(instance, "DestinationPicture");
        if (result.isNil()) throw WorkError("Run left nil in DestinationPicture");
        return result;
    }

    std::string whyRunFailed(const Object& instance) {
        const Value source = host_.property(instance, "SourcePicture");
        if (source.isNil()) return ": SourcePicture is nil; give a picture";
        const std::string reason = whyTooLarge("SourcePicture", source.asObject());
        return reason.empty() ? "" : ": " + reason;
    }

    void fillTable(const Object& instance, const Lut3d& lut) {
        const auto index = [](std::uint32_t number) { return Value::integer(static_cast<std::int32_t>(number)); };
        for (std::uint32_t r = 0; r < Lut3d::points; ++r) {
            for (std::uint32_t g = 0; g < Lut3d::points; ++g) {
                for (std::uint32_t b = 0; b < Lut3d::points; ++b) {
                    for (std::uint32_t x = 0; x < 3; ++x) {
                        host_.assign(instance, "Table", {index(r), index(g), index(b), index(x)},
                                     Value::real(lut.at(r, g, b, x)));
                    }
                }
            }
        }
    }

    void setProperties(const PlannedStep& step, const Object& self, const Object& picture) {
        for (const PlannedProperty& each : step.properties) {
            const Value value = valueOf(each.value, picture, each.name);
            if (each.isMethod) {
                host_.assign(self, each.name, values(each.index, picture, each.name), value);
            } else {
                host_.setProperty(self, each.name, value);
            }
        }
    }

    std::vector<Value> values(const std::vector<PlannedArgument>& arguments, const Object& picture,
                              const std::string& member) {
        std::vector<Value> result;
        for (const PlannedArgument& each : arguments) result.push_back(valueOf(each, picture, member));
        return result;
    }

    /// The value of an argument that `member` is given.
    Value valueOf(const PlannedArgument& argument, const Object& picture, const std::string& member) {
        if (const auto* value = std::get_if<Value>(&argument.source)) return *value;
        if (const auto* text = std::get_if<std::string>(&argument.source)) {
            return Value::object(argument.kind, objectFor(argument.kind, *text, member));
        }
        Value value = Value::object(PXK_PICTURE, picture);
        for (const PlannedStep& each : std::get<PlannedSteps>(argument.source)) value = run(each, value.asObject());
        return value;
    }

    void check(const PlannedArgument& argument, const std::string& member) {
        if (const auto* steps = std::get_if<PlannedSteps>(&argument.source)) return check(*steps);
        if (const auto* text = std::get_if<std::string>(&argument.source)) objectFor(argument.kind, *text, member);
    }

    /// A string names a file where the parameter is a picture or memory block.
    Object objectFor(pxk_kind kind, const std::string& text, const std::string& member) {
        if (kind == PXK_PICTURE) return files_.picture(host_, text);
        if (kind == PXK_MEMORY_BLOCK) return host_.newMemoryBlock(blockBytes(text, member));
        return host_.newString(text);
    }

    /// A curve becomes the table that it describes; the bytes of any other file are taken as they are, provided that
    /// they are a table where one is needed.
    std::string blockBytes(const std::string& name, const std::string& member) const {
        std::string bytes = files_.bytes(name);
        if (sameName(member, "TransformColors")) return tableOf(name, bytes);
        return isCurve(bytes) ? tableOfCurve(name, bytes) : bytes;
    }

    OpenHost& host_;
    const Files& files_;
    Outcome outcome_;
};

}  // namespace

void checkFiles(OpenHost& host, const Files& files, const Plan& plan) {
    Runner runner(host, files, Object());
    for (const PlannedSteps& each : plan.statements) runner.check(each);
}

Outcome runPlan(OpenHost& host, const Files& files, const Plan& plan, Object picture) {
    Runner runner(host, files, std::move(picture));
    for (const PlannedSteps& each : plan.statements) runner.statement(each, &each == &plan.statements.back());
    return runner.finish();
}

}  // namespace pxk::chain
