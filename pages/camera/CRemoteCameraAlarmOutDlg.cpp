// SPDX-License-Identifier: GPL-3.0-or-later

#include "pages/camera/CRemoteCameraAlarmOutDlg.h"

#include "i18n/Translator.h"
#include "pages/common/CTransparentStatic.h"
#include "pages/common/ContactTypeEditor.h"
#include "setup/Fields.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QScrollArea>
#include <QSpinBox>
#include <QVBoxLayout>

namespace fields = setup::fields::alarmOut;
using Kind = FieldEditor::Kind;

namespace {

// The outputs' settings, bytes 4 to 195, are what Default restores.
constexpr int OutputsFirst = 4;
constexpr int OutputsLength = 192;

} // namespace

CRemoteCameraAlarmOutDlg::CRemoteCameraAlarmOutDlg(QWidget *parent)
    : CSetupPage(parent)
{
    setSection(setup::Section::AlarmOut);
}

CRemoteCameraAlarmOutDlg::~CRemoteCameraAlarmOutDlg() = default;

void CRemoteCameraAlarmOutDlg::buildControls()
{
    setTabs({nelib::tr("Setting"), nelib::tr("Schedule")});
    QGridLayout *outputs = binder().channelGrid(
        tabContent(0), {
                           {fields::enabled, Kind::List, RS_TEXT("Type"), false, -1,
                            ContactTypeEditor::factory(fields::normallyClosed)},
                           {fields::dwell, Kind::List, RS_TEXT("Dwell Time")},
                       });
    outputs->setColumnStretch(3, 1);
    auto *layout = new QVBoxLayout(tabContent(0));
    layout->addLayout(outputs);
    layout->addStretch(1);
    buildSchedule(tabContent(1));
    addCopySettings();
}

void CRemoteCameraAlarmOutDlg::buildSchedule(QWidget *tab)
{
    auto *outer = new QVBoxLayout(tab);
    outer->setContentsMargins(0, 0, 0, 0);
    auto *scroll = new QScrollArea(tab);
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    outer->addWidget(scroll);
    auto *area = new QWidget(scroll);
    scroll->setWidget(area);

    FieldEditor *count
        = binder().add(FieldEditor::create(Kind::Number, fields::lineCount, 0, 0, area));
    m_lineCount = qobject_cast<QSpinBox *>(count->widget());
    count->setAccessibleName(nelib::tr(fields::lineCount.label));
    auto *countLabel = new CTransparentStatic(nelib::tr(fields::lineCount.label), area);
    countLabel->setBuddy(m_lineCount);
    connect(m_lineCount, &QSpinBox::valueChanged, this,
            &CRemoteCameraAlarmOutDlg::enableLinesInUse);
    auto *countRow = new QHBoxLayout;
    countRow->addWidget(countLabel);
    countRow->addWidget(m_lineCount);
    countRow->addStretch(1);

    QGridLayout *grid
        = binder().grid(area, {.count = Lines, .channels = false, .widgets = &m_lineWidgets},
                        {
                            {.field = fields::days, .kind = Kind::List},
                            {.field = fields::startHour,
                             .kind = Kind::Number,
                             .heading = RS_TEXT("Start Time"),
                             .minute = &fields::startMinute},
                            {.field = fields::endHour,
                             .kind = Kind::Number,
                             .heading = RS_TEXT("End Time"),
                             .minute = &fields::endMinute},
                            {.field = fields::events, .kind = Kind::List},
                            {.field = fields::alarmOut, .kind = Kind::AlarmOutputs},
                        });
    grid->setHorizontalSpacing(6);
    grid->setColumnStretch(6, 1);

    auto *layout = new QVBoxLayout(area);
    layout->addLayout(countRow);
    layout->addLayout(grid);
    layout->addStretch(1);
}

// Lines past the number in use keep their values but take no part.
void CRemoteCameraAlarmOutDlg::enableLinesInUse()
{
    for (int line = 0; line < int(m_lineWidgets.size()); ++line) {
        for (QWidget *w : std::as_const(m_lineWidgets[line]))
            w->setEnabled(line < m_lineCount->value());
    }
}

void CRemoteCameraAlarmOutDlg::afterFill()
{
    enableLinesInUse();
}

void CRemoteCameraAlarmOutDlg::fillControls(QByteArrayView section, Source source)
{
    if (source != Source::DefaultFile) {
        CSetupPage::fillControls(section, source);
        return;
    }
    // The default file restores the outputs; the schedule stays as shown.
    QByteArray shown = sectionBuffer();
    gatherControls(shown);
    shown.replace(OutputsFirst, OutputsLength, section.sliced(OutputsFirst, OutputsLength));
    CSetupPage::fillControls(shown, source);
}
