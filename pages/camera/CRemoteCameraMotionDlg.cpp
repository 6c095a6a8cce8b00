// SPDX-License-Identifier: GPL-3.0-or-later

#include "pages/camera/CRemoteCameraMotionDlg.h"

#include "i18n/Translator.h"
#include "pages/common/MotionMaskEditor.h"
#include "pages/common/NumberListEditor.h"
#include "setup/Fields.h"

#include <QButtonGroup>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QRadioButton>
#include <QStackedWidget>
#include <QVBoxLayout>

namespace fields = setup::fields::motion;
using Kind = FieldEditor::Kind;

namespace {

constexpr const char *ViewNames[] = {
    RS_TEXT("Time Setting"),
    RS_TEXT("Day Setting"),
    RS_TEXT("Night Setting"),
    RS_TEXT("Action"),
};

QWidget *gridView(QGridLayout *grid, QWidget *view)
{
    auto *layout = new QVBoxLayout(view);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addLayout(grid);
    layout->addStretch(1);
    return view;
}

} // namespace

CRemoteCameraMotionDlg::CRemoteCameraMotionDlg(QWidget *parent)
    : CSetupPage(parent)
{
    setSection(setup::Section::Motion);
}

CRemoteCameraMotionDlg::~CRemoteCameraMotionDlg() = default;

void CRemoteCameraMotionDlg::buildControls()
{
    QWidget *area = contentArea();
    m_views = new QButtonGroup(this);
    m_stack = new QStackedWidget(area);
    auto *selector = new QHBoxLayout;
    for (int v = 0; v < int(std::size(ViewNames)); ++v) {
        auto *button = new QRadioButton(nelib::tr(ViewNames[v]), area);
        button->setAccessibleName(button->text());
        m_views->addButton(button, v);
        selector->addWidget(button);
    }
    selector->addStretch(1);
    connect(m_views, &QButtonGroup::idClicked, this, [this](int v) { showView(View(v)); });

    // One copy group per view: a copy stays within the view shown.
    binder().setCopyGroup(TimeView);
    auto *timeView = new QWidget(m_stack);
    QGridLayout *time = binder().channelGrid(timeView, {
                                                           {.field = fields::dayStartHour,
                                                            .kind = Kind::Number,
                                                            .copy = RS_TEXT("Day Time"),
                                                            .heading = RS_TEXT("Day Time"),
                                                            .minute = &fields::dayStartMinute},
                                                           {.field = fields::nightStartHour,
                                                            .kind = Kind::Number,
                                                            .copy = RS_TEXT("Day Time"),
                                                            .heading = RS_TEXT("Night Time"),
                                                            .minute = &fields::nightStartMinute},
                                                       });
    time->setColumnStretch(3, 1);
    m_stack->addWidget(gridView(time, timeView));
    for (bool night : {false, true}) {
        binder().setCopyGroup(night ? NightView : DayView);
        auto *view = new QWidget(m_stack);
        // The two settings have the same columns; their names tell them apart.
        QGridLayout *grid
            = binder().grid(view,
                            {.heading = nelib::tr("Ch."),
                             .name = nelib::tr(ViewNames[night ? NightView : DayView])},
                            {
                                {night ? fields::nightSensitivity : fields::daySensitivity,
                                 Kind::List, RS_TEXT("Sensitivity")},
                                {night ? fields::nightMinBlocks : fields::dayMinBlocks,
                                 Kind::Number, RS_TEXT("Min Blocks")},
                                {night ? fields::nightMask : fields::dayMask, Kind::Bits,
                                 RS_TEXT("Mask Zone"), false, -1, MotionMaskEditor::factory(night)},
                            });
        grid->setColumnStretch(4, 1);
        m_stack->addWidget(gridView(grid, view));
    }
    binder().setCopyGroup(ActionView);
    auto *action = new QWidget(m_stack);
    QGridLayout *grid = binder().channelGrid(
        action, {
                    {fields::beep, Kind::Check, RS_TEXT("Beep"), true},
                    {fields::alarmOut, Kind::AlarmOutputs, RS_TEXT("Alarm-Out")},
                    {fields::dwell, Kind::List, nullptr, false, -1,
                     NumberListEditor::factory(RS_TEXT("%2d Sec"))},
                });
    grid->setColumnStretch(4, 1);
    m_stack->addWidget(gridView(grid, action));

    auto *layout = new QVBoxLayout(area);
    layout->addLayout(selector);
    layout->addWidget(m_stack, 1);
    addCopySettings([this] { return m_stack->currentIndex(); });
    showView(TimeView);
}

void CRemoteCameraMotionDlg::showView(View view)
{
    m_views->button(view)->setChecked(true);
    m_stack->setCurrentIndex(view);
}

bool CRemoteCameraMotionDlg::checksSaveRules() const
{
    return m_stack && m_stack->currentIndex() == TimeView;
}
