#pragma once
// HTML of the measurement report printed to a PDF file through Qt's rich-text layout, without a
// window: when there is no display (neither DISPLAY nor WAYLAND_DISPLAY) and QT_QPA_PLATFORM is
// not set, the offscreen platform is chosen. The one QGuiApplication this needs is made on the
// first call, when the program has none, and lives to the end of the program.
//
// This is the only library below the user interface that uses Qt; its header stays free of Qt
// so that callers build without Qt's headers.

#include <string>

namespace rm {

enum class PaperSize { A4, Letter };

struct PdfOptions {
    PaperSize paper = PaperSize::A4;
    double marginMm = 15.0;
    std::string title;  // the document title in the PDF's information
};

struct PdfResult {
    bool ok = false;
    int pages = 0;
    std::string error;
};

// Lays out `html` (UTF-8) on pages of the chosen paper and writes the PDF. The file is written
// under a temporary name beside `pdfPath` and renamed when complete, so that a failure leaves an
// earlier file of that name as it was.
PdfResult WriteHtmlPdf(const std::string& html, const std::string& pdfPath, const PdfOptions& options = {});

}  // namespace rm
