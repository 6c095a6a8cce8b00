#include "pages/system/CRemoteSystemConfigDlg.h"

#include "app/PageCatalog.h"
#include "app/PageHost.h"
#include "app/PageMenuBar.h"
#include "setup/ExportFile.h"
#include "setup/Fields.h"
#include "setup/LittleEndian.h"
#include "tests/TestSupport.h"
#include "tests/app/MainWindowFixture.h"
#include "tests/pages/PageTestSupport.h"

#include <QDialogButtonBox>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using nelib::LittleEndian;
using pagetest::named;
using setup::ExportFile;
using setup::FactoryDefaults;
using setup::FieldTable;

namespace {

constexpr quint32 Model = 77;
constexpr int CameraOffset = 1300;

// A record of model 77 whose first camera is called `title`.
QByteArray recordWithTitle(const QByteArray &title)
{
    QByteArray record = FactoryDefaults::record(Model);
    FieldTable::setBytes(record, setup::fields::camera::title, title);
    return record;
}

QByteArray firstTitle(const QByteArray &record)
{
    return FieldTable::text(record, setup::fields::camera::title);
}

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

QPushButton *acceptButton(const QFileDialog *dialog)
{
    for (const QDialogButtonBox *box : dialog->findChildren<QDialogButtonBox *>()) {
        for (QAbstractButton *button : box->buttons()) {
            if (box->buttonRole(button) == QDialogButtonBox::AcceptRole)
                return qobject_cast<QPushButton *>(button);
        }
    }
    return nullptr;
}

// Picks `path` in the open dialog, so that no earlier choice stays
// selected, and presses its accept button.
void choose(QFileDialog *dialog, const QString &path)
{
    dialog->selectFile(path);
    acceptButton(dialog)->click();
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

    // Connects to `sim` and fills the page as the main window does.
    ::testing::AssertionResult connectTo(const SimProcess &sim)
    {
        if (!pagetest::attach(window, sim, page))
            return ::testing::AssertionFailure() << "no setup record and clock";
        return ::testing::AssertionSuccess();
    }

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

TEST_F(ConfigPage, InformationShowsTheRecorderOfEachLoad)
{
    const QString names[]
        = {u"Model"_s,        u"S/W Version"_s,   u"Channels"_s,     u"Video Standard"_s,
           u"Alarm Inputs"_s, u"Alarm Outputs"_s, u"Audio Inputs"_s, u"Disks"_s};
    const std::pair<QStringList, QStringList> recorders[] = {
        {{u"--channels"_s, u"4"_s, u"--video"_s, u"pal"_s, u"--model"_s, u"77"_s, u"--version"_s,
          u"2.3.4.5"_s},
         {u"77"_s, u"2.3.4.5"_s, u"4"_s, u"PAL"_s, u"4"_s, u"1"_s, u"4"_s, u"1"_s}},
        {{},
         {QString::number(FactoryDefaults::ModelId), u"1.0.0.0"_s, u"16"_s, u"NTSC"_s, u"16"_s,
          u"4"_s, u"4"_s, u"2"_s}},
    };
    for (const auto &[arguments, values] : recorders) {
        SCOPED_TRACE(arguments.join(u' ').toStdString());
        SimProcess sim(arguments);
        ASSERT_TRUE(connectTo(sim));
        for (int k = 0; k < 8; ++k)
            EXPECT_EQ(shown(&page, names[k]), values[k]) << names[k].toStdString();
    }

    // The time follows the worker's running clock, from its first answer on:
    // every value it shows is one the clock had.
    window.worker.reset();
    SimProcess sim;
    window.connect(sim.port());
    ASSERT_TRUE(testsupport::waitFor([&] { return window.worker->setupReceived() == 1; }));
    page.load(window.worker->mirror(), int(window.record.channelCount));
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
// under the chosen name; Import refuses a file of another model or none and
// sends nothing; Factory Default restores the recorder without asking.
TEST_F(ConfigPage, FileDialogsAndFactoryDefault)
{
    SimProcess sim({u"--model"_s, u"77"_s}, recordWithTitle("Lobby"));
    ASSERT_TRUE(connectTo(sim));
    const QByteArray stored = sim.storedRecord();
    testsupport::writeFile(dir.filePath(u"good.dat"_s),
                           ExportFile::build(recordWithTitle("Elsewhere")));
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
    EXPECT_EQ(acceptButton(dialog)->text(), u"Save"_s);
    // The default suffix completes a name typed without one.
    choose(dialog, dir.filePath(u"site-a"_s));
    const QString path = dir.filePath(u"site-a.dat"_s);
    const QByteArray file = testsupport::readFile(path);
    EXPECT_EQ(LittleEndian::u32(file, ExportFile::ModelIdOffset), Model);
    EXPECT_EQ(file.mid(ExportFile::HeaderSize), window.worker->mirror().mid(32));
    EXPECT_EQ(window.messages, QStringList {u"Export completed"_s});
    EXPECT_EQ(fileNameField(&page), QDir::toNativeSeparators(path));
    EXPECT_EQ(page.openFileDialog(), nullptr);
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
    const QByteArray mirror = window.worker->mirror();
    for (const auto &[file, message] : refusals) {
        SCOPED_TRACE(file.toStdString());
        window.messages.clear();
        dialog = clickForDialog(u"Import"_s);
        ASSERT_NE(dialog, nullptr);
        EXPECT_EQ(dialog->acceptMode(), QFileDialog::AcceptOpen);
        EXPECT_EQ(dialog->nameFilters(), QStringList {u"Data Files(*.dat) (*.dat)"_s});
        EXPECT_EQ(acceptButton(dialog)->text(), u"Open"_s);
        choose(dialog, file);
        EXPECT_EQ(window.messages, QStringList {message});
        EXPECT_EQ(fileNameField(&page), QDir::toNativeSeparators(file));
        EXPECT_FALSE(window.worker->importPending());
        EXPECT_EQ(window.worker->mirror(), mirror);
    }
    EXPECT_EQ(sim.storedRecord(), stored);

    window.messages.clear();
    pagetest::button(&page, u"Factory Default"_s)->click();
    EXPECT_EQ(page.openFileDialog(), nullptr);
    ASSERT_TRUE(testsupport::waitFor(
        [&] { return window.messages.contains(u"Default Setup Success"_s); }, 60000))
        << window.messages.join(u" | "_s).toStdString();
    EXPECT_EQ(window.messages, QStringList {u"Default Setup Success"_s});
    EXPECT_EQ(firstTitle(sim.storedRecord()), "CAM 01");
    EXPECT_EQ(window.sessionMessages, std::vector<int> {SessionMessage::SetupRestored});
}

// The whole window: the import of another recorder's export reaches the
// recorder and every page shows the imported setup afterwards.
using ConfigPageInWindow = MainWindowFixture;

TEST_F(ConfigPageInWindow, ImportOfAnotherRecordersExportReloadsEveryPage)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(u"from-site-b.dat"_s);
    {
        SimProcess source({}, recordWithTitle("Imported"));
        const testsupport::CliRun run = source.cli({u"export"_s, path});
        ASSERT_EQ(run.exitCode, 0) << run.err.toStdString();
    }
    SimProcess sim({}, recordWithTitle("Lobby"));
    ASSERT_TRUE(connectTo(sim));

    const int configuration = PageCatalog::indexOf("Configuration");
    window->pageMenus()->item(configuration)->trigger();
    auto *page = qobject_cast<CRemoteSystemConfigDlg *>(window->pageHost()->currentPage());
    ASSERT_NE(page, nullptr);
    EXPECT_EQ(window->windowTitle(), u"127.0.0.1 - Remote Setup / System / Configuration"_s);
    EXPECT_FALSE(window->saveButton()->isEnabled());
    EXPECT_EQ(shown(page, u"Model"_s), u"77"_s);

    pagetest::button(page, u"Import"_s)->click();
    ASSERT_NE(page->openFileDialog(), nullptr);
    choose(page->openFileDialog(), path);
    ASSERT_TRUE(testsupport::waitFor([&] { return messages.contains(u"Import Success"_s); },
                                     SessionTimeoutMs))
        << messages.join(u" | "_s).toStdString();
    EXPECT_EQ(messages, QStringList {u"Import Success"_s});
    EXPECT_EQ(firstTitle(sim.storedRecord()), "Imported");

    const CSetupPage *camera = window->pageHost()->page(PageCatalog::indexOf("Camera Setup"));
    ASSERT_NE(camera, nullptr);
    EXPECT_EQ(firstTitle(QByteArray(CameraOffset, '\0') + camera->sectionBuffer()), "Imported");
    EXPECT_EQ(named<QLineEdit>(camera, u"Camera Title 01"_s)->text(), u"Imported"_s);
    EXPECT_EQ(shown(page, u"Model"_s), u"77"_s);
}
