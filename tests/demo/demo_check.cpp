// Compares the demo's pictures with the sample picture, byte by byte, by the definition of each member.
//
//     demo_check SAMPLE.png FOLDER
//
// Reads the files with libgd directly, so that neither the plugin nor the reference host has a say in the verdict.
#include <gd.h>

#include <cstdio>
#include <memory>
#include <string>

namespace {

struct Rectangle {
    int left, top, right, bottom;
};

struct Expectation {
    const char* file;
    bool greysOnly;
    Rectangle rectangle;
};

/// The demo's calls: what each was to invert.
constexpr Expectation expectations[] = {
    {"inverted.png", false, {0, 0, 640, 480}},
    {"inverted_rectangle.png", false, {160, 120, 480, 360}},
    {"inverted_grey.png", true, {0, 0, 640, 480}},
};

/// What a console host leaves where nothing is written.
constexpr int unwritten = 0x000000;

using Image = std::unique_ptr<gdImage, decltype(&gdImageDestroy)>;

Image readPng(const std::string& path) {
    Image image(nullptr, gdImageDestroy);
    if (FILE* file = std::fopen(path.c_str(), "rb")) {
        image.reset(gdImageCreateFromPng(file));
        std::fclose(file);
    }
    if (image) gdImagePaletteToTrueColor(image.get());
    return image;
}

int expectedPixel(const Expectation& expectation, int colour, int x, int y) {
    const Rectangle& inside = expectation.rectangle;
    if (x < inside.left || x >= inside.right || y < inside.top || y >= inside.bottom) return unwritten;
    const int red = gdTrueColorGetRed(colour);
    const int green = gdTrueColorGetGreen(colour);
    const int blue = gdTrueColorGetBlue(colour);
    if (expectation.greysOnly && (red != green || green != blue)) return gdTrueColor(red, green, blue);
    return gdTrueColor(255 - red, 255 - green, 255 - blue);
}

/// Whether the picture is right; says on standard error why not.
bool check(gdImage* sample, const Expectation& expectation, const std::string& path) {
    const Image result = readPng(path);
    if (!result) {
        std::fprintf(stderr, "%s: no PNG file that can be read\n", path.c_str());
        return false;
    }
    if (gdImageSX(result.get()) != gdImageSX(sample) || gdImageSY(result.get()) != gdImageSY(sample)) {
        std::fprintf(stderr, "%s: not of the sample's size\n", path.c_str());
        return false;
    }
    for (int y = 0; y < gdImageSY(sample); ++y) {
        for (int x = 0; x < gdImageSX(sample); ++x) {
            const int expected = expectedPixel(expectation, gdImageGetTrueColorPixel(sample, x, y), x, y);
            const int actual = gdImageGetTrueColorPixel(result.get(), x, y);
            if (actual == expected) continue;
            std::fprintf(stderr, "%s: pixel (%d, %d) is %08x and should be %08x\n", path.c_str(), x, y,
                         static_cast<unsigned>(actual), static_cast<unsigned>(expected));
            return false;
        }
    }
    return true;
}

}  // namespace

int main(int count, char** arguments) {
    if (count != 3) {
        std::fprintf(stderr, "usage: demo_check SAMPLE.png FOLDER\n");
        return 2;
    }
    const Image sample = readPng(arguments[1]);
    if (!sample) {
        std::fprintf(stderr, "%s: no PNG file that can be read\n", arguments[1]);
        return 1;
    }
    for (const Expectation& expectation : expectations) {
        if (!check(sample.get(), expectation, std::string(arguments[2]) + "/" + expectation.file)) return 1;
    }
    std::printf("%zu pictures, every pixel as it should be\n", std::size(expectations));
}
