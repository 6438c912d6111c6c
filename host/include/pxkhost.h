/**
 * The reference host as a C interface: load the plugin as its real host would, load and save picture files, and call
 * the plugin's members by name.
 *
 * Rules that hold for every function here:
 *  - All text is UTF-8 and NUL-terminated unless a length goes with it.
 *  - A function that can fail returns NULL or PXK_FAILED (0); pxk_last_error() then says, in one line without a final
 *    full stop or newline, what was wrong, with which argument, and what would be right.
 *  - An object handed out (a picture, memory block, string or class instance) carries one reference that belongs to
 *    the caller, who gives it back with pxk_release(). Text returned belongs to the host and stays valid until the
 *    next call on that host, unless stated otherwise.
 *  - One process holds at most one open host, since the plugin keeps process-wide state; close it before opening the
 *    next. All calls on a host come from the thread that opened it. A call on NULL or a closed host, or from another
 *    thread, fails; pxk_last_error() then says so in the thread of that call.
 */
#ifndef PXKHOST_H
#define PXKHOST_H

#include <stddef.h>
#include <stdint.h>

#if defined(__GNUC__)
#define PXK_API __attribute__((visibility("default")))
#else
#define PXK_API
#endif

#ifdef __cplusplus
extern "C" {
#endif

typedef struct pxk_host pxk_host;
typedef struct pxk_object pxk_object;

enum { PXK_FAILED = 0, PXK_OK = 1 };

/* ---- the host ------------------------------------------------------------------------------------------------- */

/** The kind of application that the host pretends to be. */
typedef enum pxk_application {
    PXK_CONSOLE = 0, /**< pictures are libgd true-colour images */
    PXK_DESKTOP = 1  /**< pictures are bitmap contexts, alpha first, premultiplied, rows padded */
} pxk_application;

typedef struct pxk_options {
    const char* plugin_path; /**< the shared library; NULL: PicturePXK.so (.dylib, .dll) beside the host library */
    double host_version;     /**< for example 2013.04; 0: the newest version that registers modules, 2019.03; negative
                                  and non-finite numbers are refused */
    pxk_application application;
} pxk_options;

/** Opens a host and loads the plugin into it. `options` may be NULL for all defaults. On failure returns NULL, and
    pxk_last_error(NULL) says why. */
PXK_API pxk_host* pxk_open(const pxk_options* options);

/** Unloads the plugin and closes the host. Returns PXK_OK when every reference and lock was balanced; otherwise
    PXK_FAILED, and pxk_last_error(NULL) names what leaked, was released twice or stayed locked. `host` may be NULL; a
   host that is closed already is refused. */
PXK_API int pxk_close(pxk_host* host);

/** Why the last call on `host` (or the last pxk_open or pxk_close, with NULL) failed; "" when it did not. With a host
    that this thread cannot use, why the last call without a usable host failed. */
PXK_API const char* pxk_last_error(const pxk_host* host);

/** The version of this library, for example "1.0.0". */
PXK_API const char* pxk_version(void);

/** What the plugin registered, record by record, as plain text for people: one line a field, every word shown. */
PXK_API const char* pxk_inspect(pxk_host* host);

/* ---- what the plugin registered -------------------------------------------------------------------------------- */

typedef enum pxk_member_kind {
    PXK_PICTURE_METHOD = 0, /**< called on a picture */
    PXK_GLOBAL_METHOD = 1,  /**< called on nothing */
    PXK_CLASS_METHOD = 2,   /**< called on an instance of `owner` */
    PXK_CLASS_PROPERTY = 3  /**< a named value of an instance of `owner`; `declaration` is "Name as Type" */
} pxk_member_kind;

/** One registered member. The texts stay valid until the host is closed. */
typedef struct pxk_member {
    pxk_member_kind kind;
    const char* owner;       /**< "Picture", "" for a global method, or the class name */
    const char* name;        /**< "InvertPXK" */
    const char* declaration; /**< as a program would read it, without the "extends" parameter */
    const char* deprecated;  /**< what to use instead, without quotes, or NULL */
    int has_setter;          /**< a parameterised property that may also be assigned */
} pxk_member;

/** The number of registered members; pxk_member_at() takes 0 to that number less one, in order of registration. */
PXK_API size_t pxk_member_count(pxk_host* host);
PXK_API pxk_member pxk_member_at(pxk_host* host, size_t index);

/** The classes registered, by index; NULL past the last. */
PXK_API const char* pxk_class_at(pxk_host* host, size_t index);

/* ---- values ---------------------------------------------------------------------------------------------------- */

typedef enum pxk_kind {
    PXK_NOTHING = 0, /**< no value: the result of a method without result, or an argument left to its default */
    PXK_INTEGER = 1, /**< 32-bit signed; also UInt32 parameters */
    PXK_DOUBLE = 2,
    PXK_BOOLEAN = 3,
    PXK_COLOR = 4,   /**< 0xRRGGBB */
    PXK_PICTURE = 5, /**< an object, or NULL for nil; the same holds for the kinds below */
    PXK_MEMORY_BLOCK = 6,
    PXK_STRING = 7,
    PXK_INSTANCE = 8
} pxk_kind;

typedef struct pxk_value {
    pxk_kind kind;
    union {
        int32_t integer;
        double real;
        int32_t boolean;
        uint32_t color;
        pxk_object* object;
    } as;
} pxk_value;

PXK_API void pxk_retain(pxk_object* object);  /**< NULL is allowed */
PXK_API void pxk_release(pxk_object* object); /**< NULL is allowed */

/* ---- calls ----------------------------------------------------------------------------------------------------- */

/** Calls a member by name. The name is matched in any letter case and with or without its suffix "PXK"; among forms of
    one name the arguments choose, by count and then by type. `self` is the picture or instance for methods, NULL for
    global methods. Arguments behind the last given one take the declaration's defaults, as does any argument of kind
    PXK_NOTHING whose parameter has one. An integer serves where a double or a colour is declared, a colour where an
    integer is; nothing else is converted. Byref parameters are written back into `arguments`; an object written back
    replaces the one passed and belongs to the caller (who then still owns the one passed in).
    `result` receives the value (PXK_NOTHING for a method without one); an object in it belongs to the caller and may
    be NULL for nil. Fails when no form fits, with the forms there are and the nearest name in the message, or when
    the member raised an exception: pxk_last_error() is then "NilObjectException: picture is nil". */
PXK_API int pxk_call(pxk_host* host, pxk_object* self, const char* name, pxk_value* arguments, size_t count,
                     pxk_value* result);

/** Assigns to a parameterised property, as `self.Name(arguments) = value` does. */
PXK_API int pxk_assign(pxk_host* host, pxk_object* self, const char* name, const pxk_value* arguments, size_t count,
                       pxk_value value);

/** A new instance of one of the plugin's classes, zero-filled, its constructor run. */
PXK_API pxk_object* pxk_new_instance(pxk_host* host, const char* class_name);

/** Reads and writes a property of an instance, direct or through accessors; the host counts the references. */
PXK_API int pxk_get_property(pxk_host* host, pxk_object* instance, const char* name, pxk_value* value);
PXK_API int pxk_set_property(pxk_host* host, pxk_object* instance, const char* name, pxk_value value);

/* ---- pictures -------------------------------------------------------------------------------------------------- */

/** A picture of 1 to 32767 by 1 to 32767 pixels, opaque black (console) or opaque white (desktop). */
PXK_API pxk_object* pxk_new_picture(pxk_host* host, int32_t width, int32_t height);

PXK_API int32_t pxk_picture_width(const pxk_object* picture);
PXK_API int32_t pxk_picture_height(const pxk_object* picture);

/** Copies a picture's pixels out or in, `width * height` words of 0xAARRGGBB in row-major order, alpha 255 opaque,
    whatever the picture's own layout. Channels are copied as they are, as the plugin does: premultiplied pixels are
    neither multiplied nor divided. */
PXK_API int pxk_get_pixels(pxk_host* host, pxk_object* picture, uint32_t* pixels);
PXK_API int pxk_set_pixels(pxk_host* host, pxk_object* picture, const uint32_t* pixels);

/* ---- picture files ---------------------------------------------------------------------------------------------- */

/* Picture files go through the module pxkfiles.so (.dylib, .dll) beside the host library, which needs libvips. Both are
   loaded when the first of these functions is called; where one is missing, the message says what to install. */

typedef struct pxk_load_options {
    int32_t page; /**< of an animation, a TIFF, AVIF or HEIC, from 1; 0: the first, or the one marked as primary */
} pxk_load_options;

/** The values of pxk_save_options.compression besides 1 (fast) to 9 (small). */
enum { PXK_DEFAULT_COMPRESSION = 0, PXK_NO_COMPRESSION = -1 };

/** How a picture file is written. Options that its format does not have are refused, except `lossless`, which PNG, BMP
    and TIFF always are. */
typedef struct pxk_save_options {
    const char* format;  /**< "png", "jpg", "gif", "bmp", "webp", "tif" or "avif"; NULL: chosen by the extension */
    int32_t quality;     /**< of JPEG, WebP and AVIF, 1 to 100; 0: 90 for JPEG, 80 for WebP, 60 for AVIF */
    int32_t lossless;    /**< not 0: every pixel exactly as it is, or failure */
    int32_t compression; /**< of PNG, 1 to 9, and TIFF, where all of these mean the same; or one of the values above */
    int32_t strip;       /**< not 0: leave the metadata out */
} pxk_save_options;

/** Reads a picture file: PNG, JPEG, GIF, BMP, WebP, TIFF, AVIF or HEIC, detected from the content, not from the name.
    Palette and grey files become true colour, 16-bit samples 8-bit ones, and the picture is turned upright. A console
    picture keeps the upper 7 bits of alpha. The metadata of the file stays with the picture: its ICC profile, EXIF,
    XMP and resolution. Any file, however broken, gives a picture or a message. */
PXK_API pxk_object* pxk_load_picture(pxk_host* host, const char* path);

/** The same with options, which may be NULL for all defaults. */
PXK_API pxk_object* pxk_load_picture_with(pxk_host* host, const char* path, const pxk_load_options* options);

/** The same from `size` bytes in memory; `name` stands for the file in messages, such as "standard input". */
PXK_API pxk_object* pxk_load_picture_bytes(pxk_host* host, const void* bytes, size_t size, const char* name,
                                           const pxk_load_options* options);

/** Writes a picture, and the metadata that it has, in the format that the path's extension names (.png .jpg .jpeg .gif
    .bmp .webp .tif .tiff .avif). The file is written next to its destination and then renamed, so a failure leaves what
    was there before. */
PXK_API int pxk_save_picture(pxk_host* host, pxk_object* picture, const char* path);

/** The same with options, which may be NULL for all defaults. */
PXK_API int pxk_save_picture_with(pxk_host* host, pxk_object* picture, const char* path,
                                  const pxk_save_options* options);

/** The same to memory: a memory block with the bytes of the file, in the format that `options` or the extension of
    `name` names. `name` stands for the file in messages. */
PXK_API pxk_object* pxk_save_picture_bytes(pxk_host* host, pxk_object* picture, const char* name,
                                           const pxk_save_options* options);

/** Gives the picture `to` the file metadata of the picture `from` instead of its own, which may be none. What a member
    returns is a new picture without metadata; this is how those of its source reach the file that it is saved to. */
PXK_API int pxk_copy_metadata(pxk_host* host, pxk_object* from, pxk_object* to);

/** What a picture file holds. */
typedef struct pxk_file_info {
    const char* format; /**< "PNG", "JPEG", "GIF", "BMP", "WebP", "TIFF", "AVIF" or "HEIC" */
    int32_t width;      /**< of the picture turned upright */
    int32_t height;
    int32_t bits_per_sample; /**< as stored, of the widest sample or of a palette's index */
    int32_t has_alpha;       /**< not 0: there is an alpha channel or a transparent colour */
    const char* profile;     /**< the name in the ICC profile; "" without one */
    int32_t orientation;     /**< as stored, 1 to 8, as EXIF defines it; 1 is upright */
    int32_t pages;
} pxk_file_info;

/** Describes a picture file without decoding its pixels. */
PXK_API int pxk_get_file_info(pxk_host* host, const char* path, pxk_file_info* info);

/** The same of `size` bytes in memory; `name` stands for the file in messages. */
PXK_API int pxk_get_file_info_bytes(pxk_host* host, const void* bytes, size_t size, const char* name,
                                    pxk_file_info* info);

/** Deletes the temporary files of the pictures that are being written at this moment. For handlers of signals that end
    the process: it is async-signal-safe, and needs no host. */
PXK_API void pxk_remove_unfinished_files(void);

/* ---- memory blocks and strings --------------------------------------------------------------------------------- */

/** A memory block of `size` bytes, zero-filled, or holding a copy of `bytes` when that is not NULL. */
PXK_API pxk_object* pxk_new_memory_block(pxk_host* host, const void* bytes, int32_t size);

/** A string of `length` bytes tagged with the host's encoding number (0x08000100 is UTF-8, 0xFFFF unknown). */
PXK_API pxk_object* pxk_new_string(pxk_host* host, const void* bytes, int32_t length, uint32_t encoding);

/** The bytes of a memory block or string, valid while the caller's reference is held, and their number. */
PXK_API void* pxk_bytes(pxk_object* object, int32_t* size);

/** A string's encoding. */
PXK_API uint32_t pxk_string_encoding(const pxk_object* string);

#ifdef __cplusplus
}
#endif

#endif
