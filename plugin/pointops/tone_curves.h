/// Tone curves: contrast, brightness and linear maps, for all channels alike or for each channel.
///
/// Each member returns a new picture of `self`'s size, every pixel opaque, which the caller owns; or nil when `self`
/// cannot be read or the result not made. A channel's value v, 0 to 255, goes through the formula in double precision;
/// the result is truncated towards zero and, with one exception, clamped to 0-255. No parameter is refused. A result
/// that does not fit 32 bits, or is not a number, becomes 0, even where it is far above 255: a contrast of 1e12 makes
/// every channel black except those of 127.
#pragma once

#include "frame/host_records.h"

namespace pxk {

/// (v - 127) * (contrast + 1) + 127. 0 changes nothing, -1 gives 127 everywhere, less inverts around 127.
REALpictureStruct* ContrastPicture1(REALpictureStruct* self, double contrast);
REALpictureStruct* ContrastPicture3(REALpictureStruct* self, double contrastRed, double contrastGreen,
                                    double contrastBlue);

/// v * (255 - |brightness|) / 255 + max(brightness, 0): 255 gives white, -255 black. Not clamped: beyond those limits
/// only the lowest 8 bits count, so that a result of 300 becomes 44.
REALpictureStruct* LinBrightnessPicture1(REALpictureStruct* self, double brightness);
REALpictureStruct* LinBrightnessPicture3(REALpictureStruct* self, double brightnessRed, double brightnessGreen,
                                         double brightnessBlue);

/// v + brightness.
REALpictureStruct* AbsBrightnessPicture1(REALpictureStruct* self, double brightness);
REALpictureStruct* AbsBrightnessPicture3(REALpictureStruct* self, double brightnessRed, double brightnessGreen,
                                         double brightnessBlue);

/// v * a + b.
REALpictureStruct* TransformPicture1(REALpictureStruct* self, double a, double b);

/// v * a + b for each channel. Green uses `ra`, and `ga` is ignored: this is deliberate, kept for
/// compatibility.
REALpictureStruct* TransformPicture3(REALpictureStruct* self, double ra, double rb, double ga, double gb, double ba,
                                     double bb);

/// Contrast and then linear brightness, with one truncation, and clamped, at the end.
REALpictureStruct* ContrastLinBrightnessPicture1(REALpictureStruct* self, double contrast, double brightness);
REALpictureStruct* ContrastLinBrightnessPicture3(REALpictureStruct* self, double contrastRed, double contrastGreen,
                                                 double contrastBlue, double brightnessRed, double brightnessGreen,
                                                 double brightnessBlue);

/// Contrast and then absolute brightness, with one truncation at the end.
REALpictureStruct* ContrastAbsBrightnessPicture1(REALpictureStruct* self, double contrast, double brightness);
REALpictureStruct* ContrastAbsBrightnessPicture3(REALpictureStruct* self, double contrastRed, double contrastGreen,
                                                 double contrastBlue, double brightnessRed, double brightnessGreen,
                                                 double brightnessBlue);

}  // namespace pxk
