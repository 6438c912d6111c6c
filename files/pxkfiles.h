/// Picture files, read and written: the interface of the module `pxkfiles`.
///
/// The module is a shared library that is opened at the first picture file, so that programs which bring their own
/// pixels carry no picture formats. Its one exported function, pxk_files(), gives a table of functions. They know
/// pixels in memory and bytes, and throw nothing: each returns whether it succeeded, and fills a Message otherwise.
///
/// Read: PNG, JPEG, GIF, BMP, WebP, TIFF, AVIF and HEIC, detected from the content and never from the name.
/// Written: PNG, JPEG, GIF, BMP, WebP, TIFF and AVIF. Sides are 1 to 32767 pixels, pictures at most 2^28 pixels.
///
/// All functions may be called from several threads at a time.
#pragma once

#include <cstddef>
#include <cstdint>

namespace pxkfiles {

/// Bytes that somebody else owns; none when `size` is 0.
struct Bytes {
    const std::uint8_t* data = nullptr;
    std::size_t size = 0;
};

/// What a file says about its picture, to be handed from the input of an operation to its result.
struct Metadata {
    Bytes profile;  ///< an ICC profile of an RGB colour space
    Bytes exif;     ///< EXIF from its byte order mark (II or MM) on, as stored; updated by the functions that write
    Bytes xmp;
    double horizontalDensity = 0;  ///< pixels per millimetre, 0 when the file states none
    double verticalDensity = 0;
};

/// How the picture was stored. The pixels need none of it.
struct Origin {
    const char* format = "";       ///< "PNG", "JPEG", "GIF", "BMP", "WebP", "TIFF", "AVIF" or "HEIC"
    int bitsPerSample = 8;         ///< of the widest sample, or of a palette's index; a TIFF's below 8 count as 8
    const char* profileName = "";  ///< the description in the ICC profile, "" without one
    int orientation = 1;           ///< 1 to 8, as EXIF defines it; already applied to the pixels
    int pages = 1;                 ///< frames of an animation, pages of a TIFF, pictures of a HEIC or AVIF
};

/// A picture in memory, upright.
struct Picture {
    int width = 0;
    int height = 0;
    bool hasAlpha = false;                  ///< false: every pixel is opaque
    const std::uint32_t* pixels = nullptr;  ///< 0xAARRGGBB, not premultiplied, rows from the top without gaps
    Metadata metadata;
    Origin origin;          ///< filled by reading, ignored by writing
    void* owner = nullptr;  ///< what release() frees; nullptr in a picture that the caller made
};

/// Bytes of a written picture, to be freed with releaseFile().
struct File {
    Bytes bytes;
    void* owner = nullptr;
};

struct ReadOptions {
    int page = 0;             ///< from 1; 0: the first, or the one that a HEIC or AVIF calls its primary one
    bool headerOnly = false;  ///< leave `pixels` out and decode nothing
};

struct WriteOptions {
    const char* format = nullptr;  ///< "png", "jpg", "tiff" and so on in any letter case; nullptr: by the extension
    int quality = 0;               ///< 1 to 100 for JPEG, WebP and AVIF; 0: 90 for JPEG, 80 for WebP, 60 for AVIF
    bool lossless = false;         ///< every pixel exact, or a message; PNG, BMP and TIFF always are
    int compression = -1;          ///< 0 (none) to 9 (most) for PNG, 0 or more than 0 for TIFF; -1: the default
    bool strip = false;            ///< leave the metadata out
};

/// Why a function failed: one line, with the file's name, without a final full stop.
struct Message {
    char text[1024] = "";
};

struct Functions {
    /// Reads a file. On success the caller frees `picture` with release().
    bool (*readFile)(const char* path, const ReadOptions* options, Picture* picture, Message* message);

    /// Reads a file's bytes; `name` stands for the file in messages, such as "standard input".
    bool (*readBytes)(Bytes file, const char* name, const ReadOptions* options, Picture* picture, Message* message);

    /// Frees what reading allocated, and empties the picture.
    void (*release)(Picture* picture);

    /// Writes a file beside its place and then renames it, so that a failure leaves what was there before. A replaced
    /// file hands on its permissions; a symbolic link is followed.
    bool (*writeFile)(const Picture* picture, const char* path, const WriteOptions* options, Message* message);

    /// Writes a file's bytes to memory; `name` stands for the file in messages, and its extension names the format
    /// unless the options do. On success the caller frees `file` with releaseFile().
    bool (*writeBytes)(const Picture* picture, const char* name, const WriteOptions* options, File* file,
                       Message* message);

    /// Frees what writeBytes() allocated, and empties the file.
    void (*releaseFile)(File* file);

    /// Deletes the files that are being written at this moment. For signal handlers: it calls nothing but unlink().
    void (*removeUnfinished)();

    /// How many threads libvips may use for a picture, from 1, which is the default.
    void (*setThreads)(int threads);
};

}  // namespace pxkfiles

/// The functions of the module; they stay valid until the process ends, as the module stays loaded.
extern "C" __attribute__((visibility("default"))) const pxkfiles::Functions* pxk_files();
