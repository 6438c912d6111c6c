/// `pxk find`: where a smaller picture occurs in a larger one.
#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>

#include "chain/picture_file.h"
#include "chain/text.h"
#include "tool/charts/drawing.h"
#include "tool/commands/command.h"
#include "tool/commands/destinations.h"
#include "tool/commands/exit_code.h"
#include "tool/terminal/progress_bar.h"
#include "tool/terminal/report.h"
#include "tool/terminal/result_text.h"

namespace pxk::tool {
namespace {

struct FindOptions {
    std::string needle;
    std::string haystack;
    bool all = false;
    std::size_t limit = 1000;
    std::optional<std::int32_t> tolerance;
    bool json = false;
    std::optional<std::string> mark;
};

struct Position {
    std::int32_t x;
    std::int32_t y;
};

class Find {
  public:
    Find(const FindOptions& options, const chain::HostOptions& host) : options_(options), host_(host) {}

    bool operator()() {
        const std::vector<Position> hits = search();
        if (options_.json) {
            printJson(hits);
        } else {
            for (const Position& each : hits) std::cout << each.x << ' ' << each.y << '\n';
        }
        if (options_.mark && !hits.empty()) saveMarked(hits);
        haystack_ = needle_ = chain::Object();
        flushOutput();
        host_.close();
        if (isStopped_)
            report("stopped after " + std::to_string(hits.size()) + " positions; there are more (see --limit)");
        if (hits.empty())
            report(chain::inQuotes(options_.needle) + " was not found in " + chain::inQuotes(options_.haystack) +
                   toleranceText());
        return !hits.empty();
    }

  private:
    /// All hits, or the first, in reading order.
    std::vector<Position> search() {
        needle_ = chain::readPicture(host_, options_.needle);
        haystack_ = chain::readPicture(host_, options_.haystack);
        std::vector<Position> hits;
        const std::int32_t rows = sizeOf(haystack_).height;
        ProgressBar bar(static_cast<std::size_t>(rows), options_.all);
        std::int32_t shownRow = -1;
        for (std::optional<Position> hit = findFrom({0, 0}); hit; hit = findFrom({hit->x + 1, hit->y})) {
            isStopped_ = options_.all && hits.size() == options_.limit;
            if (isStopped_) break;
            hits.push_back(*hit);
            if (!options_.all) break;
            if (hit->y != shownRow || hits.size() % foundBetweenUpdates == 0)
                bar.show(static_cast<std::size_t>(hit->y), "rows, " + std::to_string(hits.size()) + " found");
            shownRow = hit->y;
        }
        return hits;
    }

    std::optional<Position> findFrom(const Position& start) {
        std::vector<chain::Value> arguments{
            chain::Value::object(PXK_PICTURE, needle_),
            chain::Value::integer(0),
            chain::Value::integer(0),
            chain::Value::integer(start.x),
            chain::Value::integer(start.y),
            options_.tolerance ? chain::Value::integer(*options_.tolerance) : chain::Value()};
        const chain::Value found = host_.call(haystack_, "FindPicturePXK", arguments);
        if (!found.asBoolean()) return std::nullopt;
        return Position{arguments[1].asInteger(), arguments[2].asInteger()};
    }

    void printJson(const std::vector<Position>& hits) const {
        const chain::PictureSize size = sizeOf(needle_);
        Json found = Json::array();
        for (const Position& each : hits) found.push_back({{"x", each.x}, {"y", each.y}});
        std::cout << oneLine({{"needle", options_.needle},
                              {"haystack", options_.haystack},
                              {"width", size.width},
                              {"height", size.height},
                              {"complete", !isStopped_},
                              {"found", found}})
                  << '\n';
    }

    /// The haystack with a frame around each hit, or on its edge where there is no room around it.
    void saveMarked(const std::vector<Position>& hits) {
        constexpr std::uint32_t frameColor = 0xFF0080;
        constexpr std::int32_t frameWidth = 2;
        const chain::PictureSize size = sizeOf(needle_);
        chain::Raster marked = host_.pixelsOf(haystack_);
        for (const Position& hit : hits) {
            const Box around{hit.x - frameWidth, hit.y - frameWidth, hit.x + size.width + frameWidth,
                             hit.y + size.height + frameWidth};
            drawFrame(marked, around, frameWidth, frameColor);
        }
        chain::writePicture(host_, host_.newPicture(marked), *options_.mark);
    }

    std::string toleranceText() const {
        if (!options_.tolerance) return "";
        return " (each channel may differ by less than " + std::to_string(*options_.tolerance) + ")";
    }

    static constexpr std::size_t foundBetweenUpdates = 100;

    const FindOptions& options_;
    chain::OpenHost host_;
    bool isStopped_ = false;  ///< at the limit, with more to find
    chain::Object needle_;
    chain::Object haystack_;
};

}  // namespace

void addFindCommand(CLI::App& app, CommandLine& line) {
    const auto options = std::make_shared<FindOptions>();
    CLI::App* command =
        app.add_subcommand("find", "Find a smaller picture in a larger one, and print its position: x y");
    command->add_option("NEEDLE", options->needle, "The smaller picture")->required();
    command->add_option("HAYSTACK", options->haystack, "The larger picture")->required();
    command->add_flag("--all", options->all, "Print every position up to the limit, not only the first");
    command->add_option("--limit", options->limit, "With --all, the most positions to print (default 1000)")
        ->check(CLI::PositiveNumber)
        ->type_name("COUNT");
    command
        ->add_option("--tolerance", options->tolerance,
                     "Each channel must differ by less than this (default 3; 1 finds exact copies)")
        ->type_name("LEVELS");
    command->add_flag("--json", options->json, "Print one JSON object");
    command
        ->add_option("--mark", options->mark,
                     "Write the larger picture to this file, with a frame around each position")
        ->type_name("FILE");
    addHostOptions(*command, line.host);
    command->footer("The exit code is 0 when it is found, 1 when it is not, and 2 on an error.");
    command->callback([options, &line] {
        line.action = [options, &line] {
            if (options->mark) checkDestinationFile(*options->mark);
            return answered([&] { return Find(*options, line.host)(); });
        };
    });
}

}  // namespace pxk::tool
