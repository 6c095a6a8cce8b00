// SPDX-License-Identifier: GPL-3.0-or-later

#include "pages/device/CRemoteDeviceRS232CDlg.h"

#include "setup/Fields.h"

#include <QComboBox>
#include <QFormLayout>
#include <QVBoxLayout>

namespace fields = setup::fields::rs232c;
using Kind = FieldEditor::Kind;

namespace {

constexpr quint32 RemoteControlUse = 1;
constexpr quint32 TextInputUse = 2;

} // namespace

CRemoteDeviceRS232CDlg::CRemoteDeviceRS232CDlg(QWidget *parent)
    : CSetupPage(parent)
{
    setSection(setup::Section::Rs232c);
}

CRemoteDeviceRS232CDlg::~CRemoteDeviceRS232CDlg() = default;

void CRemoteDeviceRS232CDlg::buildControls()
{
    QFormLayout *form = binder().form(contentArea(), {
                                                         {fields::usage, Kind::List},
                                                         {fields::baudRate, Kind::List},
                                                         {fields::dataBits, Kind::List},
                                                         {fields::parity, Kind::List},
                                                         {fields::stopBits, Kind::List},
                                                         {fields::flowControl, Kind::List},
                                                         {fields::deviceId, Kind::Number},
                                                         {fields::textChannels, Kind::Channels},
                                                     });
    connect(binder().widget<QComboBox>(fields::usage), &QComboBox::activated, this,
            &CRemoteDeviceRS232CDlg::afterFill);
    // A mask too wide beside its label goes below it.
    form->setRowWrapPolicy(QFormLayout::WrapLongRows);
    auto *layout = new QVBoxLayout(contentArea());
    layout->addLayout(form);
    layout->addStretch(1);
}

void CRemoteDeviceRS232CDlg::afterFill()
{
    const QVariant use = binder().widget<QComboBox>(fields::usage)->currentData();
    binder().editor(fields::deviceId)->widget()->setEnabled(use == RemoteControlUse);
    binder().editor(fields::textChannels)->widget()->setEnabled(use == TextInputUse);
}
