// SPDX-License-Identifier: GPL-3.0-or-later

#include "pages/system/CRemoteSystemUpdateDlg.h"

#include "app/PageCatalog.h"
#include "app/PageHost.h"
#include "app/PageMenuBar.h"
#include "firmware/PackageBuilder.h"
#include "setup/FactoryDefaults.h"
#include "tests/TestSupport.h"
#include "tests/app/MainWindowFixture.h"
#include "tests/pages/PageTestSupport.h"

#include <QFile>
#include <QLineEdit>
#include <QProgressBar>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using firmware::FirmwareVersion;
using pagetest::named;

namespace {

const QString CompletedText = u"Updatefile transfer is completed. \n\rReboot the system to perform "
                              u"the update. \n\rThe Remote Setup is terminated."_s;
const QString CanceledText = u"Update canceled"_s;

// Newer than the simulator's 1.0.0.0, so every component goes: in chunks of
// 4096 bytes, 15 of them.
QString writePackage(const QString &path)
{
    const FirmwareVersion version {{2, 10, 0, 7}};
    firmware::PackageBuilder builder(version);
    builder.addGeneratedComponent(2, version, 40000);
    builder.addGeneratedComponent(0xF004, version, 20000);
    QString error;
    EXPECT_TRUE(builder.write(path, &error)) << error.toStdString();
    return path;
}

QString text(const QWidget *page, const QString &field)
{
    return named<QLineEdit>(page, field)->text();
}

QPushButton *button(const QWidget *page, const QString &name)
{
    return named<QPushButton>(page, name);
}

// Clicks Open with the file dialog replaced: it offers `path` and keeps the filter.
void choose(CRemoteSystemUpdateDlg &page, const QString &path, QString *filter = nullptr)
{
    page.setFileChooser([=](QWidget *, const QString &offered) {
        if (filter)
            *filter = offered;
        return path;
    });
    button(&page, u"Open"_s)->click();
}

// The whole window against recorder-sim, the Update page on display with a
// package chosen: the dialog's filter, the package's name and version, the
// recorder's version on the page.
class UpdateWindow : public MainWindowFixture
{
protected:
    void openPage(const QStringList &simOptions)
    {
        sim = std::make_unique<SimProcess>(
            QStringList {u"--firmware-dir"_s, received(), u"--chunk-size"_s, u"4096"_s}
            + simOptions);
        ASSERT_TRUE(connectTo(*sim));
        window->pageMenus()->item(PageCatalog::indexOf("Update"))->trigger();
        page = qobject_cast<CRemoteSystemUpdateDlg *>(window->pageHost()->currentPage());
        ASSERT_NE(page, nullptr);
        QString filter;
        choose(*page, writePackage(dir.filePath(u"update.KRP"_s)), &filter);
        // The pattern shows once and takes lower-case names too.
        EXPECT_EQ(filter, u"KRP Files (*.KRP *.krp)"_s);
        EXPECT_EQ(text(page, u"File Name"_s), u"update.KRP"_s);
        EXPECT_EQ(text(page, u"Update Version"_s), u"2.10.0.7"_s);
        EXPECT_TRUE(button(page, u"Start"_s)->isEnabled());
        EXPECT_FALSE(pagetest::button(page, u"Save"_s)->isVisibleTo(page));
        bar = named<QProgressBar>(page, u"Progress"_s);
        QObject::connect(bar, &QProgressBar::valueChanged,
                         [this](int value) { progress.push_back(value); });
    }

    QString received() const { return dir.filePath(u"received"_s); }
    QString landed() const { return received() + u"/firmware-2.10.0.7.KRP"_s; }

    // Whether every item whose page exists is enabled, or every one disabled.
    bool menusEnabled(bool enabled) const
    {
        for (int i = 0; i < PageCatalog::count(); ++i) {
            if (window->pageHost()->page(i) && window->pageMenus()->item(i)->isEnabled() != enabled)
                return false;
        }
        return true;
    }

    bool uploadUnderway() const
    {
        return testsupport::waitFor([&] { return bar->value() > 0 && bar->value() < 100; },
                                    SessionTimeoutMs);
    }

    QTemporaryDir dir;
    std::unique_ptr<SimProcess> sim;
    CRemoteSystemUpdateDlg *page = nullptr;
    QProgressBar *bar = nullptr;
    std::vector<int> progress;
};

} // namespace

TEST_F(UpdateWindow, CanceledUploadLeavesThePageUsableAndTheNextOneLandsWithSteadyProgress)
{
    openPage({u"--delay-ms"_s, u"40"_s});
    button(page, u"Start"_s)->click();
    EXPECT_FALSE(button(page, u"Start"_s)->isEnabled());
    EXPECT_FALSE(button(page, u"Open"_s)->isEnabled());
    ASSERT_TRUE(uploadUnderway());
    EXPECT_TRUE(menusEnabled(false));

    button(page, u"Cancel"_s)->click();
    EXPECT_EQ(messages, QStringList {CanceledText});
    EXPECT_FALSE(button(page, u"Cancel"_s)->isEnabled());
    const int stoppedAt = bar->value();
    ASSERT_TRUE(testsupport::waitFor([&] { return !page->isUploading(); }, SessionTimeoutMs));
    EXPECT_EQ(bar->value(), stoppedAt);
    EXPECT_TRUE(menusEnabled(true));
    EXPECT_TRUE(exitCodes.empty());
    EXPECT_FALSE(QFile::exists(landed()));

    progress.clear();
    button(page, u"Start"_s)->click();
    ASSERT_TRUE(testsupport::waitFor([&] { return !exitCodes.empty(); }, SessionTimeoutMs));
    EXPECT_EQ(exitCodes, std::vector<int> {0});
    EXPECT_EQ(messages, (QStringList {CanceledText, CompletedText}));
    // A step for every chunk; the uploader's tests check each percentage.
    EXPECT_EQ(progress.size(), 16u);
    EXPECT_EQ(progress.back(), 100);
    EXPECT_TRUE(menusEnabled(true));
    EXPECT_EQ(testsupport::readFile(landed()),
              testsupport::readFile(dir.filePath(u"update.KRP"_s)));
}

TEST(UpdatePage, StartWaitsForASession)
{
    QTemporaryDir dir;
    CRemoteSystemUpdateDlg page;
    page.load(setup::FactoryDefaults::record(), 16);
    choose(page, writePackage(dir.filePath(u"update.KRP"_s)));
    EXPECT_EQ(text(&page, u"Update Version"_s), u"2.10.0.7"_s);
    EXPECT_FALSE(button(&page, u"Start"_s)->isEnabled());
}

// A package that does not hold together replaces the earlier choice, so
// that Start never sends a file other than the one named on the page.
TEST_F(UpdateWindow, ABrokenPackageIsRefusedAndClearsTheChoice)
{
    openPage({u"--version"_s, u"3.12.0.255"_s});
    EXPECT_EQ(text(page, u"S/W Version"_s), u"3.12.0.255"_s);
    const QString broken = dir.filePath(u"short.KRP"_s);
    testsupport::writeFile(broken,
                           testsupport::readFile(dir.filePath(u"update.KRP"_s)).first(1000));
    choose(*page, broken);
    EXPECT_EQ(messages,
              QStringList {u"The firmware package is shorter than its 3072-byte header."_s});
    EXPECT_FALSE(button(page, u"Start"_s)->isEnabled());
    EXPECT_EQ(text(page, u"File Name"_s), QString());
    EXPECT_EQ(text(page, u"Update Version"_s), QString());
}

TEST_F(UpdateWindow, DisconnectDuringTheUploadStopsItBeforeTheSessionGoes)
{
    openPage({u"--delay-ms"_s, u"40"_s});
    button(page, u"Start"_s)->click();
    ASSERT_TRUE(uploadUnderway());
    panelButton(u"DISCONNECT"_s)->click();
    EXPECT_TRUE(waitForDisconnectedLook());
    EXPECT_FALSE(page->isUploading());
    EXPECT_FALSE(button(page, u"Start"_s)->isEnabled());
    EXPECT_TRUE(menusEnabled(true));
    EXPECT_TRUE(exitCodes.empty());
    EXPECT_TRUE(messages.isEmpty());
}
