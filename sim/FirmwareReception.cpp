// SPDX-License-Identifier: GPL-3.0-or-later

#include "sim/FirmwareReception.h"

#include "firmware/PacketWords.h"
#include "firmware/RecorderVersions.h"
#include "setup/SetupRecordMap.h"
#include "sim/RecorderServer.h"

#include <QDir>
#include <QSaveFile>

#include <limits>

#include <fcntl.h>

using namespace Qt::StringLiterals;
using firmware::FirmwarePackage;
using firmware::FirmwareVersion;
using firmware::RecorderVersions;
using session::Frame;
using setup::SetupRecordMap;

namespace W = firmware::PacketWords;

namespace sim {

namespace {

QString lacksUpgradeRight()
{
    return u"the account lacks Upgrade S/W"_s;
}

} // namespace

FirmwareReception::FirmwareReception(RecorderServer *server, RecorderSession *session,
                                     std::function<void(const QString &)> log)
    : m_server(server)
    , m_session(session)
    , m_log(std::move(log))
{ }

FirmwareReception::~FirmwareReception() = default;

QString FirmwareReception::fileName(FirmwareVersion version)
{
    return u"firmware-%1.KRP"_s.arg(version.toString());
}

std::optional<FirmwareReception::Reply> FirmwareReception::handle(const Frame &frame, bool allowed)
{
    switch (frame.param.words[0]) {
    case W::Header:
        return header(frame, allowed);
    case W::Data:
        if (!allowed)
            return refuse(lacksUpgradeRight());
        return data(frame);
    case W::Stop:
        discard(u"stopped by the client"_s);
        return std::nullopt;
    default:
        return refuse(u"unknown firmware packet kind %1"_s.arg(frame.param.words[0]));
    }
}

void FirmwareReception::discard(const QString &why)
{
    if (!m_transfer)
        return;
    // A QSaveFile that is not committed removes its temporary file.
    m_transfer.reset();
    m_log(u"firmware transfer discarded: %1"_s.arg(why));
}

QByteArray FirmwareReception::versionData() const
{
    // The recorder runs one release: every component is at its overall version.
    RecorderVersions versions;
    versions.overall
        = FirmwareVersion::fromBytes(m_server->record(), SetupRecordMap::SoftwareVersionOffset);
    versions.components.fill(versions.overall);
    versions.model = u"SIM-DVR %1CH"_s.arg(m_server->options().channels).toLatin1();
    return versions.toBytes();
}

FirmwareReception::Reply FirmwareReception::header(const Frame &frame, bool allowed)
{
    discard(u"a new header arrived"_s);
    Reply reply;
    reply.param.words[0] = W::HeaderReply;
    reply.param.words[1] = W::GoOn;
    reply.param.words[2] = W::VersionDataFollows;
    reply.param.words[4] = quint32(m_server->options().chunkSize);
    reply.payload = versionData();
    const auto decline = [&](const QString &problem) {
        reply.param.words[1] = W::Decline;
        m_log(u"firmware update declined: %1"_s.arg(problem));
        return reply;
    };
    if (!allowed)
        return decline(lacksUpgradeRight());
    if (m_server->options().busy) {
        reply.param.words[1] = W::Busy;
        m_log(u"firmware update refused: busy"_s);
        return reply;
    }

    if (frame.payload.size() != FirmwarePackage::HeaderSize)
        return decline(u"a header of %1 bytes"_s.arg(frame.payload.size()));
    // The header alone cannot tell the file's size; the end of the package
    // checks what arrived against what was announced.
    FirmwarePackage::Fault fault = FirmwarePackage::Fault::None;
    auto package
        = FirmwarePackage::fromHeader(frame.payload, std::numeric_limits<qint64>::max(), &fault);
    if (!package)
        return decline(FirmwarePackage::faultMessage(fault));
    if (frame.param.words[1] != package->dataOffset())
        return decline(
            u"word 1 says the data start at %1, the header at %2"_s.arg(frame.param.words[1])
                .arg(package->dataOffset()));
    Transfer transfer {std::move(*package), {}, 0, 0, {}, 0, 0, {}};
    QString problem;
    if (!startFile(transfer, &problem))
        return decline(problem);
    m_log(u"firmware update %1 with %2 components begins"_s.arg(
        transfer.package.version().toString(),
        QString::number(transfer.package.components().size())));
    m_transfer = std::move(transfer);
    return reply;
}

bool FirmwareReception::startFile(Transfer &transfer, QString *problem) const
{
    const QString dir = m_server->options().firmwareDir;
    if (dir.isEmpty())
        return true;
    const QString path = QDir(dir).filePath(fileName(transfer.package.version()));
    auto file = std::make_unique<QSaveFile>(path);
    // The gap between the header and the data, if any, is zeros.
    if (!QDir().mkpath(dir) || !file->open(QIODevice::WriteOnly)
        || file->write(transfer.package.header()) != FirmwarePackage::HeaderSize
        || !file->resize(transfer.package.dataOffset())
        || !file->seek(transfer.package.dataOffset())) {
        *problem = u"cannot write %1: %2"_s.arg(path, file->errorString());
        return false;
    }
    transfer.file = std::move(file);
    return true;
}

FirmwareReception::Reply FirmwareReception::data(const Frame &frame)
{
    if (!m_transfer)
        return refuse(u"data packet without a header"_s);
    Transfer &t = *m_transfer;
    const auto &w = frame.param.words;
    if (w[2] != t.nextNumber)
        return refuse(u"packet number %1, expected %2"_s.arg(w[2]).arg(t.nextNumber));
    if (t.total && *t.total != w[3])
        return refuse(u"the total changed from %1 to %2"_s.arg(*t.total).arg(w[3]));
    t.total = w[3];

    QString problem;
    switch (w[6]) {
    case W::FirstChunk:
    case W::LaterChunk:
        problem = chunk(frame);
        break;
    case W::EndOfComponent:
        problem = endOfComponent(frame);
        break;
    case W::EndOfPackage:
        return endOfPackage(frame);
    default:
        problem = u"unknown chunk flag %1"_s.arg(w[6]);
        break;
    }
    if (!problem.isEmpty())
        return refuse(problem);
    ++t.nextNumber;
    Reply reply;
    reply.param.words[0] = W::DataReply;
    reply.param.words[1] = W::Accepted;
    return reply;
}

QString FirmwareReception::chunk(const Frame &frame)
{
    Transfer &t = *m_transfer;
    const auto &w = frame.param.words;
    if (w[6] == W::FirstChunk) {
        if (t.open)
            return u"a first chunk inside component %1"_s.arg(*t.open);
        t.open = findComponent(w[1], w[4]);
        if (!t.open)
            return u"no component of type %1 with %2 bytes is left in the table"_s.arg(w[1]).arg(
                w[4]);
        t.componentReceived = 0;
    } else if (!t.open) {
        return u"a later chunk outside any component"_s;
    }
    const FirmwarePackage::Component &component = t.package.components()[*t.open];
    if (w[1] != component.type || w[4] != component.size)
        return u"a chunk of type %1, size %2 inside component %3"_s.arg(w[1]).arg(w[4]).arg(
            *t.open);
    const quint32 length = w[5];
    if (length != frame.payload.size())
        return u"word 5 announces %1 bytes, %2 came"_s.arg(length).arg(frame.payload.size());
    if (length == 0 || length > quint32(m_server->options().chunkSize))
        return u"a chunk of %1 bytes; the chunk size is %2"_s.arg(length).arg(
            m_server->options().chunkSize);
    if (t.componentReceived + length > component.size)
        return u"the chunk runs past the component's %1 bytes"_s.arg(component.size);
    if (t.file && (t.file->write(frame.payload) != length || !t.file->flush()))
        return u"cannot write the package: %1"_s.arg(t.file->errorString());
    // The disk starts on each chunk as it comes, so the sync before the
    // answer to the end of the package has only the last ones left to wait
    // for. It only starts the writing: durability is still the commit's.
    if (t.file)
        ::sync_file_range(t.file->handle(), 0, 0, SYNC_FILE_RANGE_WRITE);
    t.componentReceived += length;
    t.received += length;
    return {};
}

QString FirmwareReception::endOfComponent(const Frame &frame)
{
    Transfer &t = *m_transfer;
    const auto &w = frame.param.words;
    if (w[5] != 0 || !frame.payload.isEmpty())
        return u"an end of component with data"_s;
    if (!t.open) {
        // A component without data has no chunks before its end.
        t.open = w[4] == 0 ? findComponent(w[1], 0) : std::nullopt;
        if (!t.open)
            return u"an end of component outside any component"_s;
        t.componentReceived = 0;
    }
    const FirmwarePackage::Component &component = t.package.components()[*t.open];
    if (w[1] != component.type || w[4] != component.size)
        return u"the end of a component of type %1, size %2 inside component %3"_s.arg(w[1])
            .arg(w[4])
            .arg(*t.open);
    if (t.componentReceived != component.size)
        return u"component %1 ended after %2 of its %3 bytes"_s.arg(*t.open)
            .arg(t.componentReceived)
            .arg(component.size);
    t.nextEntry = *t.open + 1;
    t.open.reset();
    return {};
}

FirmwareReception::Reply FirmwareReception::endOfPackage(const Frame &frame)
{
    Transfer &t = *m_transfer;
    const auto &w = frame.param.words;
    if (t.open)
        return refuse(u"the package ended inside component %1"_s.arg(*t.open));
    if (w[4] != 0 || w[5] != 0 || !frame.payload.isEmpty())
        return refuse(u"an end of package with data"_s);
    if (t.received != w[3])
        return refuse(u"%1 bytes arrived, the packets announced %2"_s.arg(t.received).arg(w[3]));
    if (t.file && !t.file->commit())
        return refuse(u"cannot write the package: %1"_s.arg(t.file->errorString()));

    const FirmwareVersion version = t.package.version();
    m_log(u"firmware %1 received: %2 bytes%3; it is the software version from now on"_s.arg(
        version.toString(), QString::number(t.received),
        t.file ? u", kept as "_s + t.file->fileName() : u", not kept (no --firmware-dir)"_s));
    m_transfer.reset();
    Reply reply;
    reply.param.words[0] = W::DataReply;
    reply.param.words[1] = W::Accepted;
    reply.change
        = m_server->write({{SetupRecordMap::SoftwareVersionOffset, version.toBytes()}}, m_session);
    return reply;
}

std::optional<std::size_t> FirmwareReception::findComponent(quint32 type, quint32 size) const
{
    const auto &components = m_transfer->package.components();
    for (std::size_t i = m_transfer->nextEntry; i < components.size(); ++i) {
        if (components[i].type == type && components[i].size == size)
            return i;
    }
    return std::nullopt;
}

FirmwareReception::Reply FirmwareReception::refuse(const QString &problem)
{
    m_log(u"firmware packet refused: %1"_s.arg(problem));
    discard(u"after the refusal"_s);
    Reply reply;
    reply.param.words[0] = W::DataReply;
    reply.param.words[1] = W::Refused;
    return reply;
}

} // namespace sim
