// WindowState.h - what the program keeps from run to run, as the window has it now.
#pragma once

#include <QStringList>

namespace carvelot {
class CMainFrame;
}

namespace carvelot::soak {

// A line a thing: window, panes, toolbars, bars, look, options, recent files.
QStringList StateOf(CMainFrame& frame);

// The lines that only one of both has, "-" before those that went and "+" before those that came.
QStringList Differences(const QStringList& before, const QStringList& after);

} // namespace carvelot::soak
