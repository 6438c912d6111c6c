/// `pxk INPUT... -e CHAIN -o OUTPUT`: a chain on one picture or many.
#include <filesystem>
#include <iostream>
#include <memory>
#include <optional>

#include "chain_runner.h"
#include "chain_source.h"
#include "command.h"
#include "destinations.h"
#include "error.h"
#include "files.h"
#include "picture_file.h"
#include "plan.h"
#include "progress_bar.h"
#include "report.h"
#include "result_text.h"
#include "text.h"

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
    Run(RunOptions& options, const HostOptions& host) : options_(options), host_(host) {}

    int operator()() {
        checkInputs();
        options_.chain.read();
        OpenHost opened(host_);
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
            if (each.empty()) throw UsageError("an input's name is empty");
        }
        if (options_.inputs.empty() && !options_.chain.isGiven())
            throw UsageError("no picture is named; see pxk --help");
    }

    void checkOutput() {
        const Ending ending = endingOf(plan_);
        if (options_.output.empty()) {
            if (ending == Ending::picture)
                throw UsageError("the chain ends in a picture; say where it goes with -o FILE");
            if (!options_.format.empty()) throw UsageError("--format goes with -o DIRECTORY/");
            return;
        }
        destinations_ = destinationsFor(options_.inputs, options_.output, options_.format);
        if (ending == Ending::bytes && options_.inputs.size() > 1 && options_.format.empty()) {
            throw UsageError("the results are no pictures; say their ending with --format, such as --format bin");
        }
    }

    std::vector<Failure> runAll(OpenHost& opened) {
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
            } catch (const WorkError& error) {
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

    /// Runs the plan on one input and saves its result. Returns what is to be printed for people.
    std::string runOne(OpenHost& opened, const std::string& input, std::size_t index, Json& record) const {
        const Outcome outcome = runPlan(opened, plan_, input.empty() ? Object() : readPicture(opened, input));
        std::string lines = printedLines(outcome, input);
        if (!destinations_.files.empty()) save(opened, outcome, destinations_.files[index], record);
        if (outcome.value.kind() != PXK_NOTHING && !savesBytes(outcome)) record["result"] = asJson(outcome.value);
        for (const auto& [name, value] : outcome.variables) record["variables"][name] = asJson(value);
        return lines;
    }

    void save(OpenHost& opened, const Outcome& outcome, const std::string& file, Json& record) const {
        if (outcome.value.kind() == PXK_BOOLEAN && !outcome.value.asBoolean()) {
            throw WorkError(plan_.statements.back().back().label + " gave false, so nothing was written to " + file);
        }
        if (!destinations_.directory.empty()) makeDirectory(destinations_.directory);
        record["output"] = file;
        if (savesBytes(outcome)) {
            const std::string_view bytes = bytesOf(outcome.value.asObject());
            writeFile(file, bytes);
            record["size"] = bytes.size();
            return;
        }
        if (!outcome.picture) throw WorkError("there is no picture to write to " + file);
        writePicture(opened, outcome.picture, file);
        record.update(asJson(Value::object(PXK_PICTURE, outcome.picture)));
    }

    bool savesBytes(const Outcome& outcome) const {
        const bool bytes = outcome.value.kind() == PXK_STRING || outcome.value.kind() == PXK_MEMORY_BLOCK;
        return bytes && !options_.output.empty();
    }

    /// One input: each result on a line. Several: one line for each, after its name.
    std::string printedLines(const Outcome& outcome, const std::string& input) const {
        if (options_.json || savesBytes(outcome)) return "";
        const bool isString = outcome.value.kind() == PXK_STRING;
        if (outcome.value.kind() == PXK_MEMORY_BLOCK || (isString && !isPlainText(bytesOf(outcome.value.asObject())))) {
            throw WorkError("the chain ends in " + std::to_string(bytesOf(outcome.value.asObject()).size()) +
                            " bytes that are no text; say where they go with -o FILE");
        }
        std::string printed;
        const bool several = options_.inputs.size() > 1;
        for (const std::string& line : linesOf(outcome)) {
            if (several) printed += printed.empty() ? input + ": " + line : ", " + line;
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
        std::string list = std::to_string(failures.size()) + " of " + std::to_string(options_.inputs.size()) +
                           " pictures could not be done:";
        for (const Failure& each : failures) list += "\n  " + described(each);
        report(list);
        return exitFailed;
    }

    /// Where the file itself is the trouble, the host's words name it already.
    static std::string described(const Failure& failure) {
        const bool named = failure.input.empty() || failure.message.find(inQuotes(failure.input)) != std::string::npos;
        return named ? failure.message : failure.input + ": " + failure.message;
    }

    RunOptions& options_;
    const HostOptions& host_;
    Plan plan_;
    Destinations destinations_;
};

}  // namespace

void addRunCommand(CLI::App& app, CommandLine& line) {
    const auto options = std::make_shared<RunOptions>();
    app.add_option("INPUT", options->inputs, "Picture files: PNG, JPEG, GIF, BMP, WebP, TIFF, AVIF or PPIC");
    options->chain.addOptions(app);
    app.add_option("-o,--output", options->output, "Where the result goes: a file, or a directory with a / at its end")
        ->type_name("PLACE");
    app.add_option("--format", options->format, "The ending of the files in that directory, such as png")
        ->type_name("ENDING");
    app.add_flag("--json", options->json, "Print one JSON object on a line for each input");
    app.add_flag("-q,--quiet", options->quiet, "Show no progress bar");
    line.action = [options, &line] { return Run(*options, line.host)(); };
}

}  // namespace pxk::tool
