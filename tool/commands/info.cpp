/// `pxk info`: what picture files hold, without decoding them.
#include <algorithm>
#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>

#include "chain/error.h"
#include "chain/picture_file.h"
#include "chain/text.h"
#include "tool/commands/command.h"
#include "tool/commands/exit_code.h"
#include "tool/terminal/report.h"
#include "tool/terminal/result_text.h"

namespace pxk::tool {
namespace {

struct InfoOptions {
    std::vector<std::string> files;
    bool json = false;
};

/// A binary string is decoded, since the host knows nothing of its format.
pxk_file_info infoOf(chain::OpenHost& host, const std::string& file) {
    if (!chain::isBinaryString(file)) return host.fileInfo(file);
    const chain::Raster picture = host.pixelsOf(chain::readPicture(host, file));
    const bool hasAlpha =
        std::any_of(picture.words.begin(), picture.words.end(), [](std::uint32_t word) { return word >> 24 != 255; });
    return {"PPIC", picture.width, picture.height, 8, hasAlpha ? 1 : 0, "", 1, 1};
}

std::string counted(std::int32_t count, const std::string& noun) {
    return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

std::string lineOf(const std::string& file, const pxk_file_info& info) {
    const std::string profile = info.profile;
    return shownName(file) + ": " + info.format + ", " + std::to_string(info.width) + " x " +
           std::to_string(info.height) + ", " + counted(info.bits_per_sample, "bit") +
           (info.has_alpha != 0 ? ", alpha" : ", no alpha") +
           (profile.empty() ? ", no profile" : ", profile " + chain::inQuotes(shownName(profile))) + ", orientation " +
           std::to_string(info.orientation) + ", " + counted(info.pages, "page") + "\n";
}

Json jsonOf(const std::string& file, const pxk_file_info& info) {
    const std::string profile = info.profile;
    return {{"file", file},
            {"format", info.format},
            {"width", info.width},
            {"height", info.height},
            {"bits", info.bits_per_sample},
            {"alpha", info.has_alpha != 0},
            {"profile", profile.empty() ? Json() : Json(profile)},
            {"orientation", info.orientation},
            {"pages", info.pages}};
}

int describeFiles(const InfoOptions& options, const chain::HostOptions& host) {
    chain::OpenHost opened(host);
    int exitCode = exitDone;
    for (const std::string& file : options.files) {
        try {
            const pxk_file_info info = infoOf(opened, file);
            std::cout << (options.json ? oneLine(jsonOf(file, info)) + "\n" : lineOf(file, info)) << std::flush;
        } catch (const chain::WorkError& error) {
            if (options.json) std::cout << oneLine({{"file", file}, {"error", error.what()}}) << std::endl;
            report(error.what());
            exitCode = exitFailed;
        }
    }
    flushOutput();
    opened.close();
    return exitCode;
}

}  // namespace

void addInfoCommand(CLI::App& app, CommandLine& line) {
    const auto options = std::make_shared<InfoOptions>();
    CLI::App* command = app.add_subcommand("info", "Print the size, format and profile of picture files");
    command->add_option("FILE", options->files, "Picture files")->required();
    command->add_flag("--json", options->json, "Print a line of JSON for each file");
    addHostOptions(*command, line.host);
    command->callback(
        [options, &line] { line.action = [options, &line] { return describeFiles(*options, line.host); }; });
}

}  // namespace pxk::tool
