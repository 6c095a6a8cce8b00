// SPDX-License-Identifier: GPL-3.0-or-later

#include "session/KRemoteSocket.h"

#include "session/SocketChannel.h"

KRSMGAPI_HANDLE KRSMGAPI_Create(QObject *notify, KRSMGAPI_CALLBACK, void *, session::IoThread where)
{
    return notify ? new session::SocketChannel(notify, where) : nullptr;
}

int KRSMGAPI_Initialize()
{
    return 1;
}

int KRSMGAPI_Connect(KRSMGAPI_HANDLE handle, const REMOTESOCKET_CONNECT_INFO *info)
{
    return handle && info && handle->connectTo(*info);
}

int KRSMGAPI_SendInitPacketData(KRSMGAPI_HANDLE handle)
{
    return handle && handle->sendOpen();
}

int KRSMGAPI_SendPacketString(KRSMGAPI_HANDLE handle, qint32 command, const PACKET_STRING *string)
{
    return handle && string && handle->send(command, PACKET_PARAM(), string->toBytes());
}

int KRSMGAPI_SendPacketCmd(KRSMGAPI_HANDLE handle, qint32 command, const PACKET_PARAM *param)
{
    return handle && param && handle->send(command, *param, {});
}

int KRSMGAPI_SendPacketStream(KRSMGAPI_HANDLE handle, qint32 command, const PACKET_PARAM *param,
                              const void *data, quint32 length)
{
    if (!handle || !param || (!data && length > 0))
        return 0;
    return handle->send(command, *param,
                        QByteArrayView(static_cast<const char *>(data), qsizetype(length)));
}

int KRSMGAPI_Disconnect(KRSMGAPI_HANDLE handle)
{
    if (handle)
        handle->disconnect();
    return 1;
}

void KRSMGAPI_Destroy(KRSMGAPI_HANDLE handle)
{
    delete handle;
}
