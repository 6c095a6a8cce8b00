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

#include <algorithm>
#include <functional>
#include <map>
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

struct Check
{
    const char *page;
    std::vector<Edit> edits;
    QString message; // empty: the save goes through
};

// The text `value` in the entry `name`, refused with "<name> <reason>".
Check entry(const char *page, const char *name, const char *value, const char *reason)
{
    const QString message = QString::fromLatin1(name) + u' ' + QString::fromLatin1(reason);
    return {page, {text(name, value)}, message};
}

} // namespace

// What a network page checks of its entries before Save sends anything: a
// refusal shows its message, sends nothing, leaves the modified flag as it
// was and puts the focus on the entry.
TEST(PageSave, EntryChecksRefuseWithTheirMessageAndSendNothing)
{
    const char *const noAddress = "is not a valid IP address.";
    const char *const noHost = "is not a valid host name.";
    const char *const noMail = "is not a valid e-mail address.";
    const Check cases[] = {
        entry("Stream", "IP Address", "192.168.0", noAddress),
        entry("Stream", "Gateway", "", noAddress),
        entry("Stream", "Subnet Mask", "255.0.255.0", "is not a valid subnet mask."),
        entry("Stream", "Subnet Mask", "0.0.0.0", "is not a valid subnet mask."),
        entry("Stream", "Subnet Mask", "255.255.0", noAddress),
        entry("Stream", "DDNS Host Name", "my dvr", noHost),
        entry("Stream", "Server Host 2", "cms_2", noHost),
        entry("E-Mail", "Sender", "dvr@", noMail),
        entry("E-Mail", "Recipient 2", "ops", noMail),
        {"Stream", {number("Web Port", 9000)}, u"Web Port is already in use by another port."_s},
        {"E-Mail",
         {text("Recipient 1", "ops@site.test"), text("Recipient 3", "OPS@site.test")},
         u"Recipient 3 repeats an address already in the list."_s},
        {"Notification",
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
        page->load(setup::FactoryDefaults::record(), 16);
        page->show();
        for (const Edit &edit : c.edits)
            edit(page.get());
        window.messages.clear();
        const bool modified = page->isModified();
        page->save();
        EXPECT_EQ(window.messages, QStringList {c.message});
        EXPECT_EQ(sent, 0);
        EXPECT_EQ(page->isModified(), modified);
        // The page shows the refused control, on whichever tab it is.
        EXPECT_TRUE(page->focusWidget() && page->focusWidget()->isVisible());
        // Corrected, or as the recorder sent it, the page saves.
        page->cancel();
        page->save();
        EXPECT_EQ(sent, 1);
    }
}

namespace {

struct Value
{
    setup::FieldInfo field;
    int i;
    quint32 value;
};

// The command line's name of element `i` of a field: group.name or group.name[i].
QString cliName(const Value &v)
{
    for (const setup::FieldGroup &group : FieldTable::groups()) {
        if (std::find(group.fields.begin(), group.fields.end(), v.field) == group.fields.end())
            continue;
        const QString name
            = u"%1.%2"_s.arg(QLatin1StringView(group.key), QLatin1StringView(v.field.name));
        return v.field.count > 1 ? u"%1[%2]"_s.arg(name).arg(v.i) : name;
    }
    return {};
}

// Element `i` of four time fields (start hour, start minute, end hour, end
// minute), after the values `before`.
std::vector<Value> times(std::array<setup::FieldInfo, 4> fields, int i, std::array<int, 4> values,
                         std::vector<Value> before = {})
{
    for (int k = 0; k < 4; ++k)
        before.push_back({fields[k], i, quint32(values[k])});
    return before;
}

namespace alarmOut = setup::fields::alarmOut;
namespace motion = setup::fields::motion;
namespace schedule = setup::fields::schedule;

// Three lines in use; line `line` has the times.
std::vector<Value> alarmOutLine(int line, std::array<int, 4> values)
{
    return times(
        {alarmOut::startHour, alarmOut::startMinute, alarmOut::endHour, alarmOut::endMinute}, line,
        values, {{alarmOut::lineCount, 0, 3}});
}

std::vector<Value> motionChannel(int channel, std::array<int, 4> values)
{
    return times({motion::dayStartHour, motion::dayStartMinute, motion::nightStartHour,
                  motion::nightStartMinute},
                 channel, values);
}

// The schedule holds two entries; entry `i` has the times.
std::vector<Value> scheduleEntry(int i, std::array<int, 4> values)
{
    return times(
        {schedule::startHour, schedule::startMinute, schedule::endHour, schedule::endMinute}, i,
        values, {{schedule::count, 0, 2}});
}

} // namespace

// The rules of the sections refuse the same values with the same message
// whether the window's page saves them or `remote-setup-cli set` does; a
// refusal sends nothing.
TEST(SaveRules, WindowAndCommandLineRefuseTheSameValuesWithTheSameMessage)
{
    const QString lineError = u"Set Time Error!!\nCheck Line Number : %1"_s;
    const QString channelError = u"Set Time Error!!\nChannel : %1"_s;
    struct Case
    {
        const char *page;
        std::vector<Value> values;
        QString message; // empty: saved
        int channels = 16;
    };
    const Case cases[] = {
        // Each line in use starts strictly before it ends.
        {"Alarm-Out", alarmOutLine(1, {8, 0, 8, 0}), lineError.arg(2)},
        {"Alarm-Out", alarmOutLine(2, {23, 0, 1, 0}), lineError.arg(3)},
        {"Alarm-Out", alarmOutLine(0, {8, 0, 8, 1}), {}},
        {"Alarm-Out", alarmOutLine(0, {8, 30, 8, 29}), lineError.arg(1)},
        {"Alarm-Out", alarmOutLine(3, {9, 0, 8, 0}), {}}, // line 4 not in use
        // Each channel's day setting starts before its night setting; one
        // channel is always refused.
        {"Motion", motionChannel(1, {8, 0, 8, 0}), channelError.arg(2)},
        {"Motion", motionChannel(1, {8, 0, 8, 1}), {}},
        {"Motion", motionChannel(1, {20, 0, 8, 0}), channelError.arg(2)},
        {"Motion", motionChannel(0, {8, 0, 20, 0}), channelError.arg(1), 1},
        {"Motion", motionChannel(2, {23, 59, 0, 0}), {}, 2}, // channel 3 not in use
        // The schedule checks its first entry's times only.
        {"Schedule", scheduleEntry(0, {10, 0, 10, 0}), lineError.arg(1)},
        {"Schedule", scheduleEntry(1, {23, 0, 10, 0}), {}},
        {"Schedule", scheduleEntry(0, {11, 0, 10, 0}), lineError.arg(1)},
    };
    SessionHarness window; // records the message boxes
    std::map<int, std::unique_ptr<SimProcess>> recorders; // by channel count
    for (const Case &c : cases) {
        QStringList assignments;
        QByteArray record = setup::FactoryDefaults::record();
        for (const Value &v : c.values) {
            FieldTable::setNumber(record, v.field, v.value, v.i);
            assignments.append(u"%1=%2"_s.arg(cliName(v)).arg(v.value));
        }
        SCOPED_TRACE(assignments.join(u' ').toStdString());

        std::unique_ptr<CSetupPage> page(
            PageCatalog::entry(PageCatalog::indexOf(c.page)).create(nullptr));
        int sent = 0;
        page->setSectionWriter([&sent](Section, const QByteArray &) { return ++sent; });
        page->load(record, c.channels);
        window.messages.clear();
        page->save();
        EXPECT_EQ(window.messages, c.message.isEmpty() ? QStringList() : QStringList {c.message});
        EXPECT_EQ(sent, c.message.isEmpty() ? 1 : 0);

        auto &sim = recorders[c.channels];
        if (!sim)
            sim = std::make_unique<SimProcess>(
                QStringList {u"--channels"_s, QString::number(c.channels)});
        const QByteArray before = sim->storedRecord();
        const auto run = sim->cli(QStringList {u"set"_s} + assignments);
        EXPECT_EQ(run.exitCode, c.message.isEmpty() ? 0 : 2) << run.err.toStdString();
        EXPECT_EQ(run.err.contains(c.message + u"\nnothing was sent"_s), !c.message.isEmpty())
            << run.err.toStdString();
        if (!c.message.isEmpty()) {
            EXPECT_EQ(sim->storedRecord(), before);
        }
    }
}

// The motion rule guards the time setting alone: a save from another view,
// or a `set` of other motion fields, goes through on one channel too.
TEST(SaveRules, MotionTimesAreCheckedOnlyWhereTheyAreEdited)
{
    SessionHarness window;
    CRemoteCameraMotionDlg page;
    int sent = 0;
    page.setSectionWriter([&sent](Section, const QByteArray &) { return ++sent; });
    page.load(setup::FactoryDefaults::record(), 1);
    page.showView(CRemoteCameraMotionDlg::ActionView);
    page.save();
    EXPECT_EQ(sent, 1);
    EXPECT_TRUE(window.messages.isEmpty());

    const SimProcess sim({u"--channels"_s, u"1"_s});
    EXPECT_EQ(sim.cli({u"set"_s, u"motion.dwell[0]=5"_s}).exitCode, 0);
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
