// SPDX-License-Identifier: MIT
#include "app/closerequests.h"

#include <QApplication>
#include <QGuiApplication>

#include <cstdlib>
#include <memory>
#include <xcb/xcb.h>

namespace
{

quint32 atom(xcb_connection_t *connection, const char *name)
{
    const auto cookie = xcb_intern_atom(connection, 1, static_cast<uint16_t>(qstrlen(name)), name);
    const std::unique_ptr<xcb_intern_atom_reply_t, decltype(&std::free)> reply(
        xcb_intern_atom_reply(connection, cookie, nullptr), &std::free);
    return reply ? reply->atom : 0;
}

} // namespace

CloseRequests::CloseRequests(QWidget *frame)
    : frame_(frame)
{
    if (QGuiApplication::platformName() != QLatin1String("xcb")) {
        return;
    }
    // A connection of our own for two questions: the numbers are the server's, not the
    // connection's.
    xcb_connection_t *connection = xcb_connect(nullptr, nullptr);
    if (xcb_connection_has_error(connection) == 0) {
        protocols_ = atom(connection, "WM_PROTOCOLS");
        deleteWindow_ = atom(connection, "WM_DELETE_WINDOW");
    }
    xcb_disconnect(connection);
    qApp->installNativeEventFilter(this);
}

CloseRequests::~CloseRequests()
{
    if (qApp != nullptr) {
        qApp->removeNativeEventFilter(this);
    }
}

bool CloseRequests::nativeEventFilter(const QByteArray &eventType, void *message, long *)
{
    if (eventType != "xcb_generic_event_t" || deleteWindow_ == 0 || !frame_ ||
        QApplication::activeModalWidget() == nullptr) {
        return false;
    }
    const auto *event = static_cast<const xcb_generic_event_t *>(message);
    if ((event->response_type & 0x7F) != XCB_CLIENT_MESSAGE) {
        return false;
    }
    const auto *request = reinterpret_cast<const xcb_client_message_event_t *>(event);
    if (request->window != frame_->internalWinId() || request->type != protocols_ ||
        request->data.data32[0] != deleteWindow_) {
        return false;
    }
    QMetaObject::invokeMethod(frame_, &QWidget::close, Qt::QueuedConnection);
    return true;
}
