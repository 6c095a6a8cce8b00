// SPDX-License-Identifier: GPL-3.0-or-later

#include "setup/SetupFiles.h"
#include "setup/ExportFile.h"
#include "setup/FactoryDefaults.h"
#include "setup/LittleEndian.h"
#include "tests/TestSupport.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using nelib::LittleEndian;
using setup::ExportFile;
using setup::SetupFiles;
using setup::SetupRecordMap;
using Fault = setup::SetupFiles::ImportFault;
using Faults = setup::SetupFiles::ImportFaults;

namespace {

QByteArray patterned(int seed)
{
    return testsupport::patternedRecord(seed, SetupRecordMap::HeaderSize);
}

QByteArray withU32(QByteArray bytes, qsizetype offset, quint32 value)
{
    LittleEndian::setU32(bytes, offset, value);
    return bytes;
}

// What a file operation should make of `record`: the bytes of `image` (a
// record's first bytes, zeros after them), with the recorder's own parts
// put back: the header, block F and, for an import, the monitor settings.
QByteArray expectedRecord(const QByteArray &image, const QByteArray &record, bool keepMonitor)
{
    QByteArray expected(SetupRecordMap::RecordSize, '\0');
    expected.replace(0, image.size(), image);
    return testsupport::keepingRecordersOwn(expected, record, keepMonitor);
}

} // namespace

TEST(SetupFiles, ImportChecksCountEachFaultOnce)
{
    const QByteArray record = patterned(1);
    const QByteArray file = ExportFile::build(patterned(2));
    const QByteArray otherModel = setup::FactoryDefaults::record(0x00160002);
    struct Case
    {
        const char *what;
        QByteArray file;
        QByteArray record;
        Faults faults;
    };
    const Case cases[] = {
        {"a file of the same model", file, record, {}},
        {"only the first 20 bytes", file.first(20), record, {}},
        {"file version", withU32(file, 0, 0x00010012), record, Fault::Version},
        {"record version", file, withU32(record, 0, 0x00010010), Fault::Version},
        {"both versions", withU32(file, 0, 0), withU32(record, 0, 0), Fault::Version},
        {"first mark", withU32(file, 4, 0x2B4D4B4A), record, Fault::FirstMark},
        {"second mark", withU32(file, 8, 0x41524756), record, Fault::SecondMark},
        {"another model", ExportFile::build(otherModel), record, Fault::Identity},
        {"no record yet", file, QByteArray(), Fault::Version | Fault::Identity},
        {"cut inside the header", file.first(14), record, Fault::Identity},
        {"empty file", QByteArray(), record,
         Fault::Version | Fault::FirstMark | Fault::SecondMark | Fault::Identity},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.what);
        EXPECT_EQ(SetupFiles::importFaults(c.file, c.record), c.faults);
    }
}

TEST(SetupFiles, FilesReplaceAllButTheRecordersOwnParts)
{
    QByteArray record = patterned(1);
    LittleEndian::setU32(record, 4, 0x01020304); // header bytes no file may replace
    const QByteArray source = withU32(patterned(2), 16, 0x00990001);
    const QByteArray file = ExportFile::build(source);
    struct Case
    {
        const char *what;
        QByteArray result;
        QByteArray expected;
    };
    // The monitor settings of `source` differ from the record's: a default takes them.
    const Case cases[] = {
        {"import", SetupFiles::importedRecord(file, record), expectedRecord(source, record, true)},
        {"truncated import", SetupFiles::importedRecord(file.first(720), record),
         expectedRecord(source.first(732), record, true)},
        {"default", SetupFiles::defaultRecord(source, record),
         expectedRecord(source, record, false)},
        {"short default", SetupFiles::defaultRecord(source.first(1000), record),
         expectedRecord(source.first(1000), record, false)},
        {"import without a whole record", SetupFiles::importedRecord(file, record.first(100)), {}},
        {"default without a whole record", SetupFiles::defaultRecord(source, {}), {}},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.what);
        EXPECT_EQ(c.result, c.expected);
    }
}
