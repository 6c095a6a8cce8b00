// SPDX-License-Identifier: GPL-3.0-or-later

#include "sim/RecorderStore.h"
#include "setup/FactoryDefaults.h"
#include "tests/TestSupport.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

using sim::RecorderStore;

constexpr qsizetype RecordSize = 15148;

// What a new record takes from the options (model, version, Admin's
// password) the command line's tests read back from recorder-sim.
TEST(RecorderStore, CreatesMissingFilesFromTheDefaultsAndKeepsExistingOnes)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("plain.dat"));
    RecorderStore created;
    QString error;
    ASSERT_TRUE(created.open(path, {}, &error)) << error.toStdString();
    EXPECT_TRUE(created.created());
    EXPECT_EQ(testsupport::readFile(path), setup::FactoryDefaults::record());
    // It holds passwords.
    EXPECT_EQ(QFile::permissions(path) & ~QFileDevice::Permissions(0x7700),
              QFileDevice::Permissions());

    RecorderStore reopened;
    ASSERT_TRUE(reopened.open(path, {7, std::array<quint8, 4> {9, 9, 9, 9}, "other"}, &error));
    EXPECT_FALSE(reopened.created());
    EXPECT_EQ(reopened.record(), setup::FactoryDefaults::record());
}

TEST(RecorderStore, RefusesFilesOfAnyOtherSize)
{
    QTemporaryDir dir;
    for (const qsizetype size : {qsizetype(0), RecordSize - 1, RecordSize + 1, 2 * RecordSize}) {
        SCOPED_TRACE(size);
        const QString path = dir.filePath(QStringLiteral("size-%1.dat").arg(size));
        const QByteArray content(size, 'q');
        testsupport::writeFile(path, content);
        RecorderStore store;
        QString error;
        EXPECT_FALSE(store.open(path, {}, &error));
        // recorder-sim's own test reads the message.
        EXPECT_EQ(testsupport::readFile(path), content);
    }
}

TEST(RecorderStore, AReaderSeesOnlyWholeRecords)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("rec.dat"));
    RecorderStore store;
    QString error;
    ASSERT_TRUE(store.open(path, {}, &error));
    const QByteArray first = store.record();
    const QByteArray second = QByteArray(RecordSize - 32, 'n').prepend(first.left(32));
    EXPECT_FALSE(store.write(RecordSize - 1, "ab"));

    std::atomic<bool> stop = false;
    std::atomic<int> torn = 0;
    std::atomic<int> reads = 0;
    std::thread reader([&] {
        while (!stop) {
            QFile file(path);
            if (!file.open(QIODevice::ReadOnly) || !QList {first, second}.contains(file.readAll()))
                ++torn;
            ++reads;
        }
    });
    for (int i = 0; i < 200 || reads < 50; ++i) {
        ASSERT_TRUE(store.write(32, QByteArrayView(i % 2 ? first : second).sliced(32)));
        EXPECT_EQ(testsupport::readFile(path), i % 2 ? second : first);
        ASSERT_TRUE(store.save(&error)) << error.toStdString();
    }
    stop = true;
    reader.join();
    EXPECT_EQ(torn, 0);
}
