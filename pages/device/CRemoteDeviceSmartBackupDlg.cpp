// SPDX-License-Identifier: GPL-3.0-or-later

#include "pages/device/CRemoteDeviceSmartBackupDlg.h"

#include "pages/common/CheckBoxGrid.h"
#include "setup/Fields.h"

#include <QFormLayout>
#include <QVBoxLayout>

namespace fields = setup::fields::smartBackup;
using Kind = FieldEditor::Kind;

namespace {

constexpr int DayColumns = 4;

} // namespace

CRemoteDeviceSmartBackupDlg::CRemoteDeviceSmartBackupDlg(QWidget *parent)
    : CSetupPage(parent)
{
    setSection(setup::Section::SmartBackup);
}

CRemoteDeviceSmartBackupDlg::~CRemoteDeviceSmartBackupDlg() = default;

void CRemoteDeviceSmartBackupDlg::buildControls()
{
    QFormLayout *form = binder().form(contentArea(), {
                                                         {fields::enabled, Kind::List},
                                                         {fields::media, Kind::List},
                                                         {fields::channels, Kind::Channels},
                                                         {fields::days, Kind::Bits},
                                                         {fields::startHour, Kind::Number},
                                                         {fields::startMinute, Kind::Number},
                                                         {fields::spanHours, Kind::Number},
                                                         {fields::overwrite, Kind::List},
                                                     });
    arrangeCheckBoxGrid(binder().editor(fields::days)->widget(), DayColumns);
    // A mask too wide beside its label goes below it.
    form->setRowWrapPolicy(QFormLayout::WrapLongRows);
    auto *layout = new QVBoxLayout(contentArea());
    layout->addLayout(form);
    layout->addStretch(1);
}
