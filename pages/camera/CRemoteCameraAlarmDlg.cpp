// SPDX-License-Identifier: GPL-3.0-or-later

#include "pages/camera/CRemoteCameraAlarmDlg.h"

#include "i18n/Translator.h"
#include "pages/common/ColumnCheckBox.h"
#include "pages/common/ContactTypeEditor.h"
#include "pages/common/NumberListEditor.h"
#include "setup/Fields.h"

#include <QGridLayout>
#include <QVBoxLayout>

namespace fields = setup::fields::alarmIn;
using Kind = FieldEditor::Kind;

namespace {

void place(QWidget *tab, QGridLayout *grid)
{
    auto *layout = new QVBoxLayout(tab);
    layout->addLayout(grid);
    layout->addStretch(1);
}

} // namespace

CRemoteCameraAlarmDlg::CRemoteCameraAlarmDlg(QWidget *parent)
    : CSetupPage(parent)
{
    setSection(setup::Section::AlarmIn);
}

CRemoteCameraAlarmDlg::~CRemoteCameraAlarmDlg() = default;

void CRemoteCameraAlarmDlg::buildControls()
{
    setTabs({nelib::tr("Setting"), nelib::tr("Action")});
    QGridLayout *setting = binder().channelGrid(
        tabContent(0), {
                           {fields::enabled, Kind::List, RS_TEXT("Type"), false, -1,
                            ContactTypeEditor::factory(fields::normallyClosed)},
                       });
    setting->setColumnStretch(2, 1);
    place(tabContent(0), setting);

    QGridLayout *action = binder().channelGrid(
        tabContent(1), {
                           {fields::beep, Kind::Check, RS_TEXT("Beep"), true},
                           {fields::alarmOut, Kind::AlarmOutputs, RS_TEXT("Alarm-Out")},
                           {fields::dwell, Kind::List, nullptr, false, -1,
                            NumberListEditor::factory(RS_TEXT("%d Sec"))},
                           {fields::recordChannels, Kind::Channels},
                       });
    action->setColumnStretch(5, 1);
    place(tabContent(1), action);
    addCopySettings();
}

void CRemoteCameraAlarmDlg::fillControls(QByteArrayView section, Source source)
{
    CSetupPage::fillControls(section, source);
    if (source == Source::DefaultFile)
        binder().headerBox(fields::beep)->updateFirstRows(channelCount());
}
