// Pages in the host write exactly their section and overlapping sections never
// carry another page's old bytes; the entry checks of the network pages
// refuse before anything is sent, and what depends on a choice follows it.

#include "app/PageCatalog.h"
#include "app/PageHost.h"
#include "pages/device/CRemoteDeviceRS232CDlg.h"
#include "pages/device/CRemoteDeviceRemoteCtrlDlg.h"
#include "pages/network/CRemoteNetworkEmailDlg.h"
#include "pages/network/CRemoteNetworkNotificationDlg.h"
#include "pages/network/CRemoteNetworkStreamDlg.h"
#include "setup/Fields.h"
#include "tests/TestSupport.h"
#include "tests/pages/PageTestSupport.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QSpinBox>
#include <QTabBar>
#include <QTest>

#include <gtest/gtest.h>

#include <functional>
#include <memory>

using namespace Qt::StringLiterals;
using pagetest::named;
using setup::FieldTable;
using setup::Section;
using setup::SetupRecordMap;

TEST(PageHostSave, EachPageWritesItsSectionAndOverlapsCarryTheLatestBytes)
{
    // The notification pages before Stream, whose block holds their sections.
    const char *const labels[]
        = {"Camera Setup", "PTZ",     "Alarm-In",         "Alarm-Out",      "Motion",
           "Video Loss",   "RS-232C", "Keyboard Control", "Remote Control", "Smart Backup",
           "E-Mail",       "Event",   "Notification",     "Stream"};
    const QByteArray defaults = setup::FactoryDefaults::record();
    SimProcess sim({u"--channels"_s, u"4"_s}, defaults);
    SessionHarness window;
    CWork &work = window.connect(sim.port());
    ASSERT_TRUE(window.waitForReady());
    PageHost host;
    host.buildPages();
    host.show();
    host.loadPages(work.mirror(), int(window.record.channelCount));
    // Another client changes every section after this client has received
    // the record, so a byte sent beyond a page's own section shows up as a
    // default where the pattern should be.
    SessionHarness other;
    CWork &otherWork = other.connect(sim.port());
    ASSERT_TRUE(other.waitForReady());
    QByteArray stored = defaults;
    for (const char *label : labels) {
        const Section s = *host.page(PageCatalog::indexOf(label))->section();
        const QByteArray marks = pagetest::pattern(SetupRecordMap::section(s).length);
        ASSERT_NE(otherWork.writeSection(s, marks), 0);
        stored = pagetest::withSection(stored, s, marks);
    }
    ASSERT_TRUE(testsupport::waitFor([&] { return sim.storedRecord() == stored; }));

    for (const char *label : labels) {
        SCOPED_TRACE(label);
        CSetupPage *page = host.page(PageCatalog::indexOf(label));
        host.showPage(PageCatalog::indexOf(label));
        for (const SectionBinder::Binding &b : std::as_const(*page).binder().bindings()) {
            if (b.row <= 0 && pagetest::changeControl(b.editor->widget()))
                break;
        }
        ASSERT_TRUE(page->isModified());
        pagetest::button(page, u"Save"_s)->click();
        EXPECT_FALSE(page->isModified());
        if (page->section() == Section::Stream) {
            // The whole block resends e-mail and events as the last page sent them.
            const int inBlock = SetupRecordMap::section(Section::Notification).offset
                                - SetupRecordMap::section(Section::Stream).offset;
            EXPECT_EQ(page->sectionBuffer().mid(inBlock, 836),
                      pagetest::slice(stored, Section::Notification));
        }
        stored = pagetest::withSection(stored, *page->section(), page->sectionBuffer());
        EXPECT_TRUE(testsupport::waitFor([&] { return sim.storedRecord() == stored; }));
    }
}

TEST(DeviceNetworkPages, EditedPageKeepsItsEditsWhenAnOverlappingSectionIsSent)
{
    const QByteArray defaults = setup::FactoryDefaults::record();
    CRemoteNetworkNotificationDlg page;
    page.load(defaults, 16);
    CRemoteNetworkNotificationDlg untouched;
    untouched.load(defaults, 16);
    pagetest::typeInto(named<QLineEdit>(&page, u"Subject"_s), u"Site 7"_s);

    QByteArray sent = defaults;
    FieldTable::setBytes(sent, setup::fields::email::smtpServer, "mail.site.test");
    FieldTable::setBytes(sent, setup::fields::email::subject, "Sent");
    const QByteArray email = pagetest::slice(sent, Section::Email);
    for (CSetupPage *p : {static_cast<CSetupPage *>(&page), static_cast<CSetupPage *>(&untouched)})
        p->recordWritten(SetupRecordMap::section(Section::Email).offset, email);

    EXPECT_EQ(named<QLineEdit>(&page, u"SMTP Server"_s)->text(), u"mail.site.test"_s);
    EXPECT_EQ(named<QLineEdit>(&page, u"Subject"_s)->text(), u"Site 7"_s);
    EXPECT_TRUE(page.isModified());
    EXPECT_EQ(named<QLineEdit>(&untouched, u"Subject"_s)->text(), u"Sent"_s);
    EXPECT_FALSE(untouched.isModified());
    EXPECT_FALSE(untouched.needsSave());
}

TEST(DeviceNetworkPages, EntryChecksRefuseWithTheirMessageAndSendNothing)
{
    using Edit = std::function<void(QWidget *)>;
    const auto text = [](const char *name, const char *value) -> Edit {
        return [=](QWidget *page) {
            pagetest::typeInto(named<QLineEdit>(page, QString::fromLatin1(name)),
                               QString::fromLatin1(value));
        };
    };
    const auto number = [](const char *name, int value) -> Edit {
        return [=](QWidget *page) {
            named<QSpinBox>(page, QString::fromLatin1(name))->setValue(value);
        };
    };
    const auto stream = [] {
        return std::make_unique<CRemoteNetworkStreamDlg>();
    };
    const auto email = [] {
        return std::make_unique<CRemoteNetworkEmailDlg>();
    };
    const auto notification = [] {
        return std::make_unique<CRemoteNetworkNotificationDlg>();
    };
    const struct
    {
        std::function<std::unique_ptr<CSetupPage>()> create;
        std::vector<Edit> edits;
        QString message;
    } cases[] = {
        {stream, {text("IP Address", "192.168.0")}, u"IP Address is not a valid IP address."_s},
        {stream, {text("Gateway", "")}, u"Gateway is not a valid IP address."_s},
        {stream,
         {text("Subnet Mask", "255.0.255.0")},
         u"Subnet Mask is not a valid subnet mask."_s},
        {stream, {number("Web Port", 9000)}, u"Web Port is already in use by another port."_s},
        {stream, {text("DDNS Host Name", "my dvr")}, u"DDNS Host Name is not a valid host name."_s},
        {stream, {text("Server Host 2", "cms_2")}, u"Server Host 2 is not a valid host name."_s},
        {email, {text("Sender", "dvr@")}, u"Sender is not a valid e-mail address."_s},
        {email, {text("Recipient 2", "ops")}, u"Recipient 2 is not a valid e-mail address."_s},
        {email,
         {text("Recipient 1", "ops@site.test"), text("Recipient 3", "OPS@site.test")},
         u"Recipient 3 repeats an address already in the list."_s},
        {notification,
         {text("SMTP Server", "smtp server"),
          [](QWidget *page) {
              page->findChild<QTabBar *>()->setCurrentIndex(2);
          }},
         u"SMTP Server is not a valid host name."_s},
    };
    SessionHarness window; // records the message boxes
    for (const auto &c : cases) {
        SCOPED_TRACE(c.message.toStdString());
        std::unique_ptr<CSetupPage> page = c.create();
        int sent = 0;
        page->setSectionWriter([&sent](Section, const QByteArray &) { return ++sent; });
        page->load(setup::FactoryDefaults::record(), 16);
        page->show();
        for (const Edit &edit : c.edits)
            edit(page.get());
        window.messages.clear();
        pagetest::button(page.get(), u"Save"_s)->click();
        EXPECT_EQ(sent, 0);
        EXPECT_EQ(window.messages, QStringList {c.message});
        EXPECT_TRUE(page->isModified());
        // The page shows the refused control, on whichever tab it is.
        EXPECT_TRUE(page->focusWidget() && page->focusWidget()->isVisible());
        // Corrected, or as the recorder sent it, the page saves.
        page->cancel();
        page->save();
        EXPECT_EQ(sent, 1);
    }
}

TEST(DeviceNetworkPages, ControlsFollowTheChoiceTheyDependOn)
{
    const QByteArray defaults = setup::FactoryDefaults::record();
    CRemoteDeviceRS232CDlg serial;
    serial.load(defaults, 16);
    auto *usage = named<QComboBox>(&serial, u"Port Usage"_s);
    for (const auto &[use, idEnabled, channelsEnabled] : {std::tuple {u"Off"_s, false, false},
                                                          {u"Remote Control"_s, true, false},
                                                          {u"Text Input"_s, false, true}}) {
        usage->setCurrentText(use);
        Q_EMIT usage->activated(usage->currentIndex());
        EXPECT_EQ(named<QSpinBox>(&serial, u"Device ID"_s)->isEnabled(), idEnabled);
        EXPECT_EQ(named<QWidget>(&serial, u"Text Channels"_s)->isEnabled(), channelsEnabled);
    }

    CRemoteNetworkStreamDlg stream;
    stream.load(defaults, 16);
    auto *mode = named<QComboBox>(&stream, u"IP Mode"_s);
    for (const auto &[choice, manual] : {std::pair {u"DHCP"_s, false}, {u"Static"_s, true}}) {
        mode->setCurrentText(choice);
        Q_EMIT mode->activated(mode->currentIndex());
        for (const QString &name : {u"IP Address"_s, u"Subnet Mask"_s, u"Gateway"_s})
            EXPECT_EQ(named<QLineEdit>(&stream, name)->isEnabled(), manual) << name.toStdString();
    }

    // Remote id 0 obeys every remote.
    CRemoteDeviceRemoteCtrlDlg remote;
    remote.load(defaults, 16);
    EXPECT_EQ(named<QSpinBox>(&remote, u"Remote Control ID"_s)->text(), u"All"_s);
}
