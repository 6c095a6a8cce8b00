// SPDX-License-Identifier: GPL-3.0-or-later

#include "firmware/FirmwarePackage.h"
#include "firmware/PackageBuilder.h"
#include "setup/LittleEndian.h"
#include "tests/TestSupport.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <set>

using namespace Qt::StringLiterals;
using firmware::FirmwarePackage;
using firmware::FirmwareVersion;
using firmware::PackageBuilder;
using nelib::LittleEndian;
using Fault = FirmwarePackage::Fault;

namespace {

constexpr qsizetype Header = FirmwarePackage::HeaderSize;

// Version 2.1.0.3, data from 3080 (an 8-byte gap), components of 300 and
// 40 bytes: 3420 bytes in all.
QByteArray goodPackage()
{
    PackageBuilder builder(FirmwareVersion {{2, 1, 0, 3}});
    builder.setDataOffset(Header + 8);
    builder.addGeneratedComponent(2, FirmwareVersion {{2, 1, 0, 0}}, 300);
    builder.addComponent(0xF001, FirmwareVersion {{1, 0, 0, 7}}, QByteArray(40, 'x'));
    return builder.build();
}

} // namespace

TEST(FirmwarePackage, RefusesBrokenPackagesNamingTheFault)
{
    // Words of the header to change, then the length to cut the file to.
    constexpr qsizetype Count = FirmwarePackage::CountOffset;
    constexpr qsizetype Data = FirmwarePackage::DataOffsetOffset;
    constexpr qsizetype Size0 = FirmwarePackage::TableOffset + FirmwarePackage::EntrySizeOffset;
    constexpr qsizetype Size1 = Size0 + FirmwarePackage::EntrySize;
    constexpr qsizetype Whole = 3420;
    const struct
    {
        const char *what;
        std::vector<std::pair<qsizetype, quint32>> words;
        qsizetype length;
        Fault fault;
    } cases[] = {
        {"shorter than the header", {}, Header - 1, Fault::ShorterThanHeader},
        {"31 entries fill the header", {{Count, 31}}, Whole, Fault::None},
        {"32 entries", {{Count, 32}}, Whole, Fault::TableTooLarge},
        {"count overflows", {{Count, 0xFFFFFFFF}}, Whole, Fault::TableTooLarge},
        {"data inside the header", {{Data, 3071}}, Whole, Fault::DataOffsetInHeader},
        {"data past the end", {{Data, Whole + 1}}, Whole, Fault::DataOffsetPastEnd},
        {"no components, data offset at the end", {{Count, 0}, {Data, Whole}}, Whole, Fault::None},
        {"last component one byte too long", {{Size1, 41}}, Whole, Fault::ComponentsPastEnd},
        {"file cut inside the last component", {}, Whole - 1, Fault::ComponentsPastEnd},
        {"sizes beyond 32 bits",
         {{Size0, 0xFFFFFFFF}, {Size1, 0xFFFFFFFF}},
         Whole,
         Fault::ComponentsPastEnd},
    };
    QTemporaryDir dir;
    ASSERT_EQ(goodPackage().size(), Whole);
    for (const auto &c : cases) {
        SCOPED_TRACE(c.what);
        QByteArray bytes = goodPackage();
        for (const auto &[offset, value] : c.words)
            LittleEndian::setU32(bytes, offset, value);
        const QString path = dir.filePath(u"package.KRP"_s);
        testsupport::writeFile(path, bytes.first(c.length));
        Fault fault = Fault::None;
        const auto package = FirmwarePackage::open(path, &fault);
        EXPECT_EQ(fault, c.fault);
        EXPECT_EQ(bool(package), c.fault == Fault::None);
    }

    // A missing file the command line's test refuses as unreadable.
    Fault fault = Fault::None;
    EXPECT_FALSE(FirmwarePackage::open(dir.path(), &fault));
    EXPECT_EQ(fault, Fault::Unreadable);

    std::set<QString> messages;
    for (const Fault f :
         {Fault::Unreadable, Fault::ShorterThanHeader, Fault::TableTooLarge,
          Fault::DataOffsetInHeader, Fault::DataOffsetPastEnd, Fault::ComponentsPastEnd})
        messages.insert(FirmwarePackage::faultMessage(f));
    EXPECT_EQ(messages.size(), 6u) << "every fault has its own message";
    EXPECT_FALSE(messages.count(QString()));
}
