#pragma once
// The fonts of the pictures. The pictures ask for "arial" at weight 400; where that family is
// not installed (a Debian machine has DejaVu from fonts-dejavu-core) the next family of the list
// is used, so that text keeps its height and a picture never goes without labels.

#include <QFont>

namespace rm {

// `family` at `pixelHeight` pixels, normal weight, falling back on Liberation Sans and then
// DejaVu Sans. Heights are in pixels of the paint device, so a picture looks the same in a
// PNG of a given size and in an SVG or PDF of that size.
QFont NamedFont(const char* family, int pixelHeight);
// The pictures' font: "arial" at `pixelHeight`.
QFont DisplayFont(int pixelHeight);

}  // namespace rm
