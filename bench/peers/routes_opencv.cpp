// The routes of OpenCV. Sequences of functions run in strips that stay in the cache.
#include <algorithm>
#include <memory>
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>

#include "bench/limits.h"
#include "bench/looks.h"
#include "bench/peers/route.h"
#include "bench/pictures.h"

namespace pxkbench {
namespace {

using cv::Mat;
using cv::Scalar;
using std::vector;

constexpr double opaque = 255;

// A view of a picture's words. OpenCV has no read-only views.
Mat view(const PeerPictures& pictures, const Words& words) {
    return Mat(pictures.height, pictures.width, CV_8UC4, const_cast<std::uint32_t*>(words.data()));
}

// The same, as 32-bit integers.
Mat numbers(const Mat& words) { return Mat(words.rows, words.cols, CV_32S, words.data, words.step); }

Outcome coloursOf(const Mat& words) {
    Outcome colours;
    for (int y = 0; y < words.rows; ++y) {
        const auto* const row = words.ptr<std::uint32_t>(y);
        for (int x = 0; x < words.cols; ++x) colours.push_back(row[x] & 0xFFFFFF);
    }
    return colours;
}

// Calls `work` with the rows of each strip.
template <class Work>
void inStrips(const Mat& picture, Work work) {
    constexpr int pixels = 1 << 15;
    const int rows = std::max(1, pixels / picture.cols);
    for (int y = 0; y < picture.rows; y += rows) work(cv::Range(y, std::min(y + rows, picture.rows)));
}

// One call from the source to the result.
template <class Work>
auto whole(Work work) {
    return [=](const PeerPictures& pictures) -> PeerRun {
        const Mat source = view(pictures, pictures.source);
        const auto result = std::make_shared<Mat>(source.size(), CV_8UC4);
        return {[=] { work(source, *result); }, [=] { return coloursOf(*result); }};
    };
}

// The same, strip by strip.
template <class Work>
auto strips(Work work) {
    return whole([=](const Mat& source, Mat& result) {
        inStrips(source, [&](const cv::Range& rows) {
            Mat strip = result.rowRange(rows);
            work(source.rowRange(rows), strip);
        });
    });
}

// One call from the source and another picture to the result.
template <class Work>
auto ofTwo(Work work) {
    return [=](const PeerPictures& pictures) -> PeerRun {
        const Mat source = view(pictures, pictures.source);
        const Mat second = view(pictures, pictures.second);
        const auto result = std::make_shared<Mat>(source.size(), CV_8UC4);
        return {[=] { work(source, second, *result); }, [=] { return coloursOf(*result); }};
    };
}

// A number computed from the source.
template <class Work>
auto number(Work work) {
    return [=](const PeerPictures& pictures) -> PeerRun {
        const Mat source = view(pictures, pictures.source);
        const auto result = std::make_shared<int>();
        return {[=] { *result = work(source); }, [=] { return outcomeOf(*result); }};
    };
}

// ---- point operations

void invertAll(const Mat& source, Mat& result) { cv::bitwise_not(source, result); }
void invertColours(const Mat& source, Mat& result) { cv::bitwise_xor(source, Scalar(255, 255, 255, 0), result); }

auto invertGreys() {
    return strips([planes = std::make_shared<vector<Mat>>()](const Mat& source, Mat& result) {
        vector<Mat>& plane = *planes;
        cv::split(source, plane);
        cv::compare(plane[0], plane[1], plane[0], cv::CMP_EQ);
        cv::compare(plane[1], plane[2], plane[1], cv::CMP_EQ);
        cv::bitwise_and(plane[0], plane[1], plane[0]);
        source.copyTo(result);
        cv::bitwise_not(source, result, plane[0]);
    });
}

// v * factor + offset
auto line(double factor, double offset) {
    return whole([=](const Mat& source, Mat& result) { source.convertTo(result, -1, factor, offset); });
}

void addTen(const Mat& source, Mat& result) { cv::add(source, Scalar(10, 10, 10, 0), result); }

// Computes each channel from all three: a row of factors and an offset for each of blue, green and red. The function is
// vectorised for three channels only.
auto matrix(const Mat& factors) {
    return strips(
        [=, three = std::make_shared<Mat>(), changed = std::make_shared<Mat>()](const Mat& source, Mat& result) {
            cv::cvtColor(source, *three, cv::COLOR_BGRA2BGR);
            cv::transform(*three, *changed, factors);
            cv::cvtColor(*changed, result, cv::COLOR_BGR2BGRA);
        });
}

Mat saturationMatrix() {
    constexpr double factor = 355 / 255.0;
    constexpr double rest = 1 - factor;
    return (cv::Mat_<float>(3, 4) << rest / 4 + factor, rest / 2, rest / 4, 0, rest / 4, rest / 2 + factor, rest / 4, 0,
            rest / 4, rest / 2, rest / 4 + factor, 0);
}

Mat tintMatrix() {
    constexpr double third = 0x55 / 255.0;
    constexpr double blue = 0x88 / 255.0 * third;
    constexpr double green = 0xCC / 255.0 * third;
    constexpr double red = third;
    return (cv::Mat_<float>(3, 4) << blue, blue, blue, 0, green, green, green, 0, red, red, red, 0);
}

Mat sepiaMatrix() {
    constexpr double red = 306 / 1024.0;
    constexpr double green = 601 / 1024.0;
    constexpr double blue = 116 / 1024.0;
    return (cv::Mat_<float>(3, 4) << blue, green, red, -20, blue, green, red, 20, blue, green, red, 40);
}

// A factor and an offset for each channel.
Mat lineMatrix() { return (cv::Mat_<float>(3, 4) << 0.7, 0, 0, 5, 0, 0.9, 0, 9, 0, 0, 0.9, 8); }

const double blobWord = static_cast<std::int32_t>(0xFF000000U | blobColour);
const Scalar greenPixel(0x40, 0xA0, 0x20, opaque);

auto replaceColour() {
    return strips([mask = std::make_shared<Mat>()](const Mat& source, Mat& result) {
        cv::compare(numbers(source), blobWord, *mask, cv::CMP_EQ);
        source.copyTo(result);
        result.setTo(greenPixel, *mask);
    });
}

auto extractColour() {
    return strips([mask = std::make_shared<Mat>()](const Mat& source, Mat& result) {
        cv::compare(numbers(source), blobWord, *mask, cv::CMP_EQ);
        result.setTo(Scalar::all(opaque));
        result.setTo(greenPixel, *mask);
    });
}

// Blobs are of one colour, on grey.
void boxesOfBlobs(const Mat& source, Mat& result) {
    static Mat mask;
    static vector<vector<cv::Point>> outlines;
    cv::compare(numbers(source), blobWord, mask, cv::CMP_EQ);
    cv::findContours(mask, outlines, cv::RETR_EXTERNAL, cv::CHAIN_APPROX_SIMPLE);
    result.setTo(Scalar::all(opaque));
    for (const vector<cv::Point>& outline : outlines)
        cv::rectangle(result, cv::boundingRect(outline), Scalar(0, 0, 0, opaque), cv::FILLED);
}

// ---- channels

// BGRA: red is channel 2.
auto replaceByMixing(int channel) {
    return ofTwo([=](const Mat& source, const Mat& second, Mat& result) {
        const int fromTo[] = {channel, channel};
        source.copyTo(result);
        cv::mixChannels(&second, 1, &result, 1, fromTo, 1);
    });
}

auto replaceByMasks(int channel) {
    Scalar mask;
    mask[channel] = 255;
    return ofTwo([=, difference = std::make_shared<Mat>()](const Mat& source, const Mat& second, Mat& result) {
        inStrips(source, [&](const cv::Range& rows) {
            Mat strip = result.rowRange(rows);
            cv::bitwise_xor(source.rowRange(rows), second.rowRange(rows), *difference);
            cv::bitwise_and(*difference, mask, *difference);
            cv::bitwise_xor(source.rowRange(rows), *difference, strip);
        });
    });
}

// As for the member, the arguments are the sources of red, blue and green, in this order.
PeerRun combineByMixing(const PeerPictures& pictures) {
    const vector<Mat> sources = {view(pictures, pictures.source), view(pictures, pictures.second),
                                 view(pictures, pictures.third)};
    const auto result = std::make_shared<Mat>(sources[0].size(), CV_8UC4);
    return {[=] {
                const int fromTo[] = {2, 2, 4, 0, 9, 1, 3, 3};
                cv::mixChannels(sources.data(), 3, result.get(), 1, fromTo, 4);
            },
            [=] { return coloursOf(*result); }};
}

PeerRun combineByMasks(const PeerPictures& pictures) {
    const Mat red = view(pictures, pictures.source);
    const Mat blue = view(pictures, pictures.second);
    const Mat green = view(pictures, pictures.third);
    const auto result = std::make_shared<Mat>(red.size(), CV_8UC4);
    const auto part = std::make_shared<Mat>();
    return {[=] {
                inStrips(red, [&](const cv::Range& rows) {
                    Mat strip = result->rowRange(rows);
                    cv::bitwise_and(red.rowRange(rows), Scalar(0, 0, 255, 255), strip);
                    cv::bitwise_and(blue.rowRange(rows), Scalar(255, 0, 0, 0), *part);
                    cv::bitwise_or(strip, *part, strip);
                    cv::bitwise_and(green.rowRange(rows), Scalar(0, 255, 0, 0), *part);
                    cv::bitwise_or(strip, *part, strip);
                });
            },
            [=] { return coloursOf(*result); }};
}

int countBlobs(const Mat& source) {
    static Mat mask;
    int count = 0;
    inStrips(source, [&](const cv::Range& rows) {
        cv::compare(numbers(source).rowRange(rows), blobWord, mask, cv::CMP_EQ);
        count += cv::countNonZero(mask);
    });
    return count;
}

PeerRun histograms(const PeerPictures& pictures) {
    const Mat source = view(pictures, pictures.source);
    const auto counts = std::make_shared<vector<Mat>>(3);
    return {[=] {
                const int size = 256;
                const float range[] = {0, 256};
                const float* ranges = range;
                for (int channel = 0; channel < 3; ++channel)
                    cv::calcHist(&source, 1, &channel, Mat(), (*counts)[static_cast<std::size_t>(channel)], 1, &size,
                                 &ranges);
            },
            [=] {
                Outcome outcome;
                for (const std::size_t channel : {2, 1, 0})
                    for (int value = 0; value < 256; ++value)
                        outcome.push_back(static_cast<std::uint32_t>((*counts)[channel].at<float>(value)));
                return outcome;
            }};
}

auto lookUp() {
    Mat table(1, 256, CV_8UC4);
    for (int value = 0; value < 256; ++value)
        table.at<cv::Vec4b>(value) = {tableEntry(2, value), tableEntry(1, value), tableEntry(0, value), 255};
    return whole([=](const Mat& source, Mat& result) { cv::LUT(source, table, result); });
}

// ---- analysis

// Clears alpha, so that black is 0.
PeerRun allBlack(const PeerPictures& pictures) {
    const auto words = std::make_shared<Words>(pxkbench::coloursOf(pictures.source));
    const Mat source = view(pictures, *words);
    const auto black = std::make_shared<bool>();
    return {[=] { *black = cv::countNonZero(numbers(source)) == 0; }, [=, keep = words] { return outcomeOf(*black); }};
}

auto allGrey() {
    return number([planes = std::make_shared<vector<Mat>>()](const Mat& source) {
        int coloured = 0;
        inStrips(source, [&](const cv::Range& rows) {
            vector<Mat>& plane = *planes;
            cv::split(source.rowRange(rows), plane);
            cv::bitwise_xor(plane[0], plane[1], plane[0]);
            cv::bitwise_xor(plane[2], plane[1], plane[2]);
            cv::bitwise_or(plane[0], plane[2], plane[0]);
            coloured += cv::countNonZero(plane[0]);
        });
        return coloured == 0 ? 1 : 0;
    });
}

// A tolerance of 3: the largest difference between two channels.
auto nearlyGrey() {
    return number([planes = std::make_shared<vector<Mat>>(), most = std::make_shared<Mat>(),
                   least = std::make_shared<Mat>()](const Mat& source) {
        int coloured = 0;
        inStrips(source, [&](const cv::Range& rows) {
            vector<Mat>& plane = *planes;
            cv::split(source.rowRange(rows), plane);
            cv::max(plane[0], plane[1], *most);
            cv::max(*most, plane[2], *most);
            cv::min(plane[0], plane[1], *least);
            cv::min(*least, plane[2], *least);
            cv::subtract(*most, *least, *most);
            cv::compare(*most, 3, *most, cv::CMP_GT);
            coloured += cv::countNonZero(*most);
        });
        return coloured == 0 ? 1 : 0;
    });
}

auto colouredPixels() {
    return number([planes = std::make_shared<vector<Mat>>(), far = std::make_shared<Mat>(),
                   bright = std::make_shared<Mat>()](const Mat& source) {
        int coloured = 0;
        inStrips(source, [&](const cv::Range& rows) {
            vector<Mat>& plane = *planes;
            cv::split(source.rowRange(rows), plane);
            cv::max(plane[0], plane[1], *bright);
            cv::max(*bright, plane[2], *bright);
            cv::compare(*bright, 29, *bright, cv::CMP_GT);
            cv::absdiff(plane[1], plane[0], plane[0]);
            cv::absdiff(plane[1], plane[2], plane[2]);
            cv::max(plane[0], plane[2], *far);
            cv::compare(*far, 10, *far, cv::CMP_GT);
            cv::bitwise_and(*far, *bright, *far);
            coloured += cv::countNonZero(*far);
        });
        return coloured;
    });
}

// On grey pictures, which is faster than on colour.
PeerRun find(const PeerPictures& pictures) {
    constexpr int side = 32;
    const Mat source = view(pictures, pictures.source);
    Mat needle;
    cv::cvtColor(source(cv::Rect(source.cols - side - 5, source.rows - side - 3, side, side)), needle,
                 cv::COLOR_BGRA2GRAY);
    const auto grey = std::make_shared<Mat>();
    const auto differences = std::make_shared<Mat>();
    const auto place = std::make_shared<cv::Point>();
    return {[=] {
                cv::cvtColor(source, *grey, cv::COLOR_BGRA2GRAY);
                cv::matchTemplate(*grey, needle, *differences, cv::TM_SQDIFF);
                cv::minMaxLoc(*differences, nullptr, nullptr, place.get(), nullptr);
            },
            [=] {
                return Outcome{static_cast<std::uint32_t>(place->x), static_cast<std::uint32_t>(place->y)};
            }};
}

// From the target to another picture, so that the outcome of every run is that of a first scroll.
auto shiftBy(int columns, int rows, int border) {
    return [=](const PeerPictures& pictures) -> PeerRun {
        const Mat target = view(pictures, pictures.target);
        const auto result = std::make_shared<Mat>(target.size(), CV_8UC4);
        const cv::Rect seen(0, 0, target.cols - columns, target.rows - rows);
        return {[=] {
                    cv::copyMakeBorder(target(seen), *result, rows, 0, columns, 0, border | cv::BORDER_ISOLATED,
                                       Scalar::all(255));
                },
                [=] { return coloursOf(*result); }};
    };
}

// ---- binary strings

// Like the member, allocates the bytes each time and has the host make a string of them.
PeerRun toRgbString(const PeerPictures& pictures) {
    constexpr std::size_t headerSize = 40;
    const Mat source = view(pictures, pictures.source);
    const auto string = std::make_shared<pxkhost::Ref<pxkhost::String>>();
    return {[=] {
                *string = nullptr;
                const std::unique_ptr<unsigned char[]> bytes(new unsigned char[headerSize + 3 * source.total()]);
                std::fill_n(bytes.get(), headerSize, static_cast<unsigned char>(0));
                Mat rgb(source.size(), CV_8UC3, bytes.get() + headerSize);
                cv::cvtColor(source, rgb, cv::COLOR_BGRA2RGB);
                const auto* const text = reinterpret_cast<const char*>(bytes.get());
                *string = pxkhost::String::make(std::string(text, headerSize + 3 * source.total()),
                                                pxkhost::encoding::unknown);
            },
            [=] { return outcomeOf(*string); }};
}

PeerRun fromRgb(const PeerPictures& pictures) {
    const auto rgb = std::make_shared<Mat>();
    cv::cvtColor(view(pictures, pictures.source), *rgb, cv::COLOR_BGRA2RGB);
    const auto result = std::make_shared<Mat>(rgb->size(), CV_8UC4);
    return {[=] { cv::cvtColor(*rgb, *result, cv::COLOR_RGB2BGRA); }, [=] { return coloursOf(*result); }};
}

}  // namespace

Library openCv() {
    cv::setNumThreads(0);
    return {"OpenCV " + cv::getVersionString(),
            {
                {"InvertPXK", "bitwise_not, alpha too", 0, whole(invertAll)},
                {"InvertPXK", "bitwise_xor with a scalar", 0, whole(invertColours)},
                {"InvertGrayPXK", "split, compare, and, copyTo, bitwise_not", 0, invertGreys()},
                {"ChangeBrightnessAbsolutePXK(10)", "convertTo", 0, line(1, 10)},
                {"ChangeBrightnessAbsolutePXK(10)", "add of a scalar", 0, whole(addTen)},
                {"ChangeBrightnessLinearPXK(10)", "convertTo", 1, line(245 / 255.0, 10)},
                {"ChangeContrastPXK(0.5)", "convertTo", 1, line(1.5, 127 - 127 * 1.5)},
                {"ChangeContrastBrightnessAbsolutePXK(0.5, 10)", "convertTo", 1, line(1.5, 137 - 127 * 1.5)},
                {"ChangeContrastBrightnessLinearPXK(0.5, 10)", "convertTo", 1,
                 line(1.5 * 245 / 255, (127 - 127 * 1.5) * 245 / 255 + 10)},
                {"ChangeCustomPXK(0.9, 8)", "convertTo", 1, line(0.9, 8)},
                {"ChangeCustomPXK(0.9, 8, 0.8, 9, 0.7, 5)", "cvtColor, transform, cvtColor", 1, matrix(lineMatrix())},
                {"ChangeSaturationPXK(100)", "cvtColor, transform, cvtColor", 2, matrix(saturationMatrix())},
                {"TintPicturePXK", "cvtColor, transform, cvtColor", 1, matrix(tintMatrix())},
                {"PictureSepiaPXK.Run", "cvtColor, transform, cvtColor", 2, matrix(sepiaMatrix())},
                {"ReplaceColorPXK", "compare, copyTo, setTo", 0, replaceColour()},
                {"ExtractColorPXK", "compare, setTo, setTo", 0, extractColour()},
                {"ExtractColorRectangleMaskPXK", "compare, findContours, rectangle", 0, whole(boxesOfBlobs)},
                {"ReplaceRedChannelPXK", "copyTo, mixChannels", 0, replaceByMixing(2)},
                {"ReplaceRedChannelPXK", "xor, and, xor", 0, replaceByMasks(2)},
                {"ReplaceGreenChannelPXK", "copyTo, mixChannels", 0, replaceByMixing(1)},
                {"ReplaceGreenChannelPXK", "xor, and, xor", 0, replaceByMasks(1)},
                {"ReplaceBlueChannelPXK", "copyTo, mixChannels", 0, replaceByMixing(0)},
                {"ReplaceBlueChannelPXK", "xor, and, xor", 0, replaceByMasks(0)},
                {"CombinePicturesPXK", "mixChannels", 0, combineByMixing},
                {"CombinePicturesPXK", "and, and, or, and, or", 0, combineByMasks},
                {"MergePicturePXK", "max", 0,
                 ofTwo([](const Mat& source, const Mat& second, Mat& result) { cv::max(source, second, result); })},
                {"CountColorPXK", "compare, countNonZero", 0, number(countBlobs)},
                {"CountColorsPXK", "calcHist", 0, histograms},
                {"TransformColorsPXK", "LUT", 0, lookUp()},
                {"TransformColorsPXK(dest)", "LUT", 0, lookUp()},
                {"isBlackPXK", "countNonZero", 0, allBlack},
                {"isGrayPXK", "split, xor, or, countNonZero", 0, allGrey()},
                {"isGrayPXK(3)", "split, max, min, subtract, compare, countNonZero", 0, nearlyGrey()},
                {"ColornessPXK", "split, absdiff, max, compare, countNonZero", 0, colouredPixels()},
                {"FindPicturePXK", "cvtColor, matchTemplate, minMaxLoc", 0, find},
                {"ScrollVerticalPXK(37)", "copyMakeBorder", 0, shiftBy(0, limitDistance, cv::BORDER_CONSTANT)},
                {"ScrollHorizontalPXK(37)", "copyMakeBorder", 0, shiftBy(limitDistance, 0, cv::BORDER_CONSTANT)},
                {"PicturetoBinaryStringPXK", "cvtColor, host string", 0, toRgbString, true},
                {"BinaryStringtoPicturePXK", "cvtColor", 0, fromRgb},
            }};
}

}  // namespace pxkbench
