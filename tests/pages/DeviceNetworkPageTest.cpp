// SPDX-License-Identifier: GPL-3.0-or-later

// Pages in the host write exactly their section and overlapping sections never
// carry another page's old bytes; the checks of the pages refuse before
// anything is sent, and what depends on a choice follows it.

#include "app/PageCatalog.h"
#include "app/PageHost.h"
#include "pages/camera/CRemoteCameraMotionDlg.h"
#include "pages/device/CRemoteDeviceRS232CDlg.h"
#include "pages/device/CRemoteDeviceRemoteCtrlDlg.h"
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

TEST(PageHostSave, EachPageWritesItsSectionAndOverlappingPagesTakeTheBytesSent)
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
        // Every other page holds the bytes it shares with this one as they were sent.
        const int from = page->recordOffset();
        const int to = from + int(page->sectionBuffer().size());
        for (const char *other : labels) {
            const CSetupPage *o = host.page(PageCatalog::indexOf(other));
            const int start = std::max(from, o->recordOffset());
            const int end = std::min(to, o->recordOffset() + int(o->sectionBuffer().size()));
            if (start < end) {
                EXPECT_EQ(o->sectionBuffer().mid(start - o->recordOffset(), end - start),
                          page->sectionBuffer().mid(start - from, end - start))
                    << other;
            }
        }
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

namespace {

using RecordEdit = std::function<void(QByteArray &)>;
using Edit = std::function<void(QWidget *)>;

Edit text(const char *name, const char *value)
{
    return [=](QWidget *page) {
        pagetest::typeInto(named<QLineEdit>(page, QString::fromLatin1(name)),
                           QString::fromLatin1(value));
    };
}

Edit number(const char *name, int value)
{
    return [=](QWidget *page) {
        named<QSpinBox>(page, QString::fromLatin1(name))->setValue(value);
    };
}

// Element `i` of the four fields is start hour, start minute, end hour, end minute.
RecordEdit times(std::array<setup::FieldInfo, 4> fields, int i, std::array<int, 4> values)
{
    return [=](QByteArray &record) {
        for (int k = 0; k < 4; ++k)
            FieldTable::setNumber(record, fields[k], values[k], i);
    };
}

RecordEdit alarmOutLine(int line, std::array<int, 4> values)
{
    namespace alarmOut = setup::fields::alarmOut;
    const RecordEdit lineTimes = times(
        {alarmOut::startHour, alarmOut::startMinute, alarmOut::endHour, alarmOut::endMinute}, line,
        values);
    return [=](QByteArray &record) {
        FieldTable::setNumber(record, alarmOut::lineCount, 3);
        lineTimes(record);
    };
}

RecordEdit motionChannel2(std::array<int, 4> values)
{
    namespace motion = setup::fields::motion;
    return times({motion::dayStartHour, motion::dayStartMinute, motion::nightStartHour,
                  motion::nightStartMinute},
                 1, values);
}

// The first schedule entry runs from `from` to `to` (hour, minute).
std::vector<Edit> firstEntry(std::array<int, 4> values)
{
    return {number("Start Time 1 Hour", values[0]), number("Start Time 1 Minute", values[1]),
            number("End Time 1 Hour", values[2]), number("End Time 1 Minute", values[3])};
}

struct Check
{
    const char *page;
    RecordEdit record;
    std::vector<Edit> edits;
    QString message; // empty: the save goes through
    int channels = 16;
};

// The text `value` in the entry `name`, refused with "<name> <reason>".
Check entry(const char *page, const char *name, const char *value, const char *reason)
{
    const QString message = QString::fromLatin1(name) + u' ' + QString::fromLatin1(reason);
    return {page, {}, {text(name, value)}, message};
}

} // namespace

// What a page checks before Save sends anything: a refusal shows its message,
// sends nothing and leaves the modified flag as it was.
TEST(PageSave, ChecksRefuseWithTheirMessageAndSendNothing)
{
    const QString lineError = u"Set Time Error!!\nCheck Line Number : %1"_s;
    const QString channelError = u"Set Time Error!!\nChannel : %1"_s;
    const Edit alarmOutEvent = [](QWidget *page) {
        pagetest::select(page, u"Event 01"_s, u"Motion"_s);
    };
    const Edit actionView = [](QWidget *page) {
        static_cast<CRemoteCameraMotionDlg *>(page)->showView(CRemoteCameraMotionDlg::ActionView);
    };
    const RecordEdit twoEntries = [](QByteArray &record) {
        FieldTable::setNumber(record, setup::fields::schedule::count, 2);
    };
    std::vector<Edit> secondReversed = firstEntry({9, 59, 10, 0});
    secondReversed.push_back(number("Start Time 2 Hour", 23));
    const char *const noAddress = "is not a valid IP address.";
    const char *const noHost = "is not a valid host name.";
    const char *const noMail = "is not a valid e-mail address.";
    const Check cases[] = {
        {"Alarm-Out", alarmOutLine(1, {8, 0, 8, 0}), {alarmOutEvent}, lineError.arg(2)},
        {"Alarm-Out", alarmOutLine(2, {23, 0, 1, 0}), {alarmOutEvent}, lineError.arg(3)},
        {"Alarm-Out", alarmOutLine(0, {8, 0, 8, 1}), {alarmOutEvent}, {}},
        {"Alarm-Out", alarmOutLine(0, {8, 30, 8, 29}), {alarmOutEvent}, lineError.arg(1)},
        {"Alarm-Out", alarmOutLine(3, {9, 0, 8, 0}), {alarmOutEvent}, {}}, // line 4 not in use
        // Motion days start before the night, checked only in the time view.
        {"Motion", motionChannel2({8, 0, 8, 0}), {}, channelError.arg(2)},
        {"Motion", motionChannel2({8, 0, 8, 1}), {}, {}},
        {"Motion", motionChannel2({20, 0, 8, 0}), {}, channelError.arg(2)},
        {"Motion", motionChannel2({8, 0, 8, 0}), {actionView}, {}},
        {"Motion", motionChannel2({8, 0, 20, 0}), {}, channelError.arg(1), 1}, // always refused
        {"Motion", motionChannel2({8, 0, 20, 0}), {actionView}, {}, 1},
        // The schedule checks its first entry's times only.
        {"Schedule", twoEntries, firstEntry({10, 0, 10, 0}), lineError.arg(1)},
        {"Schedule", twoEntries, secondReversed, {}},
        {"Schedule", twoEntries, firstEntry({11, 0, 10, 0}), lineError.arg(1)},
        // The entries of the network pages.
        entry("Stream", "IP Address", "192.168.0", noAddress),
        entry("Stream", "Gateway", "", noAddress),
        entry("Stream", "Subnet Mask", "255.0.255.0", "is not a valid subnet mask."),
        entry("Stream", "DDNS Host Name", "my dvr", noHost),
        entry("Stream", "Server Host 2", "cms_2", noHost),
        entry("E-Mail", "Sender", "dvr@", noMail),
        entry("E-Mail", "Recipient 2", "ops", noMail),
        {"Stream",
         {},
         {number("Web Port", 9000)},
         u"Web Port is already in use by another port."_s},
        {"E-Mail",
         {},
         {text("Recipient 1", "ops@site.test"), text("Recipient 3", "OPS@site.test")},
         u"Recipient 3 repeats an address already in the list."_s},
        {"Notification",
         {},
         {text("SMTP Server", "smtp server"),
          [](QWidget *page) {
              page->findChild<QTabBar *>()->setCurrentIndex(2);
          }},
         u"SMTP Server is not a valid host name."_s},
    };
    SessionHarness window; // records the message boxes
    for (const auto &c : cases) {
        SCOPED_TRACE(testing::Message() << c.page << ": " << c.message.toStdString());
        std::unique_ptr<CSetupPage> page(
            PageCatalog::entry(PageCatalog::indexOf(c.page)).create(nullptr));
        int sent = 0;
        page->setSectionWriter([&sent](Section, const QByteArray &) { return ++sent; });
        QByteArray record = setup::FactoryDefaults::record();
        if (c.record)
            c.record(record);
        page->load(record, c.channels);
        page->show();
        for (const Edit &edit : c.edits)
            edit(page.get());
        window.messages.clear();
        const bool modified = page->isModified();
        page->save();
        EXPECT_EQ(window.messages, c.message.isEmpty() ? QStringList() : QStringList {c.message});
        EXPECT_EQ(sent, c.message.isEmpty() ? 1 : 0);
        EXPECT_EQ(page->isModified(), c.message.isEmpty() ? false : modified);
        if (c.message.isEmpty() || c.record)
            continue;
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
