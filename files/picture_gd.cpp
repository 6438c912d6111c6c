// The formats that libgd reads and writes.
#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <map>

#include "files/picture_codecs.h"
#include "files/picture_header.h"

namespace pxkhost {
namespace {

// libgd hands its reports to one function without a word of context.
std::vector<std::string>* currentReports = nullptr;

void keepReport(int, const char* format, va_list arguments) {
    char text[256];
    std::vsnprintf(text, sizeof text, format, arguments);
    std::string line(text);
    std::replace(line.begin(), line.end(), '\n', ' ');
    line.erase(line.find_last_not_of(" .") + 1);
    if (currentReports != nullptr) currentReports->push_back(line);
}

gdImagePtr decodeBytes(PictureFormat format, int size, void* bytes) {
    switch (format) {
        case PictureFormat::png:
            return gdImageCreateFromPngPtr(size, bytes);
        case PictureFormat::jpeg:
            return gdImageCreateFromJpegPtrEx(size, bytes, 0);
        case PictureFormat::gif:
            return gdImageCreateFromGifPtr(size, bytes);
        case PictureFormat::bmp:
            return gdImageCreateFromBmpPtr(size, bytes);
        case PictureFormat::webp:
            return gdImageCreateFromWebpPtr(size, bytes);
        case PictureFormat::tiff:
        case PictureFormat::avif:
            break;
    }
    return nullptr;
}

// libgd gives a JPEG picture with damaged data back as if it were whole, and only reports the damage. Stray bytes
// between segments do no harm, and some cameras write them.
bool isDamage(const std::string& report) {
    const auto says = [&](const char* words) { return report.find(words) != std::string::npos; };
    return says("Premature end") || (says("Corrupt JPEG data") && !says("extraneous bytes"));
}

// A true-colour PNG can name one colour as transparent, which libgd notes without changing the pixels.
void applyTransparentColour(gdImage& picture) {
    if (picture.transparent < 0) return;
    for (int y = 0; y < picture.sy; ++y)
        for (int x = 0; x < picture.sx; ++x)
            if (picture.tpixels[y][x] == picture.transparent) picture.tpixels[y][x] |= gdAlphaMax << 24;
}

bool seeThrough(int pixel) { return gdTrueColorGetAlpha(pixel) > gdAlphaMax / 2; }

constexpr int mostGifColours = 256;

// The picture as palette indices, when its colours fit one palette; libgd's own reduction changes colours even then.
GdPicture exactPalettePicture(const gdImage& picture) {
    GdPicture palette(gdImageCreate(picture.sx, picture.sy));
    if (!palette) throw BadPicture("there is not enough memory");
    std::map<int, int> indices;
    for (int y = 0; y < picture.sy; ++y) {
        for (int x = 0; x < picture.sx; ++x) {
            const int pixel = picture.tpixels[y][x];
            const int colour = seeThrough(pixel) ? -1 : pixel & 0xFFFFFF;
            auto found = indices.find(colour);
            if (found == indices.end()) {
                if (indices.size() == mostGifColours) return nullptr;
                const int index =
                    gdImageColorAllocate(palette.get(), gdTrueColorGetRed(colour & 0xFFFFFF),
                                         gdTrueColorGetGreen(colour & 0xFFFFFF), gdTrueColorGetBlue(colour & 0xFFFFFF));
                if (colour < 0) gdImageColorTransparent(palette.get(), index);
                found = indices.emplace(colour, index).first;
            }
            palette->pixels[y][x] = static_cast<unsigned char>(found->second);
        }
    }
    return palette;
}

// One palette entry is left for what is see-through.
GdPicture ditheredPalettePicture(const gdImage& picture) {
    GdPicture opaque = newTrueColourPicture(picture.sx, picture.sy);
    for (int y = 0; y < picture.sy; ++y)
        for (int x = 0; x < picture.sx; ++x) opaque->tpixels[y][x] = picture.tpixels[y][x] & 0xFFFFFF;
    GdPicture palette(gdImageCreatePaletteFromTrueColor(opaque.get(), 1, mostGifColours - 1));
    if (!palette) throw BadPicture("there is not enough memory");
    if (!hasAlpha(picture)) return palette;

    const int transparent = gdImageColorAllocate(palette.get(), 0, 0, 0);
    gdImageColorTransparent(palette.get(), transparent);
    for (int y = 0; y < picture.sy; ++y)
        for (int x = 0; x < picture.sx; ++x)
            if (seeThrough(picture.tpixels[y][x])) palette->pixels[y][x] = static_cast<unsigned char>(transparent);
    return palette;
}

void* encodeGif(const gdImage& picture, int* size) {
    GdPicture palette = exactPalettePicture(picture);
    if (!palette) palette = ditheredPalettePicture(picture);
    return gdImageGifPtr(palette.get(), size);
}

// Whether alpha is written and rows are interlaced are fields of the picture, which belongs to the caller.
class SavingFields {
  public:
    explicit SavingFields(gdImage& picture)
        : picture_(picture), saveAlpha_(picture.saveAlphaFlag), interlace_(picture.interlace) {
        picture.saveAlphaFlag = hasAlpha(picture) ? 1 : 0;
        picture.interlace = 0;
    }
    ~SavingFields() {
        picture_.saveAlphaFlag = saveAlpha_;
        picture_.interlace = interlace_;
    }
    SavingFields(const SavingFields&) = delete;
    SavingFields& operator=(const SavingFields&) = delete;

  private:
    gdImage& picture_;
    int saveAlpha_;
    int interlace_;
};

void* encodeBytes(PictureFormat format, gdImagePtr picture, int* size) {
    constexpr int jpegQuality = 92;
    const SavingFields fields(*picture);
    switch (format) {
        case PictureFormat::png:
            return gdImagePngPtr(picture, size);
        case PictureFormat::jpeg:
            return gdImageJpegPtr(picture, size, jpegQuality);
        case PictureFormat::gif:
            return encodeGif(*picture, size);
        case PictureFormat::bmp:
            return gdImageBmpPtr(picture, size, 0);
        case PictureFormat::webp:
            return gdImageWebpPtrEx(picture, size, gdWebpLossless);
        case PictureFormat::tiff:
        case PictureFormat::avif:
            break;
    }
    return nullptr;
}

}  // namespace

GdPicture newTrueColourPicture(int width, int height) {
    GdPicture picture(gdImageCreateTrueColor(width, height));
    if (!picture) throw BadPicture("there is not enough memory");
    gdImageAlphaBlending(picture.get(), 0);
    return picture;
}

bool hasAlpha(const gdImage& picture) {
    int alphaBits = 0;
    for (int y = 0; y < picture.sy; ++y)
        for (int x = 0; x < picture.sx; ++x) alphaBits |= picture.tpixels[y][x];
    return gdTrueColorGetAlpha(alphaBits) != gdAlphaOpaque;
}

GdReports::GdReports() {
    currentReports = &reports_;
    gdSetErrorMethod(keepReport);
}

GdReports::~GdReports() {
    gdClearErrorMethod();
    currentReports = nullptr;
}

std::string GdReports::inBrackets() const { return reports_.empty() ? "" : " (" + reports_.front() + ")"; }

GdPicture decodeWithGd(PictureFormat format, std::span<std::uint8_t> bytes) {
    const GdReports reports;
    GdPicture picture(decodeBytes(format, static_cast<int>(bytes.size()), bytes.data()));
    if (!picture) throw BadPicture("its data is damaged" + reports.inBrackets());
    if (format == PictureFormat::jpeg && std::any_of(reports.all().begin(), reports.all().end(), isDamage))
        throw BadPicture("its data is damaged" + reports.inBrackets());
    if (gdImageTrueColor(picture.get()))
        applyTransparentColour(*picture);
    else if (gdImagePaletteToTrueColor(picture.get()) == 0)
        throw BadPicture("there is not enough memory");
    return picture;
}

FileBytes encodeWithGd(PictureFormat format, gdImagePtr picture) {
    const GdReports reports;
    int size = 0;
    const std::unique_ptr<void, void (*)(void*)> bytes(encodeBytes(format, picture, &size), gdFree);
    if (!bytes || size <= 0) throw BadPicture("it could not be encoded" + reports.inBrackets());
    const auto* first = static_cast<const std::uint8_t*>(bytes.get());
    return {first, first + size};
}

}  // namespace pxkhost
