/// `pxk find`: where a smaller picture stands in a larger one.
#include <iostream>
#include <memory>
#include <optional>

#include "answer.h"
#include "command.h"
#include "destinations.h"
#include "picture_file.h"
#include "progress_bar.h"
#include "report.h"
#include "result_text.h"
#include "text.h"

namespace pxk::tool {
namespace {

struct FindOptions {
    std::string needle;
    std::string haystack;
    bool all = false;
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
    Find(const FindOptions& options, const HostOptions& host) : options_(options), host_(host) {}

    bool operator()() {
        const std::vector<Position> hits = search();
        if (options_.json) {
            printJson(hits);
        } else {
            for (const Position& each : hits) std::cout << each.x << ' ' << each.y << '\n';
        }
        if (options_.mark && !hits.empty()) saveMarked(hits);
        haystack_ = needle_ = Object();
        flushOutput();
        host_.close();
        if (hits.empty())
            report(inQuotes(options_.needle) + " is not in " + inQuotes(options_.haystack) + toleranceText());
        return !hits.empty();
    }

  private:
    /// All hits, or the first, in reading order.
    std::vector<Position> search() {
        needle_ = readPicture(host_, options_.needle);
        haystack_ = readPicture(host_, options_.haystack);
        std::vector<Position> hits;
        const std::int32_t rows = sizeOf(haystack_).height;
        ProgressBar bar(static_cast<std::size_t>(rows), options_.all);
        std::int32_t shownRow = -1;
        for (std::optional<Position> hit = findFrom({0, 0}); hit; hit = findFrom({hit->x + 1, hit->y})) {
            hits.push_back(*hit);
            if (!options_.all) break;
            if (hit->y != shownRow)
                bar.show(static_cast<std::size_t>(hit->y), "rows, " + std::to_string(hits.size()) + " found");
            shownRow = hit->y;
        }
        return hits;
    }

    std::optional<Position> findFrom(const Position& start) {
        std::vector<Value> arguments{Value::object(PXK_PICTURE, needle_),
                                     Value::integer(0),
                                     Value::integer(0),
                                     Value::integer(start.x),
                                     Value::integer(start.y),
                                     options_.tolerance ? Value::integer(*options_.tolerance) : Value()};
        const Value found = host_.call(haystack_, "FindPicturePXK", arguments);
        if (!found.asBoolean()) return std::nullopt;
        return Position{arguments[1].asInteger(), arguments[2].asInteger()};
    }

    void printJson(const std::vector<Position>& hits) const {
        const PictureSize size = sizeOf(needle_);
        Json found = Json::array();
        for (const Position& each : hits) found.push_back({{"x", each.x}, {"y", each.y}});
        std::cout << oneLine({{"needle", options_.needle},
                              {"haystack", options_.haystack},
                              {"width", size.width},
                              {"height", size.height},
                              {"found", found}})
                  << '\n';
    }

    /// The haystack with a frame around each hit, or on its edge where there is no room around it.
    void saveMarked(const std::vector<Position>& hits) {
        constexpr std::uint32_t frameColor = 0xFF0080;
        constexpr std::int32_t frameWidth = 2;
        const PictureSize size = sizeOf(needle_);
        Raster marked = host_.pixelsOf(haystack_);
        for (const Position& hit : hits) {
            const Box around{hit.x - frameWidth, hit.y - frameWidth, hit.x + size.width + frameWidth,
                             hit.y + size.height + frameWidth};
            marked.drawFrame(around, frameWidth, frameColor);
        }
        writePicture(host_, host_.newPicture(marked), *options_.mark);
    }

    std::string toleranceText() const {
        if (!options_.tolerance) return "";
        return ", where each channel must differ by less than " + std::to_string(*options_.tolerance);
    }

    const FindOptions& options_;
    OpenHost host_;
    Object needle_;
    Object haystack_;
};

}  // namespace

void addFindCommand(CLI::App& app, CommandLine& line) {
    const auto options = std::make_shared<FindOptions>();
    CLI::App* command =
        app.add_subcommand("find", "Find a smaller picture in a larger one, and print where it is: x y");
    command->add_option("NEEDLE", options->needle, "The smaller picture")->required();
    command->add_option("HAYSTACK", options->haystack, "The larger picture")->required();
    command->add_flag("--all", options->all, "Print every place, not the first only");
    command
        ->add_option("--tolerance", options->tolerance,
                     "Each channel must differ by less: 1 for exact copies; 3 when left out")
        ->type_name("COUNT");
    command->add_flag("--json", options->json, "Print one JSON object");
    command->add_option("--mark", options->mark, "Draw a frame around each place found, into this picture file")
        ->type_name("FILE");
    addHostOptions(*command, line.host);
    command->footer("The exit code is 0 when it is found, 1 when it is not, and 2 when there is trouble.");
    command->callback([options, &line] {
        line.action = [options, &line] {
            if (options->mark) checkDestinationFile(*options->mark);
            return answered([&] { return Find(*options, line.host)(); });
        };
    });
}

}  // namespace pxk::tool
