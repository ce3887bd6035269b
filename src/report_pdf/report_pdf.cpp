#include "report_pdf/report_pdf.h"

#include <cstdio>

#include <QFile>
#include <QMarginsF>
#include <QPageLayout>
#include <QPageSize>
#include <QPdfWriter>
#include <QAbstractTextDocumentLayout>
#include <QTextDocument>

#include "qt_gui/gui_application.h"

namespace rm {

namespace {

constexpr int kResolutionDpi = 300;

}  // namespace

PdfResult WriteHtmlPdf(const std::string& html, const std::string& pdfPath, const PdfOptions& options) {
    PdfResult result;
    EnsureGuiApplication();

    const QString finalPath = QString::fromStdString(pdfPath);
    const QString partPath = finalPath + QStringLiteral(".part");
    {
        QFile file(partPath);
        if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate)) {
            result.error = pdfPath + ": cannot write the PDF: " + file.errorString().toStdString();
            return result;
        }
        QPdfWriter writer(&file);
        writer.setResolution(kResolutionDpi);
        writer.setPageSize(QPageSize(options.paper == PaperSize::Letter ? QPageSize::Letter : QPageSize::A4));
        writer.setPageMargins(QMarginsF(options.marginMm, options.marginMm, options.marginMm, options.marginMm),
                              QPageLayout::Millimeter);
        writer.setTitle(QString::fromStdString(options.title));
        writer.setCreator(QStringLiteral("Quorle Ripplemark v4.50"));

        // The layout measures fonts at the writer's resolution and breaks pages at its printable
        // area, so that the page count is known and print() draws without rescaling.
        QTextDocument document;
        document.documentLayout()->setPaintDevice(&writer);
        document.setHtml(QString::fromUtf8(html.data(), static_cast<qsizetype>(html.size())));
        document.setPageSize(QSizeF(writer.width(), writer.height()));
        document.print(&writer);
        result.pages = document.pageCount();
        file.flush();
        if (file.error() != QFileDevice::NoError) {
            result.error = pdfPath + ": cannot write the PDF: " + file.errorString().toStdString();
            file.close();
            QFile::remove(partPath);
            return result;
        }
    }
    if (std::rename(partPath.toStdString().c_str(), pdfPath.c_str()) != 0) {
        QFile::remove(partPath);
        result.error = pdfPath + ": cannot write the PDF";
        return result;
    }
    result.ok = true;
    return result;
}

}  // namespace rm
