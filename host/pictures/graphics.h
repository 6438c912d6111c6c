/// What a program draws into a picture with.
#pragma once

#include <cstdint>

#include "host/objects/object.h"
#include "host/pictures/picture.h"

namespace pxkhost {

class Graphics final : public Object {
  public:
    /// A graphics object for the picture, which it holds while it lives. The pen is 1 x 1 and black.
    static Ref<Graphics> make(Ref<Picture> target);

    std::uint32_t foreColor = 0;  ///< 0xRRGGBB
    int penWidth = 1;
    int penHeight = 1;

    const Ref<Picture>& target() const { return target_; }

    /// Draws a line with the pen hanging to the right of and below the end points. Console pictures get libgd's line.
    void drawLine(int x1, int y1, int x2, int y2);

    /// Draws the rectangle (sx, sy, sw, sh) of the source into (x, y, w, h), scaled to the nearest pixel; a negative sw
    /// or sh means the whole source. A masked source is drawn through its mask. A source with an alpha channel replaces
    /// the pixels of a target with one, and blends into a target without.
    void drawPicture(const Picture& source, int x, int y, int w, int h, int sx, int sy, int sw, int sh);

    REALgraphicsStruct* handle() const { return static_cast<REALgraphicsStruct*>(Object::handle()); }

    static constexpr Kind ownKind = Kind::graphics;

  private:
    explicit Graphics(Ref<Picture> target);
    void dispose() override;

    pxk::REALobjectHeader header_{};
    Ref<Picture> target_;
};

}  // namespace pxkhost
