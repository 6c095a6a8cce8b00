// SPDX-License-Identifier: GPL-3.0-or-later

#include "pages/system/CRemoteSystemConfigDlg.h"

#include "setup/ExportFile.h"
#include "setup/Fields.h"
#include "tests/TestSupport.h"
#include "tests/pages/PageTestSupport.h"

#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using pagetest::named;
using setup::ExportFile;
using setup::FactoryDefaults;
using setup::FieldTable;

namespace {

constexpr quint32 Model = 77;

QString shown(const QWidget *page, const QString &name)
{
    const auto *value = named<QLabel>(page, name);
    return value ? value->text() : u"<no value named %1>"_s.arg(name);
}

QString fileNameField(const QWidget *page)
{
    return named<QLineEdit>(page, u"File Name"_s)->text();
}

QString asShown(const RecorderTime &t)
{
    return QString::asprintf("%04u-%02u-%02u %02u:%02u:%02u", t.year, t.month, t.day, t.hour,
                             t.minute, t.second);
}

// The dialog's file name entry: the field its "File Name" label stands for.
QLineEdit *fileNameEntry(const QFileDialog *dialog)
{
    for (const QLabel *label : dialog->findChildren<QLabel *>()) {
        if (label->text() == u"File Name"_s)
            return qobject_cast<QLineEdit *>(label->buddy());
    }
    return nullptr;
}

class ConfigPage : public ::testing::Test
{
protected:
    void SetUp() override
    {
        CSetupPage::setDefaultSetupPath(testsupport::dataDir() + u"/DEFDVRSETUP.DAT"_s);
        page.show();
    }
    void TearDown() override { CSetupPage::setDefaultSetupPath({}); }

    QFileDialog *clickForDialog(const QString &button)
    {
        pagetest::button(&page, button)->click();
        return page.openFileDialog();
    }

    SessionHarness window; // records the message boxes and session messages
    CRemoteSystemConfigDlg page;
    QTemporaryDir dir;
};

} // namespace

// The time follows the worker's running clock, from its first answer on:
// every value it shows is one the clock had.
TEST_F(ConfigPage, InformationShowsTheRecorderOfEachLoad)
{
    const QString names[]
        = {u"Model"_s,        u"S/W Version"_s,   u"Channels"_s,     u"Video Standard"_s,
           u"Alarm Inputs"_s, u"Alarm Outputs"_s, u"Audio Inputs"_s, u"Disks"_s};
    const SimProcess custom({u"--channels"_s, u"4"_s, u"--video"_s, u"pal"_s, u"--model"_s, u"77"_s,
                             u"--version"_s, u"2.3.4.5"_s});
    const SimProcess plain;
    const std::pair<const SimProcess *, QStringList> recorders[] = {
        {&custom, {u"77"_s, u"2.3.4.5"_s, u"4"_s, u"PAL"_s, u"4"_s, u"1"_s, u"4"_s, u"1"_s}},
        {&plain,
         {QString::number(FactoryDefaults::ModelId), u"1.0.0.0"_s, u"16"_s, u"NTSC"_s, u"16"_s,
          u"4"_s, u"4"_s, u"2"_s}},
    };
    for (const auto &[sim, values] : recorders) {
        window.worker.reset();
        window.connect(sim->port());
        ASSERT_TRUE(testsupport::waitFor([&] { return window.worker->setupReceived() == 1; }));
        page.load(window.worker->mirror(), int(window.record.channelCount));
        for (int k = 0; k < 8; ++k)
            EXPECT_EQ(shown(&page, names[k]), values[k]) << names[k].toStdString();
    }

    ASSERT_TRUE(testsupport::waitFor([&] { return window.worker->clockValid(); }));
    QStringList clockValues {asShown(window.worker->clock())};
    const QString first = shown(&page, u"Recorder Time"_s);
    EXPECT_TRUE(clockValues.contains(first)) << first.toStdString();
    EXPECT_TRUE(testsupport::waitFor([&] {
        clockValues.append(asShown(window.worker->clock()));
        return shown(&page, u"Recorder Time"_s) != first;
    }));
    EXPECT_TRUE(clockValues.contains(shown(&page, u"Recorder Time"_s)));
    EXPECT_TRUE(window.messages.isEmpty()) << window.messages.join(u" | "_s).toStdString();
}

// Leaving a dialog other than by OK does nothing; Export writes the record
// under the chosen name; Import reports a file of another model or none
// (the refusals themselves are the transfer's) without a question; Factory
// Default restores the recorder once the operator says Yes.
TEST_F(ConfigPage, FileDialogsAndFactoryDefault)
{
    QByteArray record = FactoryDefaults::record(Model);
    FieldTable::setBytes(record, setup::fields::camera::title, "Lobby");
    SimProcess sim({u"--model"_s, u"77"_s}, record);
    ASSERT_TRUE(pagetest::attach(window, sim, page));
    testsupport::writeFile(dir.filePath(u"good.dat"_s), ExportFile::build(record));
    for (const QString &button : {u"Import"_s, u"Export"_s}) {
        SCOPED_TRACE(button.toStdString());
        QFileDialog *dialog = clickForDialog(button);
        ASSERT_NE(dialog, nullptr);
        fileNameEntry(dialog)->setText(dir.filePath(u"good.dat"_s));
        dialog->reject();
        EXPECT_EQ(page.openFileDialog(), nullptr);
    }
    EXPECT_TRUE(window.messages.isEmpty()) << window.messages.join(u" | "_s).toStdString();
    EXPECT_TRUE(fileNameField(&page).isEmpty());
    EXPECT_EQ(QDir(dir.path()).entryList(QDir::Files), QStringList {u"good.dat"_s});

    QFileDialog *dialog = clickForDialog(u"Export"_s);
    ASSERT_NE(dialog, nullptr);
    EXPECT_EQ(dialog->acceptMode(), QFileDialog::AcceptSave);
    EXPECT_EQ(dialog->nameFilters(), QStringList {u"Data File(*.dat)"_s});
    EXPECT_EQ(dialog->defaultSuffix(), u"dat"_s);
    EXPECT_FALSE(dialog->testOption(QFileDialog::DontConfirmOverwrite));
    EXPECT_EQ(fileNameEntry(dialog)->text(), u"Export_SetupData"_s);
    EXPECT_EQ(dialog->labelText(QFileDialog::Accept), u"Save"_s);
    // The default suffix completes a name typed without one.
    dialog->selectFile(dir.filePath(u"site-a"_s));
    QMetaObject::invokeMethod(dialog, "accept");
    const QString path = dir.filePath(u"site-a.dat"_s);
    EXPECT_EQ(testsupport::readFile(path), ExportFile::build(window.worker->mirror()));
    EXPECT_EQ(window.messages, QStringList {u"Export completed"_s});
    EXPECT_EQ(fileNameField(&page), QDir::toNativeSeparators(path));
    // Offered again, the proposed name is back.
    dialog = clickForDialog(u"Export"_s);
    ASSERT_NE(dialog, nullptr);
    EXPECT_EQ(fileNameEntry(dialog)->text(), u"Export_SetupData"_s);
    dialog->reject();

    const QString otherModel = dir.filePath(u"other-model.dat"_s);
    testsupport::writeFile(otherModel, ExportFile::build(FactoryDefaults::record(Model + 1)));
    const std::pair<QString, QString> refusals[] = {
        {otherModel, u"This file can not be imported."_s},
        {dir.filePath(u"missing.dat"_s), u"File does not exist"_s},
    };
    for (const auto &[file, message] : refusals) {
        SCOPED_TRACE(file.toStdString());
        window.messages.clear();
        dialog = clickForDialog(u"Import"_s);
        ASSERT_NE(dialog, nullptr);
        EXPECT_EQ(dialog->acceptMode(), QFileDialog::AcceptOpen);
        EXPECT_EQ(dialog->nameFilters(), QStringList {u"Data Files (*.dat *.DAT)"_s});
        EXPECT_EQ(dialog->labelText(QFileDialog::Accept), u"Open"_s);
        dialog->selectFile(file);
        QMetaObject::invokeMethod(dialog, "accept");
        EXPECT_EQ(window.messages, QStringList {message});
        EXPECT_EQ(fileNameField(&page), QDir::toNativeSeparators(file));
    }

    window.messages.clear();
    pagetest::button(&page, u"Factory Default"_s)->click();
    ASSERT_NE(page.openQuestion(), nullptr);
    page.openQuestion()->button(QMessageBox::Yes)->click();
    ASSERT_TRUE(testsupport::waitFor(
        [&] { return window.messages.contains(u"Default Setup Success"_s); }, 60000))
        << window.messages.join(u" | "_s).toStdString();
    EXPECT_EQ(window.messages, QStringList {u"Default Setup Success"_s});
    EXPECT_EQ(FieldTable::text(sim.storedRecord(), setup::fields::camera::title), "CAM 01");
    EXPECT_EQ(window.sessionMessages, std::vector<int> {SessionMessage::SetupRestored});
}
