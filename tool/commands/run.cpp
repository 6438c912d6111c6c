/// `pxk INPUT... -e CHAIN -o OUTPUT`: a chain on one picture or many.
#include <filesystem>
#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>

#include "chain/error.h"
#include "chain/files.h"
#include "chain/picture_file.h"
#include "chain/plan.h"
#include "chain/runner.h"
#include "chain/text.h"
#include "chain/whole_file.h"
#include "tool/commands/chain_source.h"
#include "tool/commands/command.h"
#include "tool/commands/destinations.h"
#include "tool/commands/exit_code.h"
#include "tool/commands/unknown_command.h"
#include "tool/terminal/progress_bar.h"
#include "tool/terminal/report.h"
#include "tool/terminal/result_text.h"

namespace pxk::tool {
namespace {

struct RunOptions {
    std::vector<std::string> inputs;
    ChainSource chain;
    std::string output;
    std::string format;
    bool quiet = false;
    bool json = false;
};

struct Failure {
    std::string input;
    std::string message;
};

class Run {
  public:
    Run(const CLI::App& app, RunOptions& options, const chain::HostOptions& host)
        : app_(app), options_(options), host_(host) {}

    int operator()() {
        checkInputs();
        options_.chain.read();
        chain::OpenHost opened(host_);
        plan_ = options_.chain.planFor(opened, !options_.inputs.empty());
        checkOutput();
        const std::vector<Failure> failures = runAll(opened);
        opened.close();
        flushOutput();
        return reportFailures(failures);
    }

  private:
    void checkInputs() const {
        for (const std::string& each : options_.inputs) {
            if (each == "-") throw UsageError("a picture cannot come from standard input; name a file");
            if (each.empty()) throw UsageError("the name of an input is empty");
        }
        if (options_.inputs.empty() && !options_.chain.isGiven()) throw UsageError("no input is given; see pxk --help");
        if (!options_.chain.isGiven() && options_.output.empty()) refuseWordsWithoutWork();
    }

    /// With nothing to do, an input that does not exist was probably meant to be a command.
    [[noreturn]] void refuseWordsWithoutWork() const {
        for (const std::string& each : options_.inputs) {
            std::error_code ignored;
            if (!std::filesystem::exists(each, ignored)) throw UsageError(whyNoCommand(app_, each));
        }
        throw UsageError("there is nothing to do; give a chain with -e, or say where to write the picture with -o");
    }

    void checkOutput() {
        const chain::ResultKind result = resultKindOf(plan_);
        if (options_.output.empty()) {
            if (result == chain::ResultKind::picture)
                throw UsageError("the chain ends in a picture; say where it goes with -o FILE");
            if (!options_.format.empty()) throw UsageError("--format needs -o DIRECTORY/");
            return;
        }
        destinations_ = destinationsFor(options_.inputs, options_.output, options_.format);
        if (result == chain::ResultKind::bytes && options_.inputs.size() > 1 && options_.format.empty()) {
            throw UsageError("the results are not pictures; give their extension with --format, such as --format bin");
        }
    }

    std::vector<Failure> runAll(chain::OpenHost& opened) {
        std::vector<Failure> failures;
        const std::size_t count = std::max<std::size_t>(options_.inputs.size(), 1);
        ProgressBar bar(count, count > 1 && !options_.quiet);
        for (std::size_t index = 0; index < count; ++index) {
            const std::string input = options_.inputs.empty() ? "" : options_.inputs[index];
            bar.show(index, input);
            Json record;
            if (!input.empty()) record["file"] = input;
            std::string printed;
            try {
                printed = runOne(opened, input, index, record);
            } catch (const chain::WorkError& error) {
                failures.push_back({input, error.what()});
                record["error"] = error.what();
            } catch (const std::bad_alloc&) {
                failures.push_back({input, "not enough memory"});
                record["error"] = failures.back().message;
            }
            if (options_.json) printed = oneLine(record) + "\n";
            if (printed.empty()) continue;
            bar.clear();
            std::cout << printed << std::flush;
        }
        return failures;
    }

    /// Runs the plan on one input and saves its result. Returns the text to print without --json.
    std::string runOne(chain::OpenHost& opened, const std::string& input, std::size_t index, Json& record) const {
        const chain::Outcome outcome = chain::runPlan(
            opened, chain::DiskFiles(), plan_, input.empty() ? chain::Object() : chain::readPicture(opened, input));
        std::string lines = printedLines(outcome, input);
        if (!destinations_.files.empty()) save(opened, outcome, destinations_.files[index], record);
        if (outcome.value.kind() != PXK_NOTHING && !savesBytes(outcome)) record["result"] = asJson(outcome.value);
        for (const auto& [name, value] : outcome.variables) record["variables"][name] = asJson(value);
        return lines;
    }

    void save(chain::OpenHost& opened, const chain::Outcome& outcome, const std::string& file, Json& record) const {
        if (outcome.value.kind() == PXK_BOOLEAN && !outcome.value.asBoolean()) {
            throw chain::WorkError(plan_.statements.back().back().label +
                                   " returned false, so nothing was written to " + file);
        }
        if (!destinations_.directory.empty()) createDirectory(destinations_.directory);
        record["output"] = file;
        if (savesBytes(outcome)) {
            const std::string_view bytes = bytesOf(outcome.value.asObject());
            chain::writeFile(file, bytes);
            record["size"] = bytes.size();
            return;
        }
        if (!outcome.picture) throw chain::WorkError("there is no picture to write to " + file);
        chain::writePicture(opened, outcome.picture, file);
        record.update(asJson(chain::Value::object(PXK_PICTURE, outcome.picture)));
    }

    bool savesBytes(const chain::Outcome& outcome) const {
        const bool bytes = outcome.value.kind() == PXK_STRING || outcome.value.kind() == PXK_MEMORY_BLOCK;
        return bytes && !options_.output.empty();
    }

    /// One input: each result on a line. Several: one line for each, after its name.
    std::string printedLines(const chain::Outcome& outcome, const std::string& input) const {
        if (options_.json || savesBytes(outcome)) return "";
        const bool isString = outcome.value.kind() == PXK_STRING;
        if (outcome.value.kind() == PXK_MEMORY_BLOCK ||
            (isString && !chain::isPlainText(bytesOf(outcome.value.asObject())))) {
            throw chain::WorkError("the chain ends in " + std::to_string(bytesOf(outcome.value.asObject()).size()) +
                                   " bytes that are not text; say where they go with -o FILE");
        }
        std::string printed;
        const bool several = options_.inputs.size() > 1;
        for (const std::string& line : linesOf(outcome)) {
            if (several) printed += printed.empty() ? shownName(input) + ": " + line : ", " + line;
            if (!several) printed += line + "\n";
        }
        return several && !printed.empty() ? printed + "\n" : printed;
    }

    int reportFailures(const std::vector<Failure>& failures) const {
        if (failures.empty()) return exitDone;
        if (options_.inputs.size() <= 1) {
            report(described(failures.front()));
            return exitFailed;
        }
        std::string list =
            std::to_string(failures.size()) + " of " + std::to_string(options_.inputs.size()) + " pictures failed:";
        for (const Failure& each : failures) list += "\n  " + described(each);
        report(list);
        return exitFailed;
    }

    /// A message about the file itself names it already.
    static std::string described(const Failure& failure) {
        const bool named =
            failure.input.empty() || failure.message.find(chain::inQuotes(failure.input)) != std::string::npos;
        return named ? failure.message : failure.input + ": " + failure.message;
    }

    const CLI::App& app_;
    RunOptions& options_;
    const chain::HostOptions& host_;
    chain::Plan plan_;
    Destinations destinations_;
};

}  // namespace

void addRunCommand(CLI::App& app, CommandLine& line) {
    const auto options = std::make_shared<RunOptions>();
    app.add_option("INPUT", options->inputs, "Picture files: PNG, JPEG, GIF, BMP, WebP, TIFF, AVIF or PPIC");
    options->chain.addOptions(app);
    app.add_option("-o,--output", options->output, "Where to write the result: a file, or a directory that ends in /")
        ->type_name("PLACE");
    app.add_option("--format", options->format, "The extension of the files in that directory, such as png")
        ->type_name("EXTENSION");
    app.add_flag("--json", options->json, "Print a line of JSON for each input");
    app.add_flag("-q,--quiet", options->quiet, "Show no progress bar");
    line.action = [options, &app, &line] { return Run(app, *options, line.host)(); };
}

}  // namespace pxk::tool
