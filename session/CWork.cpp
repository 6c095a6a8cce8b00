#include "session/CWork.h"

#include "i18n/Translator.h"
#include "session/Frame.h"
#include "session/KRemoteSocket.h"
#include "session/MessageSink.h"
#include "session/PacketParam.h"
#include "session/PacketString.h"
#include "session/ProgramExit.h"
#include "session/RemoteCommand.h"
#include "session/SessionMessage.h"
#include "session/SocketNotifyEvent.h"
#include "setup/LittleEndian.h"

#include <QCoreApplication>
#include <QThread>

#include <utility>

using nelib::LittleEndian;
using setup::SetupRecordMap;

namespace {

std::atomic<CWork *> s_instance {nullptr};

using session::Frame;
constexpr qsizetype PacketHeadSize = Frame::HeadSize;
constexpr qsizetype PacketLengthOffset = Frame::TotalLengthOffset;
constexpr qsizetype PacketCommandOffset = Frame::CommandOffset;
constexpr qsizetype PacketParamOffset = Frame::ParamOffset;

constexpr quint32 SetupRequestLength = SetupRecordMap::RecordSize;

PACKET_PARAM packetParam(const QByteArray &packet)
{
    return PACKET_PARAM::fromBytes(QByteArrayView(packet).sliced(
        std::min(PacketParamOffset, packet.size()),
        std::clamp<qsizetype>(packet.size() - PacketParamOffset, 0, PACKET_PARAM::Size)));
}

// The payload as the packet's own length field describes it, cut to what
// actually arrived.
QByteArrayView packetPayload(const QByteArray &packet)
{
    if (packet.size() <= PacketHeadSize)
        return {};
    const qsizetype total = LittleEndian::u32(packet, PacketLengthOffset);
    const qsizetype end = std::clamp<qsizetype>(total, PacketHeadSize, packet.size());
    return QByteArrayView(packet).sliced(PacketHeadSize, end - PacketHeadSize);
}

} // namespace

CWork::CWork(QObject *parent)
    : QObject(parent)
    , m_status(std::make_shared<SessionStatus>())
    , m_mirror(SetupRecordMap::RecordSize, '\0')
    , m_referenceCopy(SetupRecordMap::RecordSize, '\0')
    , m_firmwareBuffer(FirmwareBufferSize, '\0')
{
    s_instance.store(this);
    m_keepAliveTimer.setInterval(KeepAliveIntervalMs);
    m_clockTimer.setInterval(ClockIntervalMs);
    connect(&m_keepAliveTimer, &QTimer::timeout, this, [this] { onTimer(KeepAliveTimer); });
    connect(&m_clockTimer, &QTimer::timeout, this, [this] { onTimer(ClockTimer); });
}

CWork::~CWork()
{
    releaseHandle();
    m_status->workerAlive.store(false);
    CWork *self = this;
    s_instance.compare_exchange_strong(self, nullptr);
}

CWork *CWork::instance()
{
    return s_instance.load();
}

void CWork::setMainWindow(QObject *mainWindow)
{
    m_mainWindow = mainWindow;
}

void CWork::setState(int state, bool updateStatus)
{
    m_status->state.store(state);
    if (updateStatus && m_record)
        m_record->status.store(quint8(state));
}

int CWork::connectSession(ConnectionRecord *record)
{
    m_record = record;
    m_record->clearedAtConnect = 0;
    m_address = record->address;
    m_port = record->port;

    m_handle = KRSMGAPI_Create(this, nullptr, nullptr);
    setState(Idle, false);

    REMOTESOCKET_CONNECT_INFO info;
    info.address = m_address;
    info.port = m_port;
    KRSMGAPI_Initialize();
    const int result = m_handle ? KRSMGAPI_Connect(m_handle, &info) : 0;
    setState(result ? Connecting : Failed, true);
    return result;
}

void CWork::disconnectSession()
{
    m_keepAliveTimer.stop();
    if (releaseHandle())
        setState(Idle, false);
    if (m_mainWindow)
        QCoreApplication::postEvent(m_mainWindow, new SessionMessage(SessionMessage::SessionEnded));
}

int CWork::dateTimeCommand(int mode, const RecorderTime &time)
{
    m_dateTimeParam
        = {quint32(mode), time.year, time.month, time.day, time.hour, time.minute, time.second, 0};
    PACKET_PARAM param;
    param.words = m_dateTimeParam;
    return KRSMGAPI_SendPacketCmd(m_handle, RemoteCommand::DateTime, &param);
}

bool CWork::event(QEvent *event)
{
    if (event->type() != session::SocketNotifyEvent::NotifyType)
        return QObject::event(event);
    const auto *notify = static_cast<session::SocketNotifyEvent *>(event);
    handleNotification(notify->record(), notify->packet());
    if (state() == Failed)
        disconnectSession();
    return true;
}

void CWork::handleNotification(const REMOTESOCKET_NOTIFY &record, const QByteArray &packet)
{
    switch (record.kind) {
    case REMOTESOCKET_NOTIFY::Connected:
        if (record.handle != m_handle) {
            setState(Failed, true);
            return;
        }
        setState(Connected, true);
        if (state() != Connected) {
            setState(Failed, false);
            return;
        }
        if (!KRSMGAPI_SendInitPacketData(m_handle)) {
            MessageSink::show(nelib::tr("Connect Fail"));
            setState(Failed, false);
            disconnectSession();
        }
        return;
    case REMOTESOCKET_NOTIFY::InitAcknowledged:
        setState(LoggingIn, true);
        login();
        return;
    case REMOTESOCKET_NOTIFY::PacketReceived:
        handlePacket(packet);
        return;
    default:
        return;
    }
}

void CWork::login()
{
    if (state() != LoggingIn) {
        setState(Failed, false);
        return;
    }
    PACKET_STRING login;
    login.memberId = m_record->memberId;
    login.password = m_record->password;
    if (!KRSMGAPI_SendPacketString(m_handle, RemoteCommand::Login, &login)) {
        setState(Failed, false);
        disconnectSession();
    }
}

void CWork::handlePacket(const QByteArray &packet)
{
    if (packet.size() < PacketHeadSize)
        return;
    switch (LittleEndian::i32(packet, PacketCommandOffset)) {
    case RemoteCommand::LoginAnswer:
        handleLoginAnswer(packet);
        break;
    case RemoteCommand::DateTimeAnswer:
        handleTimeAnswer(packet);
        break;
    case RemoteCommand::SetupAnswer:
        handleSetupAnswer(packet);
        break;
    case RemoteCommand::FirmwareReply:
        handleFirmwareReply(packet);
        break;
    case RemoteCommand::SetupWriteAck:
        handleAcknowledgement();
        Q_EMIT writeAcknowledged(packetParam(packet).words[0] != 0);
        break;
    default:
        break;
    }
}

void CWork::handleLoginAnswer(const QByteArray &packet)
{
    const QByteArrayView param
        = QByteArrayView(packet).sliced(PacketParamOffset, PACKET_PARAM::Size);
    const qint32 code = LittleEndian::i32(param, 0);
    m_lastLoginCode = code;
    static const char *const refusals[] = {
        RS_TEXT("Login failed"),
        nullptr,
        RS_TEXT("Login failed by password error"),
        RS_TEXT("Login failed"),
        RS_TEXT("Login failed by exceeding maximum user"),
        RS_TEXT("Login failed by authority error"),
        RS_TEXT("Login failed by former user"),
        RS_TEXT("Login failed by menu operation"),
    };
    if (code == LoginOk) {
        setState(Ready, true);
        m_videoStandard = LittleEndian::u8(param, 6);
        if (m_record) {
            m_record->channelCount = LittleEndian::u8(param, 4);
            m_record->clearedAtLogin = 0;
            m_record->videoStandard = quint8(m_videoStandard);
        }
        requestSetup();
    } else if (code >= 0 && code < qint32(std::size(refusals))) {
        MessageSink::show(nelib::tr(refusals[code]));
        setState(Failed, true);
    }
    m_keepAliveTimer.start();
}

void CWork::requestSetup()
{
    if (state() != Ready) {
        setState(Failed, false);
        return;
    }
    PACKET_PARAM param;
    param.words[0] = SetupRequestLength;
    if (!KRSMGAPI_SendPacketCmd(m_handle, RemoteCommand::SetupRequest, &param)) {
        setState(Failed, false);
        disconnectSession();
    }
}

void CWork::handleTimeAnswer(const QByteArray &packet)
{
    const PACKET_PARAM param = packetParam(packet);
    if (!m_clock)
        m_clock = std::make_unique<RecorderTime>();
    m_clock->year = quint16(param.words[1]);
    m_clock->month = quint16(param.words[2]);
    m_clock->day = quint16(param.words[3]);
    m_clock->hour = quint16(param.words[4]);
    m_clock->minute = quint16(param.words[5]);
    m_clock->second = quint16(param.words[6]);
    m_clockTimer.start();
    onTimer(ClockTimer);
    m_clockValid = true;
    Q_EMIT timeAnswerReceived();
}

void CWork::handleSetupAnswer(const QByteArray &packet)
{
    const QByteArrayView param
        = QByteArrayView(packet).sliced(PacketParamOffset, PACKET_PARAM::Size);
    for (int i = 0; i < 4; ++i)
        m_setupAnswerValues[i] = LittleEndian::u16(param, 12 + 2 * i);
    const QByteArrayView payload = packetPayload(packet);
    if (LittleEndian::u32(param, 8) == 0) {
        setupArrival(payload, !payload.isEmpty());
        m_status->setupReceived.store(1);
        Q_EMIT setupArrived();
    } else if (payload.size() == SetupRecordMap::RecordSize) {
        m_referenceCopy = payload.toByteArray();
    }
}

void CWork::setupArrival(QByteArrayView payload, bool present)
{
    if (!present) {
        MessageSink::show(nelib::tr("No Setup Data"));
        return;
    }
    if (payload.size() == SetupRecordMap::RecordSize)
        m_mirror = payload.toByteArray();
    dateTimeCommand(1, RecorderTime {});
}

void CWork::handleAcknowledgement()
{
    const int importPending = m_importPending;
    const int defaultPending = m_defaultPending;
    if (!importPending && !defaultPending) {
        if (m_silentNextAck)
            m_silentNextAck = 0;
        else
            MessageSink::show(nelib::tr("Complete Save   \t"));
        return;
    }
    if (importPending && defaultPending)
        return;
    ++m_ackCounter;
    if (m_ackCounter == 6)
        commit();
    if (m_ackCounter != 7)
        return;
    MessageSink::show(importPending ? nelib::tr("Import Success")
                                    : nelib::tr("Default Setup Success"));
    (importPending ? m_importPending : m_defaultPending) = 0;
    if (m_mainWindow) {
        SessionMessage restored(SessionMessage::SetupRestored);
        QCoreApplication::sendEvent(m_mainWindow, &restored);
    }
}

void CWork::handleFirmwareReply(const QByteArray &packet)
{
    const PACKET_PARAM param = packetParam(packet);
    const QByteArrayView payload = packetPayload(packet);
    {
        const std::lock_guard lock(m_firmwareMutex);
        const qsizetype fill = std::min<qsizetype>(payload.size(), FirmwareBufferSize);
        std::copy_n(payload.data(), fill, m_firmwareBuffer.data());
        m_firmwareFill.store(int(fill));
        for (int i = 0; i < PACKET_PARAM::WordCount; ++i)
            m_firmwareWords[i].store(param.words[i]);
    }
    m_firmwareReply.set();
}

std::array<quint32, 8> CWork::firmwareReplyWords() const
{
    std::array<quint32, 8> words {};
    for (int i = 0; i < PACKET_PARAM::WordCount; ++i)
        words[i] = m_firmwareWords[i].load();
    return words;
}

QByteArray CWork::firmwareReplyData() const
{
    const std::lock_guard lock(m_firmwareMutex);
    return m_firmwareBuffer.first(m_firmwareFill.load());
}

bool CWork::releaseHandle()
{
    KRSMGAPI_HANDLE handle = nullptr;
    {
        const std::lock_guard lock(m_handleMutex);
        handle = std::exchange(m_handle, nullptr);
    }
    if (!handle)
        return false;
    KRSMGAPI_Disconnect(handle);
    KRSMGAPI_Destroy(handle);
    return true;
}

int CWork::sendFirmwarePacket(const PACKET_PARAM &param, QByteArrayView data)
{
    // The upload thread sends while the keep-alive may end the session.
    const std::lock_guard lock(m_handleMutex);
    if (data.isEmpty())
        return KRSMGAPI_SendPacketCmd(m_handle, RemoteCommand::FirmwarePacket, &param);
    return KRSMGAPI_SendPacketStream(m_handle, RemoteCommand::FirmwarePacket, &param, data.data(),
                                     quint32(data.size()));
}

void CWork::clearFirmwareBuffer()
{
    const std::lock_guard lock(m_firmwareMutex);
    m_firmwareBuffer.fill('\0');
    m_firmwareFill.store(0);
}

void CWork::onTimer(quint32 timer)
{
    switch (timer) {
    case KeepAliveTimer:
        keepAlive();
        break;
    case ClockTimer:
        if (m_clock)
            RecorderClock::tick(*m_clock);
        break;
    case UnusedTimer:
        disconnectSession();
        break;
    default:
        break;
    }
}

void CWork::keepAlive()
{
    const PACKET_PARAM probe;
    if (KRSMGAPI_SendPacketCmd(m_handle, RemoteCommand::KeepAlive, &probe))
        return;
    setState(Failed, false);
    disconnectSession();
    MessageSink::show(nelib::tr("DVR has been disconnected.\nThe Remote Setup is terminated.\n"
                                "Please try to reconnect."));
    ProgramExit::exitProgram(0);
}

int CWork::writeSection(setup::Section section, QByteArrayView data)
{
    const setup::SectionInfo &info = SetupRecordMap::section(section);
    if (state() != Ready || data.size() != info.length)
        return 0;
    std::copy_n(data.data(), info.length, m_mirror.data() + info.offset);
    PACKET_PARAM param;
    param.words[0] = info.category;
    param.words[1] = quint32(info.length);
    param.words[2] = quint32(info.offset);
    return KRSMGAPI_SendPacketStream(m_handle, RemoteCommand::SetupWrite, &param,
                                     m_mirror.constData() + info.offset, quint32(info.length));
}

int CWork::readSection(setup::Section section, QByteArray *destination) const
{
    const setup::SectionInfo &info = SetupRecordMap::section(section);
    if (state() != Ready || !destination || !info.readable)
        return 0;
    *destination = m_mirror.sliced(info.offset, info.length);
    return 1;
}

int CWork::writeWholeRecord(QByteArrayView record)
{
    if (state() != Ready || record.size() != SetupRecordMap::RecordSize)
        return 0;
    int result = 0;
    for (const setup::BlockInfo &block : SetupRecordMap::Blocks) {
        PACKET_PARAM param;
        param.words[0] = SetupRecordMap::WholeBlockCategory;
        param.words[1] = quint32(block.length);
        param.words[2] = quint32(block.offset);
        result = KRSMGAPI_SendPacketStream(m_handle, RemoteCommand::SetupWrite, &param,
                                           record.data() + block.offset, quint32(block.length));
        if (!result)
            return 0;
        if (block.id != SetupRecordMap::Blocks.back().id)
            QThread::msleep(WholeRecordPauseMs);
    }
    m_mirror = record.toByteArray();
    return result;
}

void CWork::commit()
{
    if (state() != Ready)
        return;
    PACKET_PARAM param;
    param.words[0] = SetupRecordMap::CommitCategory;
    KRSMGAPI_SendPacketCmd(m_handle, RemoteCommand::SetupWrite, &param);
}

void CWork::beginImport()
{
    m_ackCounter = 0;
    m_importPending = 1;
}

void CWork::beginDefault()
{
    m_ackCounter = 0;
    m_defaultPending = 1;
}
