// SPDX-License-Identifier: GPL-3.0-or-later

#include "pages/network/CRemoteNetworkStreamDlg.h"

#include "i18n/Translator.h"
#include "pages/common/CheckBoxGrid.h"
#include "pages/network/NetworkEntryCheck.h"
#include "setup/Fields.h"

#include <QComboBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QVBoxLayout>

namespace fields = setup::fields::stream;
using Kind = FieldEditor::Kind;

namespace {

constexpr quint32 StaticMode = 0;

// The settings a DHCP server hands the recorder.
constexpr setup::FieldInfo LeasedSettings[]
    = {fields::ipAddress, fields::subnetMask, fields::gateway, fields::dnsServer};

} // namespace

CRemoteNetworkStreamDlg::CRemoteNetworkStreamDlg(QWidget *parent)
    : CSetupPage(parent)
{
    setSection(setup::Section::Stream);
}

CRemoteNetworkStreamDlg::~CRemoteNetworkStreamDlg() = default;

void CRemoteNetworkStreamDlg::buildControls()
{
    // Four tabs: all stream columns side by side would not fit the page.
    setTabs({nelib::tr("Network"), nelib::tr("Stream"), nelib::tr("Bit Rate"),
             nelib::tr("Monitoring Servers")});
    buildNetworkTab(tabContent(0));
    addChannelTab(
        tabContent(1),
        binder().channelGrid(tabContent(1), {
                                                {fields::enabled, Kind::Check, nullptr, true},
                                                {fields::resolution, Kind::List},
                                                {fields::frameRate, Kind::List},
                                                {fields::quality, Kind::List},
                                            }));
    addChannelTab(tabContent(2),
                  binder().channelGrid(tabContent(2), {
                                                          {fields::bitrate, Kind::Number},
                                                          {fields::keyFrameInterval, Kind::Number},
                                                      }));
    buildServersTab(tabContent(3));
}

void CRemoteNetworkStreamDlg::addChannelTab(QWidget *tab, QGridLayout *grid)
{
    // Room to spare goes right of the last column.
    grid->setColumnStretch(grid->columnCount(), 1);
    auto *layout = new QVBoxLayout(tab);
    layout->addLayout(grid);
    layout->addStretch(1);
}

void CRemoteNetworkStreamDlg::buildNetworkTab(QWidget *tab)
{
    QFormLayout *form = binder().form(tab, {
                                               {fields::ipMode, Kind::List},
                                               {fields::ipAddress, Kind::Address},
                                               {fields::subnetMask, Kind::Address},
                                               {fields::gateway, Kind::Address},
                                               {fields::dnsServer, Kind::Address},
                                               {fields::remotePort, Kind::Number},
                                               {fields::webPort, Kind::Number},
                                               {fields::maxBandwidth, Kind::Number},
                                               {fields::ddns, Kind::List},
                                               {fields::ddnsHost, Kind::Text},
                                               {fields::audio, Kind::List},
                                           });
    connect(binder().widget<QComboBox>(fields::ipMode), &QComboBox::activated, this,
            &CRemoteNetworkStreamDlg::afterFill);
    auto *layout = new QVBoxLayout(tab);
    layout->addLayout(form);
    layout->addStretch(1);
}

void CRemoteNetworkStreamDlg::buildServersTab(QWidget *tab)
{
    // One row per server, numbered 1, 2, ...; the tab key goes across a server's settings.
    QStringList numbers;
    for (int server = 0; server < fields::cmsHost.count; ++server)
        numbers.append(QString::number(server + 1));
    QGridLayout *grid = binder().grid(tab,
                                      {.count = fields::cmsHost.count,
                                       .channels = false,
                                       .titles = numbers,
                                       .alignment = Qt::AlignTop},
                                      {
                                          {fields::cmsEnabled, Kind::Check},
                                          {fields::cmsHost, Kind::Text},
                                          {fields::cmsPort, Kind::Number},
                                          {fields::cmsEvents, Kind::Bits},
                                      });
    grid->setSpacing(-1);
    grid->setHorizontalSpacing(14);
    // The events one below the other keep the page narrow.
    for (int server = 0; server < fields::cmsHost.count; ++server)
        arrangeCheckBoxGrid(binder().editor(fields::cmsEvents, server)->widget(), 1);
    grid->setColumnStretch(2, 1);
    auto *layout = new QVBoxLayout(tab);
    layout->addLayout(grid);
    layout->addStretch(1);
}

bool CRemoteNetworkStreamDlg::isStatic() const
{
    return binder().widget<QComboBox>(fields::ipMode)->currentData() == StaticMode;
}

void CRemoteNetworkStreamDlg::afterFill()
{
    const bool manual = isStatic();
    for (const setup::FieldInfo &field : LeasedSettings)
        binder().editor(field)->widget()->setEnabled(manual);
}

int CRemoteNetworkStreamDlg::save()
{
    const NetworkEntryCheck check(binder());
    // Under DHCP the addresses are the server's business and are sent as shown.
    const bool addressesAccepted
        = !isStatic()
          || (check.ipv4(fields::ipAddress) && check.subnetMask(fields::subnetMask)
              && check.ipv4(fields::gateway) && check.ipv4(fields::dnsServer));
    if (!addressesAccepted || !check.distinctPorts(fields::remotePort, fields::webPort)
        || !check.hostNames(fields::ddnsHost) || !check.hostNames(fields::cmsHost))
        return 0;
    return CSetupPage::save();
}
