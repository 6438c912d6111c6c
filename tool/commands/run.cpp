/// `pxk INPUT... -e CHAIN -o OUTPUT`: a chain on one picture or many.
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <set>

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
    std::int32_t page = 0;
    std::int32_t quality = 0;
    std::optional<std::int32_t> compression;
    bool lossless = false;
    bool strip = false;
    bool quiet = false;
    bool json = false;
};

/// A file as messages name it.
std::string describedName(const std::string& file, const char* stream) { return file == "-" ? stream : file; }
constexpr const char* standardOutput = "standard output";
std::string inputName(const std::string& input) { return describedName(input, "standard input"); }

/// A check of an option, whose message says what is expected.
std::function<std::string(const std::string&)> wholeNumber(int least, int most) {
    return [least, most](const std::string& written) {
        int number = 0;
        const bool fits = CLI::detail::lexical_cast(written, number) && number >= least && number <= most;
        return fits ? ""
                    : "expected a whole number from " + std::to_string(least) + " to " + std::to_string(most) +
                          ", not " + written;
    };
}

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
        chain::OpenHost opened(options_.chain.isGiven() ? host_ : exactHost(host_));
        plan_ = options_.chain.planFor(opened, !options_.inputs.empty());
        checkOutput();
        if (options_.inputs.size() > 1) checkBeforeBatch(opened);
        const std::vector<Failure> failures = runAll(opened);
        // What the host's accounting finds matters only where nothing worse is to be told.
        if (!failures.empty()) return reportFailures(failures);
        flushOutput();
        opened.close();
        return exitDone;
    }

  private:
    void checkInputs() const {
        for (const std::string& each : options_.inputs) {
            if (each.empty()) throw UsageError("the name of an input is empty");
        }
        const auto fromStandardInput = std::count(options_.inputs.begin(), options_.inputs.end(), "-") +
                                       (options_.chain.isStandardInput() ? 1 : 0);
        if (fromStandardInput > 1) throw UsageError("standard input is named twice, and can be read only once");
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
            if (!options_.format.empty()) throw UsageError("--format needs -o DIRECTORY/ or -o -");
            if (hasSaveOptions()) throw UsageError("how a picture is written can be chosen only with -o PLACE");
            return;
        }
        destinations_ = destinationsFor(options_.inputs, options_.output, options_.format);
        if (result == chain::ResultKind::bytes && options_.inputs.size() > 1 && options_.format.empty()) {
            throw UsageError("the results are not pictures; give their extension with --format, such as --format bin");
        }
        if (toStandardOutput()) checkStandardOutput(result);
    }

    void checkStandardOutput(chain::ResultKind result) const {
        if (options_.json) throw UsageError("with --json, standard output is taken; name a file for -o");
        if (result == chain::ResultKind::bytes) return;
        if (options_.format.empty()) {
            throw UsageError("standard output has no extension; choose the format with --format, such as --format png");
        }
        if (::isatty(STDOUT_FILENO) == 1) {
            throw UsageError("a picture is not written to a terminal; redirect standard output, or name a file for -o");
        }
    }

    bool toStandardOutput() const { return options_.output == "-"; }

    bool hasSaveOptions() const {
        return options_.quality != 0 || options_.compression || options_.lossless || options_.strip;
    }

    pxk_save_options saveOptions() const {
        pxk_save_options chosen{};
        chosen.format = options_.format.empty() ? nullptr : options_.format.c_str();
        chosen.quality = options_.quality;
        chosen.lossless = options_.lossless ? 1 : 0;
        chosen.strip = options_.strip ? 1 : 0;
        if (options_.compression) {
            chosen.compression = *options_.compression == 0 ? PXK_NO_COMPRESSION : *options_.compression;
        }
        return chosen;
    }

    /// What would fail for every picture of a batch.
    void checkBeforeBatch(chain::OpenHost& opened) const {
        chain::checkFiles(opened, chain::DiskFiles(), plan_);
        if (resultKindOf(plan_) == chain::ResultKind::bytes) return;
        std::set<std::string> checked;
        for (const std::string& each : destinations_.files) {
            if (checked.insert(std::filesystem::path(each).extension()).second) {
                chain::checkFormat(opened, each, saveOptions());
            }
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
        const chain::Object picture = input.empty() ? chain::Object() : read(opened, input);
        const chain::Outcome outcome = chain::runPlan(opened, chain::DiskFiles(), plan_, picture);
        if (picture && outcome.picture) opened.copyMetadata(picture, outcome.picture);
        std::string lines = printedLines(outcome, input);
        if (!destinations_.files.empty()) save(opened, outcome, destinations_.files[index], record);
        if (outcome.value.kind() != PXK_NOTHING && !savesBytes(outcome)) record["result"] = asJson(outcome.value);
        for (const auto& [name, value] : outcome.variables) record["variables"][name] = asJson(value);
        return lines;
    }

    chain::Object read(chain::OpenHost& opened, const std::string& input) const {
        const pxk_load_options options{options_.page};
        return input == "-" ? chain::decodePicture(opened, chain::readFile(input, true), inputName(input), options)
                            : chain::readPicture(opened, input, options);
    }

    void save(chain::OpenHost& opened, const chain::Outcome& outcome, const std::string& file, Json& record) const {
        if (outcome.value.kind() == PXK_BOOLEAN && !outcome.value.asBoolean()) {
            throw chain::WorkError(plan_.statements.back().back().label +
                                   " returned false, so nothing was written to " + describedName(file, standardOutput));
        }
        if (!destinations_.directory.empty()) createDirectory(destinations_.directory);
        record["output"] = file;
        if (savesBytes(outcome)) {
            const std::string_view bytes = bytesOf(outcome.value.asObject());
            if (toStandardOutput()) {
                std::cout << bytes;
            } else {
                chain::writeFile(file, bytes);
            }
            record["size"] = bytes.size();
            return;
        }
        if (!outcome.picture) {
            throw chain::WorkError("there is no picture to write to " + describedName(file, standardOutput));
        }
        if (toStandardOutput()) {
            std::cout << chain::encodePicture(opened, outcome.picture, standardOutput, saveOptions());
        } else {
            chain::writePicture(opened, outcome.picture, file, saveOptions());
        }
        record.update(asJson(chain::Value::object(PXK_PICTURE, outcome.picture)));
    }

    bool savesBytes(const chain::Outcome& outcome) const {
        const bool bytes = outcome.value.kind() == PXK_STRING || outcome.value.kind() == PXK_MEMORY_BLOCK;
        return bytes && !options_.output.empty();
    }

    /// One input: each result on a line. Several: one line for each, after its name.
    std::string printedLines(const chain::Outcome& outcome, const std::string& input) const {
        if (options_.json || savesBytes(outcome) || toStandardOutput()) return "";
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
        const std::string input = inputName(failure.input);
        const bool named = input.empty() || failure.message.find(chain::inQuotes(input)) != std::string::npos;
        return named ? failure.message : input + ": " + failure.message;
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
    const char* files = "Picture files";
    app.add_option("INPUT", options->inputs,
                   "Picture files: PNG, JPEG, GIF, BMP, WebP, TIFF, AVIF, HEIC or PPIC; - is standard input");
    options->chain.addOptions(app);
    app.add_option("-o,--output", options->output,
                   "Where to write the result: a file, a directory that ends in /, or - for standard output")
        ->type_name("PLACE");
    app.add_option("--format", options->format,
                   "The extension of the files in that directory, or the format of standard output, such as png")
        ->type_name("EXTENSION");
    app.add_option("--page", options->page, "The page of a TIFF, frame of an animation, or picture of a HEIC to read")
        ->check(wholeNumber(1, 1000000))
        ->type_name("NUMBER")
        ->group(files);
    app.add_option("--quality", options->quality, "The quality of JPEG, WebP and AVIF (default 90, 80 and 60)")
        ->check(wholeNumber(1, 100))
        ->type_name("1..100")
        ->group(files);
    app.add_flag("--lossless", options->lossless, "Write every pixel exactly, or fail")->group(files);
    app.add_option("--compression", options->compression, "0 for none, 9 for the smallest PNG (default 4)")
        ->check(wholeNumber(0, 9))
        ->type_name("0..9")
        ->group(files);
    app.add_flag("--strip", options->strip, "Leave out profile, EXIF, XMP and resolution")->group(files);
    app.add_flag("--json", options->json, "Print a line of JSON for each input");
    app.add_flag("-q,--quiet", options->quiet, "Show no progress bar");
    line.action = [options, &app, &line] { return Run(app, *options, line.host)(); };
}

}  // namespace pxk::tool
