/// A lock on a picture's description, during which its platform image may be used.
#pragma once

#include "frame/host_services.h"

namespace pxk {

/// Locks the description as the given type and fills the record, which stays in place for as long as the lock: a host
/// may write to it again. Hosts before 2012.0 count a refused lock as well, so there it is undone.
inline bool lockDescription(REALpictureStruct* picture, REALpictureDescription& description, std::int32_t wantedType) {
    description = {};
    const bool locked = REALLockPictureDescription(picture, &description, wantedType);
    if (!locked && rbversion < 2012.0) REALUnlockPictureDescription(picture);
    return locked;
}

/// A lock that is released at the end of its scope, unless it is kept.
class DescriptionLock {
  public:
    DescriptionLock(REALpictureStruct* picture, REALpictureDescription& description, std::int32_t wantedType)
        : picture_(picture), locked_(lockDescription(picture, description, wantedType)) {}
    ~DescriptionLock() {
        if (locked_) REALUnlockPictureDescription(picture_);
    }
    DescriptionLock(const DescriptionLock&) = delete;
    DescriptionLock& operator=(const DescriptionLock&) = delete;

    bool locked() const { return locked_; }

    /// Leaves the description locked: whoever keeps it unlocks it.
    void keep() { locked_ = false; }

  private:
    REALpictureStruct* picture_;
    bool locked_;
};

}  // namespace pxk
