/// The files that a chain names, from disk and from a caller's own place.
#include "chain/files.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>

#include "chain/error.h"
#include "chain/parser.h"
#include "chain/runner.h"

namespace pxk::chain {
namespace {

/// Files held in memory, as a web page has them; a picture is a row of RGB bytes.
class MemoryFiles final : public Files {
  public:
    explicit MemoryFiles(std::map<std::string, std::string> contents) : contents_(std::move(contents)) {}

    std::string bytes(const std::string& name) const override {
        const auto found = contents_.find(name);
        if (found == contents_.end()) throw WorkError("there is no file \"" + name + "\"");
        return found->second;
    }

    Object picture(OpenHost& host, const std::string& name) const override {
        const std::string row = bytes(name);
        Raster pixels = Raster::filled(static_cast<std::int32_t>(row.size() / 3), 1, 0);
        for (std::size_t i = 0; i < row.size(); ++i) {
            pixels.words[i / 3] |= std::uint32_t{static_cast<unsigned char>(row[i])} << (16 - 8 * (i % 3));
        }
        return host.newPicture(pixels);
    }

  private:
    std::map<std::string, std::string> contents_;
};

constexpr const char* invertingCube = "LUT_3D_SIZE 2\n1 1 1\n0 1 1\n1 0 1\n0 0 1\n1 1 0\n0 1 0\n1 0 0\n0 0 0\n";

/// The first pixel after a chain on one pixel of colour 0x102030.
std::uint32_t pixelAfter(const std::string& text, const Files& files) {
    OpenHost host({});
    const Plan plan = makePlan(parseChain(text), host, files, true);
    const Outcome outcome = runPlan(host, files, plan, host.newPicture(Raster::filled(1, 1, 0x102030)));
    return host.pixelsOf(outcome.picture).words.at(0);
}

TEST(ChainFiles, SupplyPicturesTablesAndCubes) {
    const MemoryFiles files({{"invert.cube", invertingCube},
                             {"invert.curve", "curve linear\n0 255\n255 0\n"},
                             {"red", std::string("\xFF\0\0", 3)}});
    EXPECT_EQ(pixelAfter("PictureLut3D(\"invert.cube\")", files), 0xFFEFDFCFU);
    EXPECT_EQ(pixelAfter("TransformColors(\"invert.curve\", \"invert.curve\", \"invert.curve\")", files), 0xFFEFDFCFU);
    EXPECT_EQ(pixelAfter("MergePicture(\"red\", pic)", files), 0xFFFF2030U);
}

TEST(ChainFiles, AreNamedWhenTheyAreMissing) {
    const MemoryFiles none({});
    for (const char* text : {"PictureLut3D(\"a b\")", "TransformColors(\"a b\", \"a b\", \"a b\")"}) {
        try {
            pixelAfter(text, none);
            FAIL() << text;
        } catch (const WorkError& error) {
            EXPECT_THAT(error.what(), testing::EndsWith("there is no file \"a b\""));
        }
    }
}

TEST(ChainFiles, OnDiskAreNamedWhenTheyAreMissing) {
    try {
        DiskFiles().bytes("/nowhere/look.cube");
        FAIL();
    } catch (const WorkError& error) {
        EXPECT_STREQ(error.what(), "cannot read \"/nowhere/look.cube\": No such file or directory");
    }
}

}  // namespace
}  // namespace pxk::chain
