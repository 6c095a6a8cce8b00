// SPDX-License-Identifier: GPL-3.0-or-later

#include "pages/device/CRemoteDeviceKeyboardCtrlDlg.h"

#include "setup/Fields.h"

#include <QFormLayout>
#include <QVBoxLayout>

namespace fields = setup::fields::keyboard;
using Kind = FieldEditor::Kind;

CRemoteDeviceKeyboardCtrlDlg::CRemoteDeviceKeyboardCtrlDlg(QWidget *parent)
    : CSetupPage(parent)
{
    setSection(setup::Section::Keyboard);
}

CRemoteDeviceKeyboardCtrlDlg::~CRemoteDeviceKeyboardCtrlDlg() = default;

void CRemoteDeviceKeyboardCtrlDlg::buildControls()
{
    QFormLayout *form = binder().form(contentArea(), {
                                                         {fields::enabled, Kind::List},
                                                         {fields::protocol, Kind::List},
                                                         {fields::recorderId, Kind::Number},
                                                         {fields::baudRate, Kind::List},
                                                         {fields::dataBits, Kind::List},
                                                         {fields::parity, Kind::List},
                                                         {fields::stopBits, Kind::List},
                                                         {fields::flowControl, Kind::List},
                                                         {fields::ptzControl, Kind::List},
                                                     });
    auto *layout = new QVBoxLayout(contentArea());
    layout->addLayout(form);
    layout->addStretch(1);
}
