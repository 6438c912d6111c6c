/// The settings in which a member must give the same result: every instruction set, every pair of picture formats.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "support/host_fixture.h"
#include "support/pixel_formats.h"
#include "support/random.h"

namespace pxk::test {

using pxkhost::ApplicationKind;
using pxkhost::Host;
using pxkhost::Options;
using pxkhost::Picture;
using pxkhost::PixelLayout;
using pxkhost::Ref;
using pxktest::pluginPath;
using pxktest::rawWords;

/// The plugins built for one instruction set each, as far as this processor can run them.
std::vector<std::filesystem::path> runnablePlugins();

/// A host with pictures of one format to read and one to write.
struct Setting {
    std::filesystem::path plugin;
    ApplicationKind application;
    PixelLayout source;
    PixelLayout result;

    std::string name() const;

    /// A picture in the source format with random words, alpha included, and rows padded by a few pixels.
    Ref<Picture> makeSource(int width, int height, Random& random) const;

    /// The format code of pictures to read.
    int sourceFormat() const { return static_cast<int>(source); }
};

/// Opens a host for each setting and runs `check` in it: console pictures, and all pairs of desktop layouts, in every
/// runnable instruction set. Fails when a host is closed with anything leaked or left locked.
void forEverySetting(const std::function<void(Host&, const Setting&)>& check);

/// Opens two hosts of the plugin as delivered: a console, and a desktop whose two layouts differ.
void forConsoleAndDesktop(const std::function<void(Host&, const Setting&)>& check);

/// Closes the host and fails for everything that was leaked, released twice or left locked.
void closeCleanly(Host& host);

/// Puts words into a picture, rows one after another.
void setWords(const Picture& picture, const std::vector<std::uint32_t>& words);

/// A picture of the setting's source format and the given colours, row by row, each opaque.
Ref<Picture> pictureOf(const Setting& setting, int width, const std::vector<Colour>& colours);

/// The colours of a picture, row by row.
std::vector<Colour> coloursOf(const Picture& picture);

/// The word that a new picture of the host holds everywhere.
std::uint32_t freshWord(const Setting& setting);

/// Expects `result` to be a picture of the source's size that holds `definition(source colour)`, opaque, in the columns
/// `left` to before `right` of the rows `top` to before `bottom`, and what a new picture holds elsewhere.
void expectPoints(const Setting& setting, const Picture& source, const Ref<Picture>& result, int left, int top,
                  int right, int bottom, const std::function<Colour(Colour)>& definition);

/// The same for the whole picture.
void expectPoints(const Setting& setting, const Picture& source, const Ref<Picture>& result,
                  const std::function<Colour(Colour)>& definition);

}  // namespace pxk::test
