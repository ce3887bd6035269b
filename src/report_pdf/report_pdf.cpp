#include "report_pdf/report_pdf.h"

#include <cstdio>
#include <cstdlib>

#include <QFile>
#include <QGuiApplication>
#include <QMarginsF>
#include <QPageLayout>
#include <QPageSize>
#include <QPdfWriter>
#include <QAbstractTextDocumentLayout>
#include <QTextDocument>

namespace rm {

namespace {

constexpr int kResolutionDpi = 300;

// Qt's own notes (such as a missing runtime folder of the offscreen platform) are not the
// user's business; only critical messages reach stderr.
void QuietMessages(QtMsgType type, const QMessageLogContext&, const QString& message) {
    if (type == QtCriticalMsg || type == QtFatalMsg) std::fprintf(stderr, "%s\n", message.toLocal8Bit().constData());
}

void EnsureGuiApplication() {
    if (QGuiApplication::instance() != nullptr) return;
    qInstallMessageHandler(QuietMessages);
    const bool display = std::getenv("DISPLAY") != nullptr || std::getenv("WAYLAND_DISPLAY") != nullptr;
    if (!display) setenv("QT_QPA_PLATFORM", "offscreen", 0);
    // Qt keeps references to argc and argv for the application's life.
    static int argc = 1;
    static char name[] = "ripplemark";
    static char* argv[] = {name, nullptr};
    // Never destroyed: tearing Qt down among the program's static destructors is not safe.
    new QGuiApplication(argc, argv);
}

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
