#pragma once
// Writing a picture to a file: PNG, SVG or PDF by the file's extension, at a size in pixels
// (the SVG's view box and the PDF's page are that many pixels at 96 per inch, so the three
// show the same layout). The file is written under a temporary name and renamed, so a failed
// write leaves no half picture and keeps an older file.

#include <functional>
#include <optional>
#include <string>

#include <QPainter>
#include <QRect>
#include <QSize>

namespace rm {

enum class PictureFormat { Png, Svg, Pdf };

// The format of ".png", ".svg" or ".pdf" (any case); nothing for another extension, or for SVG
// when the program was built without QtSvg.
std::optional<PictureFormat> PictureFormatOf(const std::string& path);

using PaintFunction = std::function<void(QPainter& painter, const QRect& area)>;

// The picture as the bytes of a PNG file (empty when it could not be made), for pictures
// embedded in another document such as a report.
std::string PictureAsPng(const QSize& size, const PaintFunction& paint);

// Paints into a picture of `size` and writes it to `path`. False with the reason in `error`.
bool WritePicture(const std::string& path, const QSize& size, const PaintFunction& paint, std::string& error);

}  // namespace rm
