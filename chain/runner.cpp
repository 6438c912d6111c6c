#include "chain/runner.h"

#include "chain/curve.h"
#include "chain/declaration.h"
#include "chain/error.h"

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
        std::vector<Value> arguments = values(step.arguments, picture);
        Value result = host_.call(self, step.name, arguments);
        if (result.isNil()) throw WorkError("returned nil instead of " + std::string(inWords(step.result)));
        for (std::size_t i = 0; i < step.arguments.size(); ++i) {
            const std::string& variable = step.arguments[i].variable;
            if (!variable.empty()) outcome_.variables.emplace_back(variable, arguments[i]);
        }
        return result;
    }

    Value runClass(const PlannedStep& step, const Object& picture) {
        const Object instance = host_.newInstance(step.name);
        host_.setProperty(instance, "SourcePicture", Value::object(PXK_PICTURE, picture));
        if (step.lut) fillTable(instance, *step.lut);
        setProperties(step, instance, picture);
        std::vector<Value> none;
        const Value done = host_.call(instance, "Run", none);
        if (done.kind() == PXK_BOOLEAN && !done.asBoolean()) throw WorkError("Run returned false");
        Value result = host_.property(instance, "DestinationPicture");
        if (result.isNil()) throw WorkError("Run left nil in DestinationPicture");
        return result;
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
            const Value value = valueOf(each.value, picture);
            if (each.isMethod) {
                host_.assign(self, each.name, values(each.index, picture), value);
            } else {
                host_.setProperty(self, each.name, value);
            }
        }
    }

    std::vector<Value> values(const std::vector<PlannedArgument>& arguments, const Object& picture) {
        std::vector<Value> result;
        for (const PlannedArgument& each : arguments) result.push_back(valueOf(each, picture));
        return result;
    }

    Value valueOf(const PlannedArgument& argument, const Object& picture) {
        if (const auto* value = std::get_if<Value>(&argument.source)) return *value;
        if (const auto* text = std::get_if<std::string>(&argument.source)) {
            return Value::object(argument.kind, objectFor(argument.kind, *text));
        }
        Value value = Value::object(PXK_PICTURE, picture);
        for (const PlannedStep& each : std::get<PlannedSteps>(argument.source)) value = run(each, value.asObject());
        return value;
    }

    /// A string names a file where the parameter is a picture or memory block.
    Object objectFor(pxk_kind kind, const std::string& text) {
        if (kind == PXK_PICTURE) return files_.picture(host_, text);
        if (kind == PXK_MEMORY_BLOCK) return host_.newMemoryBlock(blockBytes(text));
        return host_.newString(text);
    }

    /// A curve becomes the table that it describes; the bytes of any other file are taken as they are.
    std::string blockBytes(const std::string& name) const {
        std::string bytes = files_.bytes(name);
        return isCurve(bytes) ? tableOfCurve(name, bytes) : bytes;
    }

    OpenHost& host_;
    const Files& files_;
    Outcome outcome_;
};

}  // namespace

Outcome runPlan(OpenHost& host, const Files& files, const Plan& plan, Object picture) {
    Runner runner(host, files, std::move(picture));
    for (const PlannedSteps& each : plan.statements) runner.statement(each, &each == &plan.statements.back());
    return runner.finish();
}

}  // namespace pxk::chain
