/// The files that the arguments of a chain name: pictures, tables, samples, .cube files.
#pragma once

#include <string>

#include "chain/open_host.h"

namespace pxk::chain {

/// Where they come from. A caller without a disk, such as a web page, hands over a class of its own.
class Files {
  public:
    virtual ~Files() = default;

    /// All the bytes of a file. Throws WorkError, naming the file.
    virtual std::string bytes(const std::string& name) const = 0;

    /// A picture file, decoded into a picture of the host. Throws WorkError, naming the file.
    virtual Object picture(OpenHost& host, const std::string& name) const = 0;
};

/// Files on disk, named by their paths.
class DiskFiles final : public Files {
  public:
    std::string bytes(const std::string& path) const override;
    Object picture(OpenHost& host, const std::string& path) const override;
};

}  // namespace pxk::chain
