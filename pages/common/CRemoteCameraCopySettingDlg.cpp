// SPDX-License-Identifier: GPL-3.0-or-later

#include "pages/common/CRemoteCameraCopySettingDlg.h"

#include "i18n/Translator.h"

#include <QCheckBox>
#include <QScreen>

#include <algorithm>
#include <span>

namespace {

constexpr const char *PropertyNames[] = {
    RS_TEXT("Title"),      RS_TEXT("Covert"),      RS_TEXT("Audio"),      RS_TEXT("Type"),
    RS_TEXT("Beep"),       RS_TEXT("Alarm-Out"),   RS_TEXT("Dwell Time"), RS_TEXT("Day Time"),
    RS_TEXT("Min Blocks"), RS_TEXT("Sensitivity"), RS_TEXT("Mask Zone"),  RS_TEXT("Protocol"),
    RS_TEXT("Baudrate"),   RS_TEXT("Data Bits"),   RS_TEXT("Stop Bits"),  RS_TEXT("Parity"),
    RS_TEXT("PTZ Speed"),
};
static_assert(std::size(PropertyNames) == CRemoteCameraCopySettingDlg::PropertyCount);

using P = CRemoteCameraCopySettingDlg::Property;

// The properties each copy mode offers; the page of that mode copies them.
constexpr P CameraSetupProperties[] = {P::Title, P::Covert, P::Audio};
constexpr P AlarmInProperties[] = {P::Type, P::Beep, P::AlarmOut};
constexpr P AlarmOutProperties[] = {P::Type, P::DwellTime};
constexpr P ActionProperties[] = {P::Beep, P::AlarmOut};
constexpr P DayTimeProperties[] = {P::DayTime};
constexpr P DetectionProperties[] = {P::MinBlocks, P::Sensitivity, P::MaskZone};
constexpr P PtzProperties[]
    = {P::Protocol, P::Baudrate, P::DataBits, P::StopBits, P::Parity, P::PtzSpeed};

std::span<const P> propertiesOf(int mode)
{
    switch (mode) {
    case 1:
        return CameraSetupProperties;
    case 2:
        return AlarmInProperties;
    case 3:
        return AlarmOutProperties;
    case 4:
    case 12:
        return ActionProperties;
    case 5:
        return DayTimeProperties;
    case 6:
    case 7:
        return DetectionProperties;
    case 13:
        return PtzProperties;
    default:
        return {};
    }
}

} // namespace

CRemoteCameraCopySettingDlg::CRemoteCameraCopySettingDlg(QWidget *parent)
    : CopySettingDialog(PropertyNames, parent)
{ }

void CRemoteCameraCopySettingDlg::setCopyMode(int mode)
{
    m_copyMode = mode;
}

// Each opening shows only the properties of the copy mode, in a fixed size
// at the middle of the screen.
void CRemoteCameraCopySettingDlg::setVisible(bool visible)
{
    if (visible && !isVisible()) {
        const std::span<const P> offered = propertiesOf(m_copyMode);
        for (int p = 0; p < PropertyCount; ++p)
            propertyBox(p)->setVisible(std::find(offered.begin(), offered.end(), P(p))
                                       != offered.end());
        const QRect area = (parentWidget() ? parentWidget() : this)->screen()->geometry();
        move(area.x() + area.width() / 2 - 210, area.y() + area.height() / 2 - 225);
        resize(350, 500);
    }
    CopySettingDialog::setVisible(visible);
}

CRemoteCameraCopySettingDlg::Properties CRemoteCameraCopySettingDlg::properties() const
{
    Properties properties;
    for (int p = 0; p < PropertyCount; ++p)
        properties[p] = copies(p) ? 1 : 0;
    return properties;
}

CRemoteCameraCopySettingDlg::Targets CRemoteCameraCopySettingDlg::targets() const
{
    Targets targets;
    for (int c = 0; c < Channels; ++c)
        targets[c] = targetTicked(c) ? 1 : 0;
    return targets;
}

void CRemoteCameraCopySettingDlg::applyCopy(const CopyRow &copyRow) const
{
    const Properties chosen = properties();
    for (int c = 0; c < Channels; ++c) {
        if (targetTicked(c))
            copyRow(sourceChannel(), c, chosen);
    }
}
