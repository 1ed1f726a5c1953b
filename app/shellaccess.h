// SPDX-License-Identifier: MIT
#pragma once

class QObject;
class QString;

// What pages need of the shell above them, without knowing the main window: where to send what is
// meant for another page, and the title bar. GUI thread.
namespace ShellAccess
{

// The main window announces itself at the end of its construction, and its end with null.
void setMainWindow(QObject *window);

// Takes SufferedEvents for the access list page: the frame's central widget, or the main window
// where there is no frame. Null while there is neither.
QObject *accessEntryReceiver();

// The middle of the title bar. Does nothing where there is no frame.
void showDeviceName(const QString &richText);

} // namespace ShellAccess
