// The C interface: picture files.
#include <algorithm>
#include <limits>
#include <memory>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include "host/c_interface.h"
#include "host/files_module.h"

using namespace pxkhost;

namespace {

std::vector<std::uint8_t> copyOf(const pxkfiles::Bytes& bytes) {
    return bytes.size == 0 ? std::vector<std::uint8_t>() : std::vector(bytes.data, bytes.data + bytes.size);
}

pxkfiles::Bytes viewOf(const std::vector<std::uint8_t>& bytes) { return {bytes.data(), bytes.size()}; }

/// What the module read, freed at the end.
struct ReadPicture {
    ReadPicture() = default;
    ~ReadPicture() {
        if (picture.owner != nullptr) filesModule().release(&picture);
    }
    ReadPicture(const ReadPicture&) = delete;
    ReadPicture& operator=(const ReadPicture&) = delete;

    pxkfiles::Picture picture;
};

/// A file on disk, or the bytes of one.
struct Source {
    const char* name = nullptr;
    const pxkfiles::Bytes* bytes = nullptr;

    void read(const pxkfiles::ReadOptions& options, ReadPicture& target) const {
        pxkfiles::Message message;
        const pxkfiles::Functions& files = filesModule();
        const bool succeeded = bytes != nullptr ? files.readBytes(*bytes, name, &options, &target.picture, &message)
                                                : files.readFile(name, &options, &target.picture, &message);
        if (!succeeded) throw HostError(message.text);
    }
};

bool hasTransparency(const Surface& surface) {
    for (int y = 0; y < surface.height; ++y)
        for (int x = 0; x < surface.width; ++x)
            if (surface.get(x, y) < opaqueAlpha) return true;
    return false;
}

std::shared_ptr<const FileMetadata> copyOf(const pxkfiles::Metadata& metadata) {
    return std::make_shared<const FileMetadata>(FileMetadata{copyOf(metadata.profile), copyOf(metadata.exif),
                                                             copyOf(metadata.xmp), metadata.horizontalDensity,
                                                             metadata.verticalDensity});
}

Ref<Picture> load(const Host& host, const Source& source, const pxk_load_options* options) {
    pxkfiles::ReadOptions chosen;
    if (options != nullptr) chosen.page = options->page;
    ReadPicture read;
    source.read(chosen, read);
    const pxkfiles::Picture& file = read.picture;
    Ref<Picture> picture = host.application() == ApplicationKind::desktop
                               ? Picture::desktop(file.width, file.height, host.options().newPictures)
                               : Picture::console(file.width, file.height);
    if (!picture) throw std::bad_alloc();
    picture->setPixels({file.pixels, static_cast<std::size_t>(file.width) * static_cast<std::size_t>(file.height)});
    picture->setHasAlphaChannel(file.hasAlpha && hasTransparency(picture->surface()));
    picture->setMetadata(copyOf(file.metadata));
    return picture;
}

pxkfiles::WriteOptions writeOptions(const pxk_save_options* options) {
    pxkfiles::WriteOptions chosen;
    if (options == nullptr) return chosen;
    chosen.format = options->format;
    chosen.quality = options->quality;
    chosen.lossless = options->lossless != 0;
    chosen.strip = options->strip != 0;
    if (options->compression == PXK_NO_COMPRESSION) {
        chosen.compression = 0;
    } else if (options->compression < 0) {
        throw HostError("a compression of " + std::to_string(options->compression) + " is out of range; use 1 to 9, " +
                        "PXK_DEFAULT_COMPRESSION or PXK_NO_COMPRESSION");
    } else if (options->compression != PXK_DEFAULT_COMPRESSION) {
        chosen.compression = options->compression;
    }
    return chosen;
}

/// A host picture as the module takes it, with a copy of its pixels.
class PictureToWrite {
  public:
    explicit PictureToWrite(const Picture& picture) : metadata_(picture.metadata()) {
        if (picture.surface().height == 0) throw HostError(picture.describe() + " has no pixels to write");
        pixels_ = picture.pixels();
        view_.width = picture.width();
        view_.height = picture.height();
        view_.hasAlpha = true;
        view_.pixels = pixels_.data();
        if (metadata_)
            view_.metadata = {viewOf(metadata_->profile), viewOf(metadata_->exif), viewOf(metadata_->xmp),
                              metadata_->horizontalDensity, metadata_->verticalDensity};
    }

    const pxkfiles::Picture* view() const { return &view_; }

  private:
    std::shared_ptr<const FileMetadata> metadata_;
    std::vector<Argb> pixels_;
    pxkfiles::Picture view_;
};

void save(const Picture& picture, const char* path, const pxk_save_options* options) {
    const pxkfiles::WriteOptions chosen = writeOptions(options);
    pxkfiles::Message message;
    if (!filesModule().writeFile(PictureToWrite(picture).view(), path, &chosen, &message))
        throw HostError(message.text);
}

Ref<MemoryBlock> saveToMemory(const Picture& picture, const char* name, const pxk_save_options* options) {
    const pxkfiles::WriteOptions chosen = writeOptions(options);
    const pxkfiles::Functions& files = filesModule();
    pxkfiles::Message message;
    pxkfiles::File file;
    if (!files.writeBytes(PictureToWrite(picture).view(), name, &chosen, &file, &message))
        throw HostError(message.text);
    const std::unique_ptr<pxkfiles::File, void (*)(pxkfiles::File*)> releasesFile(&file, files.releaseFile);
    if (file.bytes.size > static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max()))
        throw HostError("cannot write picture \"" + std::string(name) + "\": its file does not fit a memory block");
    Ref<MemoryBlock> block = MemoryBlock::make(static_cast<std::int32_t>(file.bytes.size));
    if (!block) throw std::bad_alloc();
    std::copy_n(file.bytes.data, file.bytes.size, block->bytes().begin());
    return block;
}

void describe(pxk_host& host, const Source& source, pxk_file_info& info) {
    pxkfiles::ReadOptions options;
    options.headerOnly = true;
    ReadPicture read;
    source.read(options, read);
    const pxkfiles::Picture& file = read.picture;
    host.profileName = file.origin.profileName;
    info = {file.origin.format,
            file.width,
            file.height,
            file.origin.bitsPerSample,
            file.hasAlpha ? 1 : 0,
            host.profileName.c_str(),
            file.origin.orientation,
            file.origin.pages};
}

pxkfiles::Bytes bytesFromC(const void* bytes, std::size_t size) {
    const auto* const data = static_cast<const std::uint8_t*>(bytes);
    if (size > 0) required(data, "bytes");
    return {data, size};
}

}  // namespace

extern "C" {

pxk_object* pxk_load_picture(pxk_host* host, const char* path) { return pxk_load_picture_with(host, path, nullptr); }

pxk_object* pxk_load_picture_with(pxk_host* host, const char* path, const pxk_load_options* options) {
    return guarded<pxk_object*>(host, nullptr, [&] {
        const Host& open = required(host, "host").host;
        return toC(load(open, {&required(path, "path")}, options));
    });
}

pxk_object* pxk_load_picture_bytes(pxk_host* host, const void* bytes, size_t size, const char* name,
                                   const pxk_load_options* options) {
    return guarded<pxk_object*>(host, nullptr, [&] {
        const Host& open = required(host, "host").host;
        const pxkfiles::Bytes given = bytesFromC(bytes, size);
        return toC(load(open, {&required(name, "name"), &given}, options));
    });
}

int pxk_save_picture(pxk_host* host, pxk_object* picture, const char* path) {
    return pxk_save_picture_with(host, picture, path, nullptr);
}

int pxk_save_picture_with(pxk_host* host, pxk_object* picture, const char* path, const pxk_save_options* options) {
    return guarded<int>(host, PXK_FAILED, [&] {
        save(expected<Picture>(picture, "picture"), &required(path, "path"), options);
        return PXK_OK;
    });
}

pxk_object* pxk_save_picture_bytes(pxk_host* host, pxk_object* picture, const char* name,
                                   const pxk_save_options* options) {
    return guarded<pxk_object*>(host, nullptr, [&] {
        return toC(saveToMemory(expected<Picture>(picture, "picture"), &required(name, "name"), options));
    });
}

int pxk_copy_metadata(pxk_host* host, pxk_object* from, pxk_object* to) {
    return guarded<int>(host, PXK_FAILED, [&] {
        expected<Picture>(to, "to").setMetadata(expected<Picture>(from, "from").metadata());
        return PXK_OK;
    });
}

int pxk_get_file_info(pxk_host* host, const char* path, pxk_file_info* info) {
    return guarded<int>(host, PXK_FAILED, [&] {
        describe(required(host, "host"), {&required(path, "path")}, required(info, "info"));
        return PXK_OK;
    });
}

int pxk_get_file_info_bytes(pxk_host* host, const void* bytes, size_t size, const char* name, pxk_file_info* info) {
    return guarded<int>(host, PXK_FAILED, [&] {
        const pxkfiles::Bytes given = bytesFromC(bytes, size);
        describe(required(host, "host"), {&required(name, "name"), &given}, required(info, "info"));
        return PXK_OK;
    });
}

void pxk_remove_unfinished_files(void) {
    if (const pxkfiles::Functions* const files = loadedFilesModule()) files->removeUnfinished();
}

}  // extern "C"
