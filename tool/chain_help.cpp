#include "chain_help.h"

namespace pxk::tool {

const char* const chainHelp =
    R"(A chain is one or more calls joined by dots. Each works on the picture that the one before gave, the first on
the input:

  InvertPXK(10, 10, 200, 100).InvertGrayPXK

Names count in any letter case, and their PXK may be left out. A "pic." or "pic = pic." in front changes nothing.

Arguments
  12   -1.5   2e3   &hFF      numbers
  true   false   nil
  &cFF8800                    a colour: red, green, blue
  "text"                      a text, a quote in it doubled; where a picture or memory block is wanted, the name of
                              the file that it is read from
  pic   pic.InvertPXK         the current picture, or what calls make of it
  x                           any name, where a method writes a value back; it is printed under that name

A global method works on the current picture where it would take one picture more than it was given. A class is a
step too; its properties are set by name, then it runs:

  PictureSepiaPXK(SepiaRed = 40, SepiaGreen = 20, SepiaBlue = -20)
  PictureLut3DPXK("look.cube")    ' one with a three-dimensional table takes it from a .cube file

A memory block's file is taken as it is: 256 bytes for a table. A file that begins with the word "curve" is a table
written as points, and the rest of the 256 values lie between them:

  curve smooth      # or: curve linear
  0    0            # a value of the channel, and what it becomes
  64   48
  255  255

A chain may go on on a new line that starts with a dot, or after a "_". A new line without a dot is a statement of its
own, which starts with the current picture. This is how to go on after a call that changes the picture in place, and
how to assign to a property:

  ScrollPXK(10, 0, true, false)   ' gives true; false would stop the chain
  EmbeddedMaskPXK(false) = "mask.png"
  InvertPXK

Comments start with ' or // or REM. What the last statement gives is the result: a picture goes where -o says; a number,
boolean or text is printed, and with -o the current picture is saved as well; the bytes of a string or memory block go
into the file that -o names.
)";

}  // namespace pxk::tool
