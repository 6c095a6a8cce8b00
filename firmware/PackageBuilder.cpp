// SPDX-License-Identifier: GPL-3.0-or-later

#include "firmware/PackageBuilder.h"

#include "firmware/FirmwarePackage.h"
#include "setup/LittleEndian.h"

#include <QBuffer>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <limits>

using namespace Qt::StringLiterals;
using nelib::LittleEndian;

namespace firmware {

namespace {

constexpr qint64 BlockSize = 64 * 1024;

// xorshift64*: cheap, and the same bytes on every platform.
class PseudoRandom
{
public:
    explicit PseudoRandom(quint64 seed)
        : m_state(seed ? seed : 1)
    { }

    void fill(char *out, qint64 length)
    {
        for (qint64 i = 0; i < length; ++i) {
            if (m_left == 0) {
                m_state ^= m_state >> 12;
                m_state ^= m_state << 25;
                m_state ^= m_state >> 27;
                m_bits = m_state * 0x2545F4914F6CDD1DULL;
                m_left = 8;
            }
            out[i] = char(m_bits & 0xFF);
            m_bits >>= 8;
            --m_left;
        }
    }

private:
    quint64 m_state;
    quint64 m_bits = 0;
    int m_left = 0;
};

bool writeAll(QIODevice &out, const char *data, qint64 length, QString *error)
{
    if (out.write(data, length) == length)
        return true;
    *error = out.errorString();
    return false;
}

} // namespace

PackageBuilder::PackageBuilder(FirmwareVersion version)
    : m_version(version)
    , m_dataOffset(FirmwarePackage::HeaderSize)
{ }

void PackageBuilder::addComponent(quint32 type, FirmwareVersion version, const QByteArray &data)
{
    m_components.push_back({type, version, quint32(data.size()), Source::Bytes, data, {}});
}

void PackageBuilder::addGeneratedComponent(quint32 type, FirmwareVersion version, quint32 size)
{
    m_components.push_back({type, version, size, Source::Generated, {}, {}});
}

bool PackageBuilder::addFileComponent(quint32 type, FirmwareVersion version, const QString &path,
                                      QString *error)
{
    const QFileInfo info(path);
    if (!info.isFile() || !info.isReadable()) {
        *error = u"cannot read %1"_s.arg(path);
        return false;
    }
    if (info.size() > std::numeric_limits<quint32>::max()) {
        *error = u"%1 is larger than a component can be (4 GiB)"_s.arg(path);
        return false;
    }
    m_components.push_back({type, version, quint32(info.size()), Source::File, {}, path});
    return true;
}

QByteArray PackageBuilder::header() const
{
    QByteArray header(FirmwarePackage::HeaderSize, '\0');
    LittleEndian::setU32(header, FirmwarePackage::DataOffsetOffset, m_dataOffset);
    header.replace(FirmwarePackage::VersionOffset, 4, m_version.toBytes());
    LittleEndian::setU32(header, FirmwarePackage::CountOffset, quint32(m_components.size()));
    for (std::size_t i = 0; i < m_components.size(); ++i) {
        const qsizetype entry
            = FirmwarePackage::TableOffset + FirmwarePackage::EntrySize * qsizetype(i);
        if (entry + FirmwarePackage::EntrySize > header.size())
            break;
        const Component &c = m_components[i];
        LittleEndian::setU32(header, entry + FirmwarePackage::EntryTypeOffset, c.type);
        header.replace(entry + FirmwarePackage::EntryVersionOffset, 4, c.version.toBytes());
        LittleEndian::setU32(header, entry + FirmwarePackage::EntrySizeOffset, c.size);
    }
    return header;
}

bool PackageBuilder::write(const QString &path, QString *error) const
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly)) {
        *error = u"cannot write %1: %2"_s.arg(path, file.errorString());
        return false;
    }
    if (!writeTo(file, error))
        return false;
    if (!file.commit()) {
        *error = u"cannot write %1: %2"_s.arg(path, file.errorString());
        return false;
    }
    return true;
}

QByteArray PackageBuilder::build() const
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QString error;
    writeTo(buffer, &error);
    return bytes;
}

bool PackageBuilder::writeTo(QIODevice &out, QString *error) const
{
    if (qsizetype(m_components.size()) > FirmwarePackage::MaxComponents) {
        *error = u"a package holds at most %1 components"_s.arg(FirmwarePackage::MaxComponents);
        return false;
    }
    const QByteArray head = header();
    if (!writeAll(out, head.constData(), head.size(), error))
        return false;
    if (m_dataOffset > head.size()) {
        const QByteArray gap(m_dataOffset - head.size(), '\0');
        if (!writeAll(out, gap.constData(), gap.size(), error))
            return false;
    }
    for (std::size_t i = 0; i < m_components.size(); ++i) {
        if (!writeComponent(i, out, error))
            return false;
    }
    return true;
}

bool PackageBuilder::writeComponent(std::size_t index, QIODevice &out, QString *error) const
{
    const Component &c = m_components[index];
    switch (c.source) {
    case Source::Bytes:
        return writeAll(out, c.bytes.constData(), c.bytes.size(), error);
    case Source::Generated: {
        PseudoRandom random((quint64(index + 1) << 48) ^ (quint64(c.type) << 16) ^ c.size);
        QByteArray block(BlockSize, '\0');
        for (qint64 left = c.size; left > 0;) {
            const qint64 length = std::min(left, BlockSize);
            random.fill(block.data(), length);
            if (!writeAll(out, block.constData(), length, error))
                return false;
            left -= length;
        }
        return true;
    }
    case Source::File: {
        QFile in(c.file);
        if (!in.open(QIODevice::ReadOnly)) {
            *error = u"cannot read %1: %2"_s.arg(c.file, in.errorString());
            return false;
        }
        QByteArray block(BlockSize, '\0');
        for (qint64 left = c.size; left > 0;) {
            const qint64 length = in.read(block.data(), std::min(left, BlockSize));
            if (length <= 0) {
                *error = u"%1 changed while the package was written"_s.arg(c.file);
                return false;
            }
            if (!writeAll(out, block.constData(), length, error))
                return false;
            left -= length;
        }
        return true;
    }
    }
    return false;
}

} // namespace firmware
