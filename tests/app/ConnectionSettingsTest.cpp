// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/ConnectionSettings.h"
#include "session/ConnectionRecord.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using Mode = ConnectionSettings::Mode;

namespace {

// The account's texts go to the record in the single-byte code page.
ConnectionSettings manual(const QString &address, const QString &port)
{
    ConnectionSettings settings;
    settings.address = address;
    settings.port = port;
    settings.userId = u"Jürgen"_s;
    settings.password = u"pässwort"_s;
    return settings;
}

// The port field keeps whatever MANUAL left in it.
ConnectionSettings ddns(const QString &domain, const QString &hostName)
{
    ConnectionSettings settings = manual(domain, u"1234"_s);
    settings.mode = Mode::Ddns;
    settings.hostName = hostName;
    return settings;
}

} // namespace

TEST(ConnectionSettings, FillsTheRecordOnlyFromValidEntries)
{
    struct Case
    {
        const char *name;
        ConnectionSettings settings;
        QByteArray address; // empty: refused
        quint32 port;
    };
    const Case cases[] = {
        {"lowest port", manual(u"10.0.0.7"_s, u"1"_s), "10.0.0.7", 1},
        {"highest port", manual(u"10.0.0.7"_s, u"65530"_s), "10.0.0.7", 65530},
        {"port past range", manual(u"10.0.0.7"_s, u"65531"_s), {}, 0},
        {"port not a number", manual(u"10.0.0.7"_s, u" "_s), {}, 0},
        {"address blank", manual(u"  "_s, u"9000"_s), {}, 0},
        {"address trimmed", manual(u" dvr.local "_s, u"9000"_s), "dvr.local", 9000},
        {"DDNS name blank", ddns(u"ddns.example.net"_s, u" "_s), {}, 0},
        {"DDNS name too long", ddns(QString(40, u'd'), QString(23, u'n')), {}, 0},
        {"DDNS name just fits", ddns(QString(40, u'd'), QString(22, u'n')),
         QByteArray(22, 'n') + '.' + QByteArray(40, 'd'), 9000},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.name);
        const bool accepted = !c.address.isEmpty();
        ConnectionRecord record;
        record.address = "untouched";
        ASSERT_EQ(c.settings.fillRecord(record), accepted);
        EXPECT_EQ(record.address, accepted ? c.address : "untouched"_ba);
        EXPECT_EQ(record.port, accepted ? c.port : 0u);
        EXPECT_EQ(record.memberId, accepted ? "J\xFCrgen"_ba : QByteArray());
        EXPECT_EQ(record.password, accepted ? "p\xE4sswort"_ba : QByteArray());
    }
}
