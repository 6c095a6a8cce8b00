#include "firmware/FirmwarePackage.h"
#include "firmware/PackageBuilder.h"
#include "setup/LittleEndian.h"
#include "tests/TestSupport.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <functional>
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

void setCount(QByteArray &bytes, quint32 count)
{
    LittleEndian::setU32(bytes, FirmwarePackage::CountOffset, count);
}

void setEntrySize(QByteArray &bytes, int entry, quint32 size)
{
    LittleEndian::setU32(bytes,
                         FirmwarePackage::TableOffset + FirmwarePackage::EntrySize * entry
                             + FirmwarePackage::EntrySizeOffset,
                         size);
}

} // namespace

TEST(FirmwarePackage, RefusesBrokenPackagesNamingTheFault)
{
    const struct
    {
        const char *what;
        std::function<void(QByteArray &)> change;
        Fault fault;
    } cases[] = {
        {"shorter than the header", [](QByteArray &b) { b.truncate(Header - 1); },
         Fault::ShorterThanHeader},
        {"empty", [](QByteArray &b) { b.clear(); }, Fault::ShorterThanHeader},
        {"31 entries fill the header", [](QByteArray &b) { setCount(b, 31); }, Fault::None},
        {"32 entries", [](QByteArray &b) { setCount(b, 32); }, Fault::TableTooLarge},
        {"count overflows", [](QByteArray &b) { setCount(b, 0xFFFFFFFF); }, Fault::TableTooLarge},
        {"data inside the header",
         [](QByteArray &b) { LittleEndian::setU32(b, FirmwarePackage::DataOffsetOffset, 3071); },
         Fault::DataOffsetInHeader},
        {"data offset 0",
         [](QByteArray &b) { LittleEndian::setU32(b, FirmwarePackage::DataOffsetOffset, 0); },
         Fault::DataOffsetInHeader},
        {"data past the end",
         [](QByteArray &b) {
             LittleEndian::setU32(b, FirmwarePackage::DataOffsetOffset, quint32(b.size() + 1));
         },
         Fault::DataOffsetPastEnd},
        {"no components, data offset at the end",
         [](QByteArray &b) {
             setCount(b, 0);
             LittleEndian::setU32(b, FirmwarePackage::DataOffsetOffset, quint32(b.size()));
         },
         Fault::None},
        {"last component one byte too long", [](QByteArray &b) { setEntrySize(b, 1, 41); },
         Fault::ComponentsPastEnd},
        {"file cut inside the last component", [](QByteArray &b) { b.chop(1); },
         Fault::ComponentsPastEnd},
        {"sizes beyond 32 bits",
         [](QByteArray &b) {
             setEntrySize(b, 0, 0xFFFFFFFF);
             setEntrySize(b, 1, 0xFFFFFFFF);
         },
         Fault::ComponentsPastEnd},
    };
    QTemporaryDir dir;
    for (const auto &c : cases) {
        SCOPED_TRACE(c.what);
        QByteArray bytes = goodPackage();
        c.change(bytes);
        const QString path = dir.filePath(u"package.KRP"_s);
        testsupport::writeFile(path, bytes);
        Fault fault = Fault::None;
        const auto package = FirmwarePackage::open(path, &fault);
        EXPECT_EQ(fault, c.fault);
        EXPECT_EQ(bool(package), c.fault == Fault::None);
    }

    Fault fault = Fault::None;
    EXPECT_FALSE(FirmwarePackage::open(dir.filePath(u"missing.KRP"_s), &fault));
    EXPECT_EQ(fault, Fault::Unreadable);
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
