#include "display/picture_file.h"

#include <algorithm>
#include <cctype>
#include <cstdio>

#include <QBuffer>
#include <QByteArray>
#include <QFile>
#include <QImage>
#include <QPageLayout>
#include <QPageSize>
#include <QPdfWriter>
#ifdef RM_HAVE_SVG
#include <QSvgGenerator>
#endif

#include "qt_gui/gui_application.h"

namespace rm {

namespace {
constexpr int kPixelsPerInch = 96;

std::string LowerExtension(const std::string& path) {
    const size_t dot = path.find_last_of('.');
    const size_t slash = path.find_last_of('/');
    if (dot == std::string::npos || (slash != std::string::npos && dot < slash)) return "";
    std::string ext = path.substr(dot);
    std::transform(ext.begin(), ext.end(), ext.begin(), [](unsigned char c) { return std::tolower(c); });
    return ext;
}

QImage PaintImage(const QSize& size, const PaintFunction& paint) {
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::white);
    {
        QPainter painter(&image);
        paint(painter, QRect(QPoint(0, 0), size));
    }
    return image;
}

bool PaintPdf(QFile& file, const QSize& size, const PaintFunction& paint) {
    QPdfWriter writer(&file);
    writer.setResolution(kPixelsPerInch);
    writer.setCreator(QStringLiteral("Quorle Ripplemark"));
    const QSizeF points(size.width() * 72.0 / kPixelsPerInch, size.height() * 72.0 / kPixelsPerInch);
    writer.setPageLayout(QPageLayout(QPageSize(points, QPageSize::Point), QPageLayout::Portrait, QMarginsF()));
    QPainter painter;
    if (!painter.begin(&writer)) return false;
    paint(painter, QRect(QPoint(0, 0), size));
    return painter.end();
}

#ifdef RM_HAVE_SVG
bool PaintSvg(QFile& file, const QSize& size, const PaintFunction& paint) {
    QSvgGenerator generator;
    generator.setOutputDevice(&file);
    generator.setSize(size);
    generator.setViewBox(QRect(QPoint(0, 0), size));
    generator.setResolution(kPixelsPerInch);
    generator.setTitle(QStringLiteral("Quorle Ripplemark"));
    QPainter painter;
    if (!painter.begin(&generator)) return false;
    paint(painter, QRect(QPoint(0, 0), size));
    return painter.end();
}
#endif
}  // namespace

std::optional<PictureFormat> PictureFormatOf(const std::string& path) {
    const std::string ext = LowerExtension(path);
    if (ext == ".png") return PictureFormat::Png;
    if (ext == ".pdf") return PictureFormat::Pdf;
#ifdef RM_HAVE_SVG
    if (ext == ".svg") return PictureFormat::Svg;
#endif
    return std::nullopt;
}

std::string PictureAsPng(const QSize& size, const PaintFunction& paint) {
    if (size.width() < 1 || size.height() < 1) return std::string();
    EnsureGuiApplication();
    QByteArray bytes;
    QBuffer buffer(&bytes);
    if (!buffer.open(QIODevice::WriteOnly) || !PaintImage(size, paint).save(&buffer, "PNG")) return std::string();
    return std::string(bytes.constData(), static_cast<size_t>(bytes.size()));
}

bool WritePicture(const std::string& path, const QSize& size, const PaintFunction& paint, std::string& error) {
    const std::optional<PictureFormat> format = PictureFormatOf(path);
    if (!format) {
        error = path + ": the picture must be a .png, .svg or .pdf file";
        return false;
    }
    if (size.width() < 1 || size.height() < 1) {
        error = path + ": the picture has no size";
        return false;
    }
    EnsureGuiApplication();
    const QString part = QString::fromStdString(path + ".part");
    bool ok = false;
    if (*format == PictureFormat::Png) {
        ok = PaintImage(size, paint).save(part, "PNG");
    } else {
        QFile file(part);
        if (file.open(QIODevice::WriteOnly | QIODevice::Truncate)) {
#ifdef RM_HAVE_SVG
            ok = *format == PictureFormat::Svg ? PaintSvg(file, size, paint) : PaintPdf(file, size, paint);
#else
            ok = PaintPdf(file, size, paint);
#endif
            file.flush();
            ok = ok && file.error() == QFileDevice::NoError;
        }
    }
    if (!ok || std::rename(part.toStdString().c_str(), path.c_str()) != 0) {
        QFile::remove(part);
        error = path + ": cannot write the picture";
        return false;
    }
    return true;
}

}  // namespace rm
