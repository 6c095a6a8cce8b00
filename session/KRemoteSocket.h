// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "session/PacketParam.h"
#include "session/PacketString.h"
#include "session/RemoteSocketConnectInfo.h"

#include <QtGlobal>

QT_BEGIN_NAMESPACE
class QObject;
QT_END_NAMESPACE

namespace session {
class SocketChannel;
// Where a handle's socket does its work: on an I/O thread of the handle's
// own, or on the thread that creates the handle, whose event loop must run.
enum class IoThread { Own, Caller };
} // namespace session

// The socket interface the session is written against: nine functions over
// an opaque handle, one TCP connection to one recorder per handle. Behind
// them runs our own frame protocol (docs/wire-protocol.md).
//
// Threads: every handle has an I/O thread of its own, from Create to Destroy,
// unless Create is told to use the calling thread for it.
// It connects, writes the frames the send functions queue, reads and cuts the
// incoming stream into frames and posts one SocketNotifyEvent per event to
// the notify object (see SocketNotifyEvent.h), so the notify object handles
// them on its own thread, in order.
//
// Results: nonzero for success, 0 for failure, as the session expects.
using KRSMGAPI_HANDLE = session::SocketChannel *;

// Kept for the shape of Create; notifications only ever go to the notify
// object, so the callback is never called.
using KRSMGAPI_CALLBACK = long (*)(void *, unsigned int, unsigned int, long, void *);

// A new, unconnected handle whose events go to `notify`, or null when
// `notify` is null. `notify` must outlive the handle: destroy the handle
// first.
KRSMGAPI_HANDLE KRSMGAPI_Create(QObject *notify, KRSMGAPI_CALLBACK callback, void *user,
                                session::IoThread where = session::IoThread::Own);

// Process-wide preparation. The transport needs none (Qt brings the network
// stack up on demand); always 1.
int KRSMGAPI_Initialize();

// Starts connecting and returns at once: nonzero when the attempt was
// started, 0 for an invalid address or port or a second Connect on the
// handle (one connection per handle). The outcome arrives as an event: kind
// REMOTESOCKET_NOTIFY::Connected once the TCP connection is established
// (before anything received on it), or kind ConnectFailed when the attempt
// was refused or could not be made. An attempt that hangs reports nothing
// until Disconnect ends it; the caller's own wait bounds it.
int KRSMGAPI_Connect(KRSMGAPI_HANDLE handle, const REMOTESOCKET_CONNECT_INFO *info);

// Sends the opening frame (word 0 = protocol version, word 1 = the connection
// flags of the connect info). The recorder's acknowledgement arrives as an
// event of kind REMOTESOCKET_NOTIFY::InitAcknowledged.
int KRSMGAPI_SendInitPacketData(KRSMGAPI_HANDLE handle);

// The send functions queue one whole frame and return at once; any thread may
// call them, also at the same time. Sequence numbers follow the order in
// which the calls queued their frames. They return 0, sending nothing, when
// the handle or a record pointer is null, the connection is not established
// or has been closed or lost, or the payload is invalid (null data with a
// nonzero length, or more than 1 MiB). A connection is lost when the peer
// closes it, on a socket error, and when the peer sends a malformed frame;
// sends are refused from then on, and an event of kind
// REMOTESOCKET_NOTIFY::ConnectionLost follows. A Disconnect is no loss.

// Login: the record as payload, all parameter words 0.
int KRSMGAPI_SendPacketString(KRSMGAPI_HANDLE handle, qint32 command, const PACKET_STRING *string);
int KRSMGAPI_SendPacketCmd(KRSMGAPI_HANDLE handle, qint32 command, const PACKET_PARAM *param);
// `length` bytes from `data` as payload.
int KRSMGAPI_SendPacketStream(KRSMGAPI_HANDLE handle, qint32 command, const PACKET_PARAM *param,
                              const void *data, quint32 length);

// Closes the connection: later sends return 0, and the close is queued
// behind the frames already accepted, which still go out while the handle
// lives (Destroy ends the connection at once). Idempotent; always 1. Once it
// returns, nothing more is posted for the handle, but events posted before
// may still be waiting in the notify object's queue: a receiver compares the
// handle in each event's record with its own.
int KRSMGAPI_Disconnect(KRSMGAPI_HANDLE handle);

// Disconnects if still connected, ends the I/O thread and frees the handle.
// No send on the handle may run concurrently or follow.
void KRSMGAPI_Destroy(KRSMGAPI_HANDLE handle);
