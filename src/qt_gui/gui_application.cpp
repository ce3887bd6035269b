#include "qt_gui/gui_application.h"

#include <cstdio>
#include <cstdlib>

#include <QGuiApplication>

namespace rm {

namespace {
// Qt's own notes (such as a missing runtime folder of the offscreen platform) are not the
// user's business; only critical messages reach stderr.
void QuietMessages(QtMsgType type, const QMessageLogContext&, const QString& message) {
    if (type == QtCriticalMsg || type == QtFatalMsg) std::fprintf(stderr, "%s\n", message.toLocal8Bit().constData());
}
}  // namespace

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

}  // namespace rm
