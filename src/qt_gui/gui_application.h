#pragma once
// The one QGuiApplication of a program that draws with QtGui but has no window of its own (the
// command-line tool, the tests): made on first use with the offscreen platform when there is
// no display, and never destroyed. Text, fonts and PDF writers need it.

namespace rm {

// Makes the application object unless one exists already (the desktop program's own).
void EnsureGuiApplication();

}  // namespace rm
