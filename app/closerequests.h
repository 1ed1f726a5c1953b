// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractNativeEventFilter>
#include <QPointer>
#include <QWidget>

// Lets the desktop close the frame while a modal dialog is open. The toolkit drops such a request
// for a window that a dialog blocks, so the task bar's or the session's "close" would do nothing as
// long as, say, an error is shown. Here it closes the frame, which ends the program and its
// dialogs.
//
// On X11 only; elsewhere it does nothing. One object, made after the frame has been shown and
// destroyed before it. GUI thread.
class CloseRequests : public QAbstractNativeEventFilter
{
public:
    explicit CloseRequests(QWidget *frame);
    ~CloseRequests() override;
    CloseRequests(const CloseRequests &) = delete;
    CloseRequests &operator=(const CloseRequests &) = delete;

    bool nativeEventFilter(const QByteArray &eventType, void *message, long *result) override;

private:
    QPointer<QWidget> frame_;
    quint32 protocols_ = 0;    // the X server's numbers for WM_PROTOCOLS
    quint32 deleteWindow_ = 0; // and WM_DELETE_WINDOW, 0 while not known
};
