// The module's one exported function, and the way of every call: options in, a result or one line of words out.
#include <algorithm>
#include <cstring>
#include <filesystem>
#include <limits>
#include <memory>
#include <mutex>
#include <new>
#include <optional>
#include <shared_mutex>
#include <span>
#include <string>
#include <vector>

#include "files/disk.h"
#include "files/formats.h"
#include "files/limits.h"
#include "files/messages.h"
#include "files/pxkfiles.h"
#include "files/read.h"
#include "files/vips_image.h"
#include "files/write.h"

namespace pxkfiles {
namespace {

using FileBytes = std::vector<std::uint8_t>;

void setMessage(Message* message, const std::string& text) {
    const std::size_t length = std::min(text.size(), sizeof message->text - 1);
    std::memcpy(message->text, text.data(), length);
    message->text[length] = 0;
}

// Does something with a file, whose format `action` names as soon as it knows it; returns why it failed, or "".
template <class Action>
std::string failureOf(const Action& action, std::optional<Format>& format) {
    try {
        startVips();
        action(format);
        return "";
    } catch (const std::filesystem::filesystem_error& problem) {
        return problem.code().message();
    } catch (const std::bad_alloc&) {
        return "there is not enough memory";
    } catch (const std::exception& problem) {
        return problem.what();
    }
}

// libvips keeps its words in one place for all threads. So a call that fails beside others is made again by itself, and
// only such calls empty that place: what they find there is their own.
template <class Action>
bool attempt(const char* verb, const char* name, Message* message, const Action& action) {
    static std::shared_mutex calls;
    std::optional<Format> format;
    {
        const std::shared_lock together(calls);
        if (failureOf(action, format).empty()) return true;
    }
    const std::unique_lock alone(calls);
    vips_error_clear();
    const std::string reason = failureOf(action, format);
    vips_error_clear();
    if (reason.empty()) return true;
    const std::string kind = format ? std::string(nameOf(*format)) + " picture" : "picture";
    setMessage(message, "cannot " + std::string(verb) + " " + kind + " " + quoted(name) + ": " + reason);
    return false;
}

Format knownFormat(std::span<const std::uint8_t> start) {
    if (start.empty()) throw FileProblem("it is empty; a picture file is needed");
    const std::optional<Format> format = formatOfContent(start);
    if (!format) throw FileProblem("its content is none of " + listOfFormats());
    return *format;
}

bool readFile(const char* path, const ReadOptions* options, Picture* picture, Message* message) {
    return attempt("read", path, message, [&](std::optional<Format>& format) {
        constexpr std::uint64_t startSize = 4096;
        format = knownFormat(readBytes(path, startSize));
        const FileBytes file = readBytes(path, std::numeric_limits<std::uint64_t>::max());
        *picture = readPicture(*format, file, *options).release()->view;
    });
}

bool readMemory(Bytes file, const char* name, const ReadOptions* options, Picture* picture, Message* message) {
    return attempt("read", name, message, [&](std::optional<Format>& format) {
        const std::span<const std::uint8_t> bytes(file.data, file.size);
        format = knownFormat(bytes);
        *picture = readPicture(*format, bytes, *options).release()->view;
    });
}

void release(Picture* picture) {
    delete static_cast<OwnedPicture*>(picture->owner);
    *picture = {};
}

Format formatToWrite(const char* name, const WriteOptions& options) {
    const std::string wanted = options.format != nullptr ? options.format : std::filesystem::path(name).extension();
    const std::optional<Format> format = formatOfExtension(wanted);
    if (format && !wanted.empty()) return *format;
    if (options.format != nullptr)
        throw FileProblem("no format " + quoted(options.format) + " is written; " + listOfExtensions() + " are");
    throw FileProblem("its extension names no format; " + listOfExtensions() + " do");
}

bool writeFile(const Picture* picture, const char* path, const WriteOptions* options, Message* message) {
    return attempt("write", path, message, [&](std::optional<Format>& format) {
        format = formatToWrite(path, *options);
        replaceFile(path, writePicture(*picture, *format, *options));
    });
}

bool writeMemory(const Picture* picture, const char* name, const WriteOptions* options, File* file, Message* message) {
    return attempt("write", name, message, [&](std::optional<Format>& format) {
        format = formatToWrite(name, *options);
        auto bytes = std::make_unique<FileBytes>(writePicture(*picture, *format, *options));
        file->bytes = {bytes->data(), bytes->size()};
        file->owner = bytes.release();
    });
}

void releaseFile(File* file) {
    delete static_cast<FileBytes*>(file->owner);
    *file = {};
}

void setThreads(int threads) {
    startVips();
    vips_concurrency_set(std::max(threads, 1));
}

constexpr Functions functions = {
    readFile, readMemory, release, writeFile, writeMemory, releaseFile, removeUnfinishedFiles, setThreads};

}  // namespace
}  // namespace pxkfiles

const pxkfiles::Functions* pxk_files() { return &pxkfiles::functions; }
