// SPDX-License-Identifier: GPL-3.0-or-later

#include "tests/app/MainWindowFixture.h"

#include "app/ConnectionPanel.h"
#include "app/PageCatalog.h"
#include "app/PageHost.h"
#include "app/RecorderTypeDialog.h"
#include "pages/system/CRemoteSystemConfigDlg.h"
#include "session/CWork.h"
#include "setup/ExportFile.h"
#include "setup/FactoryDefaults.h"
#include "setup/FieldTable.h"
#include "setup/Fields.h"
#include "setup/LittleEndian.h"
#include "setup/SetupFiles.h"

#include <QComboBox>
#include <QDir>
#include <QFileInfo>
#include <QMessageBox>
#include <QSpinBox>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using setup::FieldTable;

class OfflineSetupTest : public MainWindowFixture
{
protected:
    // OPEN FILE on `path`, answering the recorder's channel count and video
    // standard as the operator does; false when the file was refused.
    bool open(const QString &path, int channels = 16, int videoStandard = 0)
    {
        RecorderTypeDialog *dialog = window->openSetupFile(path);
        if (!dialog)
            return false;
        dialog->findChild<QSpinBox *>()->setValue(channels);
        dialog->findChild<QComboBox *>()->setCurrentIndex(videoStandard);
        dialog->accept();
        return window->fileOpen();
    }

    QTemporaryDir dir;
};

TEST_F(OfflineSetupTest, OnlyWholeSetupFilesOpenAndEveryPageShowsTheirRecord)
{
    // Bytes no page would produce by chance: every page must show them.
    const QByteArray record = testsupport::patternedRecord(7);
    const QByteArray exportFile = setup::ExportFile::build(record);
    const auto withWord = [](QByteArray bytes, int offset, quint32 value) {
        nelib::LittleEndian::setU32(bytes, offset, value);
        return bytes;
    };
    const struct
    {
        const char *name;
        QByteArray bytes; // null: no file
        QString reason;
    } refused[] = {
        {"missing", {}, u"it cannot be read"_s},
        {"folder", {}, u"it is a folder"_s},
        {"short export", exportFile.chopped(1),
         u"it is 15135 bytes, but an export file is 15136 bytes and a default setup file 15148 "
         u"bytes"_s},
        {"export of another layout", withWord(exportFile, 0, 0x00010012),
         u"it was written for another layout version"_s},
        {"export without its mark", withWord(exportFile, 8, 0),
         u"its header is not that of a setup file"_s},
        {"default of another layout", withWord(record, 0, 0x00010012),
         u"it was written for another layout version"_s},
        {"default without its record size", withWord(record, 8, 0),
         u"its header is not that of a setup file"_s},
    };
    QDir(dir.path()).mkdir(u"folder"_s);
    for (const auto &r : refused) {
        SCOPED_TRACE(r.name);
        messages.clear();
        const QString path = dir.filePath(QString::fromLatin1(r.name));
        if (!r.bytes.isNull())
            testsupport::writeFile(path, r.bytes);
        EXPECT_FALSE(open(path));
        EXPECT_EQ(messages, QStringList {u"%1 cannot be opened: %2."_s.arg(path, r.reason)});
        EXPECT_EQ(window->worker(), nullptr);
        EXPECT_EQ(window->pageHost()->currentEntry(), -1);
        EXPECT_TRUE(waitForDisconnectedLook());
    }
    messages.clear();

    // An export file and a default setup file hold the same settings; the
    // last answers are offered again, and nothing opens without them.
    const QString exportPath = dir.filePath(u"shop.dat"_s);
    const QString defaultPath = dir.filePath(u"DEFDVRSETUP.DAT"_s);
    testsupport::writeFile(exportPath, exportFile);
    testsupport::writeFile(defaultPath, record);
    ConnectionPanel *panel = window->connectionPanel();
    for (const auto &[path, channels, video] :
         {std::tuple {defaultPath, 16, 0}, std::tuple {exportPath, 4, 1}}) {
        SCOPED_TRACE(path.toStdString());
        ASSERT_TRUE(open(path, channels, video));
        EXPECT_EQ(std::pair(panel->settings().fileChannels, panel->settings().fileVideoStandard),
                  std::pair(channels, video));
        // Only the software version is not in an export file.
        QByteArray expected = record;
        if (path == exportPath)
            FieldTable::setBytes(expected, setup::fields::header::softwareVersion,
                                 QByteArray(4, '\0'));
        EXPECT_EQ(window->worker()->mirror(), expected);
        EXPECT_EQ(window->worker()->videoStandard(), video);
        EXPECT_FALSE(window->fileUnsaved());

        const QString name = QFileInfo(path).fileName();
        EXPECT_EQ(window->windowTitle(), name + u" - Remote Setup / System / Authority"_s);
        EXPECT_FALSE(panel->connectButton()->isEnabled() || panel->openFileButton()->isEnabled());
        EXPECT_TRUE(panel->saveFileButton()->isEnabled());
        EXPECT_TRUE(labelTexts(panel).contains(name));
        PageHost *host = window->pageHost();
        for (int i = 0; i < PageCatalog::count(); ++i) {
            CSetupPage *page = host->page(i);
            if (!page)
                continue;
            const bool recorderOnly = PageCatalog::entry(i).can(PageCatalog::NeedsRecorder);
            EXPECT_EQ(page->isEnabled(), !recorderOnly) << i;
            if (page->section()) {
                EXPECT_EQ(page->sectionBuffer(),
                          expected.sliced(page->recordOffset(), page->sectionBuffer().size()))
                    << i;
            }
            EXPECT_EQ(page->channelCount(), channels) << i;
        }
        // Factory Default acts on the open record at once: nothing to ask.
        CSetupPage::setDefaultSetupPath(testsupport::dataDir() + u"/DEFDVRSETUP.DAT"_s);
        auto *config = static_cast<CRemoteSystemConfigDlg *>(showPage("Configuration"));
        control<QPushButton>(config, u"Factory Default"_s)->click();
        EXPECT_EQ(config->openQuestion(), nullptr);
        EXPECT_EQ(messages, QStringList {u"Default Setup Success"_s});
        messages.clear();
        EXPECT_EQ(window->worker()->mirror(),
                  setup::SetupFiles::defaultRecord(setup::FactoryDefaults::record(), expected));
        EXPECT_TRUE(window->fileUnsaved());
        CSetupPage::setDefaultSetupPath({});

        // Import replaces the open record at once; a cut file is refused.
        const QString cutPath = dir.filePath(u"cut.dat"_s);
        testsupport::writeFile(cutPath, exportFile.left(1000));
        const QByteArray imported
            = setup::SetupFiles::importedRecord(exportFile, window->worker()->mirror());
        for (const auto &[file, message] :
             {std::pair {cutPath, u"This file can not be imported."_s},
              std::pair {exportPath, u"Import Success"_s}}) {
            control<QPushButton>(config, u"Import"_s)->click();
            QFileDialog *dialog = config->openFileDialog();
            ASSERT_NE(dialog, nullptr);
            dialog->selectFile(file);
            QMetaObject::invokeMethod(dialog, "accept");
            EXPECT_EQ(messages, QStringList {message});
            messages.clear();
        }
        EXPECT_EQ(window->worker()->mirror(), imported);

        // DISCONNECT closes the file, once the operator chooses not to save the change.
        QTest::mouseClick(panel->disconnectButton(), Qt::LeftButton);
        ASSERT_NE(window->openQuestion(), nullptr);
        EXPECT_TRUE(window->openQuestion()->text().contains(name));
        window->openQuestion()->button(QMessageBox::Discard)->click();
        EXPECT_TRUE(waitForDisconnectedLook());
        EXPECT_FALSE(window->fileOpen());
    }
    RecorderTypeDialog *again = window->openSetupFile(exportPath);
    ASSERT_NE(again, nullptr);
    EXPECT_EQ(std::pair(again->channels(), again->videoStandard()), std::pair(4, 1));
    again->reject();
    EXPECT_FALSE(window->fileOpen());
    EXPECT_TRUE(messages.isEmpty()) << messages.join(u" | "_s).toStdString();
    EXPECT_TRUE(exitCodes.empty());
}

TEST_F(OfflineSetupTest, PageSavesChangeTheirSectionAndSaveFileWritesWhatExportWrites)
{
    const QByteArray original = setup::FactoryDefaults::record();
    ASSERT_TRUE(open(testsupport::dataDir() + u"/DEFDVRSETUP.DAT"_s));

    // The window's Save changes the page's section of the record alone,
    // with nothing to announce.
    CSetupPage *camera = showPage("Camera Setup");
    auto *title = control<QLineEdit>(camera, u"Camera Title 03"_s);
    title->selectAll();
    QTest::keyClicks(title, u"Loading Bay"_s);
    QTest::mouseClick(window->saveButton(), Qt::LeftButton);
    EXPECT_FALSE(camera->isModified());
    QByteArray expected = original;
    FieldTable::setBytes(expected, setup::fields::camera::title, "Loading Bay", 2);
    EXPECT_EQ(window->worker()->mirror(), expected);
    EXPECT_TRUE(messages.isEmpty()) << messages.join(u" | "_s).toStdString();

    // A file that cannot be written is told and changes nothing.
    const QString path = dir.filePath(u"site.dat"_s);
    for (const QString &bad : {dir.path(), dir.filePath(u"missing/site.dat"_s)}) {
        messages.clear();
        EXPECT_FALSE(window->saveSetupFile(bad));
        ASSERT_EQ(messages.size(), 1);
        EXPECT_TRUE(messages.first().startsWith(u"The setup cannot be saved to %1: "_s.arg(bad)));
    }
    EXPECT_TRUE(window->fileUnsaved());

    // Closing asks while the record differs from the file; after SAVE FILE
    // it does not.
    window->close();
    ASSERT_NE(window->openQuestion(), nullptr);
    window->openQuestion()->button(QMessageBox::Cancel)->click();
    EXPECT_TRUE(window->isVisible());
    messages.clear();
    // SAVE FILE asks for a name the first time only; a default setup file
    // is never offered for the export file.
    QPushButton *saveFile = window->connectionPanel()->saveFileButton();
    QTest::mouseClick(saveFile, Qt::LeftButton);
    QFileDialog *dialog = window->openFileDialog();
    ASSERT_NE(dialog, nullptr);
    EXPECT_EQ(QFileInfo(dialog->selectedFiles().value(0)).fileName(), u"Export_SetupData.dat"_s);
    dialog->selectFile(path);
    QMetaObject::invokeMethod(dialog, "accept");
    EXPECT_FALSE(window->fileUnsaved());
    testsupport::writeFile(path, "overwritten");
    QTest::mouseClick(saveFile, Qt::LeftButton);
    EXPECT_EQ(window->openFileDialog(), nullptr);
    EXPECT_EQ(window->windowTitle(), u"site.dat - Remote Setup / Camera / Setup"_s);
    EXPECT_EQ(QFileInfo(path).permissions() & ~(QFile::ReadUser | QFile::WriteUser),
              QFile::ReadOwner | QFile::WriteOwner);

    // Byte for byte what the command line exports from a recorder holding the record.
    SimProcess sim({}, expected);
    const QString exported = dir.filePath(u"exported.dat"_s);
    const testsupport::CliRun run = sim.cli({u"export"_s, exported});
    ASSERT_EQ(run.exitCode, 0) << run.err.toStdString();
    EXPECT_EQ(testsupport::readFile(path), testsupport::readFile(exported));

    // Save in the closing question writes the file before the window goes.
    title->selectAll();
    QTest::keyClicks(title, u"Till"_s);
    QTest::mouseClick(window->saveButton(), Qt::LeftButton);
    window->close();
    ASSERT_NE(window->openQuestion(), nullptr);
    window->openQuestion()->button(QMessageBox::Save)->click();
    EXPECT_FALSE(window->isVisible());
    EXPECT_NE(testsupport::readFile(path), testsupport::readFile(exported));
    EXPECT_TRUE(messages.isEmpty()) << messages.join(u" | "_s).toStdString();
}
