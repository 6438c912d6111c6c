#include "chain/language_help.h"

namespace pxk::chain {

const char* const languageHelp =
    R"(A chain is one or more calls joined by dots. The first works on the input, each other on the picture that the call
before it returned:

  InvertPXK(10, 10, 200, 100).InvertGrayPXK

Letter case does not matter, and the suffix PXK may be left out. A leading "pic." or "pic = pic." changes nothing.

Arguments
  12   -1.5   2e3   &hFF      numbers
  true   false   nil
  &cFF8800                    a colour: red, green, blue
  "text"                      a string (double a quote inside it); for a picture or memory block, the name of the file
                              that holds it
  pic   pic.InvertPXK         the current picture, or the result of calls on it
  x                           any name, for a value that a method writes back; the value is printed under that name

A global method that is given one argument too few takes the current picture as its first picture. A class is a step
too: its properties are set by name, then it runs:

  PictureSepiaPXK(SepiaRed = 40, SepiaGreen = 20, SepiaBlue = -20)
  PictureLut3DPXK("look.cube")    ' a class with a 3D LUT reads it from a .cube file

The bytes of a memory block's file are used as they are: 256 of them for a table. A file that begins with the word
"curve" describes a table by a few points; the values between them are interpolated:

  curve smooth      # or: curve linear
  0    0            # a value of the channel, and what it becomes
  64   48
  255  255

A chain continues on the next line after a "_", or when the next line starts with a dot. A new line without a dot is a
statement of its own, which starts with the current picture. Use one after a call that changes the picture in place,
and to assign to a property:

  ScrollPXK(10, 0, true, false)   ' returns true; false would stop the chain
  EmbeddedMaskPXK(false) = "mask.png"
  InvertPXK

Comments start with ' or // or REM. The result of a chain is what its last statement returns, or the current picture
when that returns nothing.
)";

}  // namespace pxk::chain
