#include "pages/common/CRemoteCameraCopySettingDlg.h"

#include "i18n/Translator.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QVBoxLayout>

#include <algorithm>
#include <span>

using namespace Qt::StringLiterals;

namespace {

constexpr const char *PropertyNames[] = {
    RS_TEXT("Title"),      RS_TEXT("Covert"),      RS_TEXT("Audio"),      RS_TEXT("Type"),
    RS_TEXT("Beep"),       RS_TEXT("Alarm-Out"),   RS_TEXT("Dwell Time"), RS_TEXT("Day Time"),
    RS_TEXT("Min Blocks"), RS_TEXT("Sensitivity"), RS_TEXT("Mask Zone"),  RS_TEXT("Protocol"),
    RS_TEXT("Baudrate"),   RS_TEXT("Data Bits"),   RS_TEXT("Stop Bits"),  RS_TEXT("Parity"),
    RS_TEXT("PTZ Speed"),
};
static_assert(std::size(PropertyNames) == CRemoteCameraCopySettingDlg::PropertyCount);

constexpr const char *ChannelNames[] = {
    RS_TEXT("Ch 01"), RS_TEXT("Ch 02"), RS_TEXT("Ch 03"), RS_TEXT("Ch 04"),
    RS_TEXT("Ch 05"), RS_TEXT("Ch 06"), RS_TEXT("Ch 07"), RS_TEXT("Ch 08"),
    RS_TEXT("Ch 09"), RS_TEXT("Ch 10"), RS_TEXT("Ch 11"), RS_TEXT("Ch 12"),
    RS_TEXT("Ch 13"), RS_TEXT("Ch 14"), RS_TEXT("Ch 15"), RS_TEXT("Ch 16"),
};
static_assert(std::size(ChannelNames) == CRemoteCameraCopySettingDlg::Channels);

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
    : QDialog(parent)
{
    setWindowTitle(nelib::tr("Copy Settings"));

    auto *fromLabel = new QLabel(nelib::tr("From"), this);
    m_from = new QComboBox(this);
    for (const char *name : ChannelNames)
        m_from->addItem(nelib::tr(name));
    m_from->setAccessibleName(nelib::tr("From"));
    fromLabel->setBuddy(m_from);
    auto *fromRow = new QHBoxLayout;
    fromRow->addWidget(fromLabel);
    fromRow->addWidget(m_from);
    fromRow->addStretch(1);

    auto *propertyGroup = new QGroupBox(nelib::tr("Properties"), this);
    auto *propertyLayout = new QVBoxLayout(propertyGroup);
    for (int p = 0; p < PropertyCount; ++p) {
        m_propertyBoxes[p] = new QCheckBox(nelib::tr(PropertyNames[p]), propertyGroup);
        m_propertyBoxes[p]->setAccessibleName(m_propertyBoxes[p]->text());
        propertyLayout->addWidget(m_propertyBoxes[p]);
    }

    // Channel boxes four to a row, so that all sixteen fit the dialog's fixed size.
    auto *targetGroup = new QGroupBox(nelib::tr("To"), this);
    auto *targetLayout = new QVBoxLayout(targetGroup);
    m_selectAll = new QCheckBox(nelib::tr("Select All"), targetGroup);
    m_selectAll->setAccessibleName(m_selectAll->text());
    targetLayout->addWidget(m_selectAll);
    auto *channelGrid = new QGridLayout;
    for (int c = 0; c < Channels; ++c) {
        m_channelBoxes[c] = new QCheckBox(nelib::tr(ChannelNames[c]), targetGroup);
        m_channelBoxes[c]->setAccessibleName(nelib::tr("To") + u' ' + m_channelBoxes[c]->text());
        channelGrid->addWidget(m_channelBoxes[c], c / 4, c % 4);
    }
    targetLayout->addLayout(channelGrid);

    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    buttons->button(QDialogButtonBox::Ok)->setText(nelib::tr("OK"));
    buttons->button(QDialogButtonBox::Cancel)->setText(nelib::tr("Cancel"));

    auto *layout = new QVBoxLayout(this);
    layout->addLayout(fromRow);
    layout->addWidget(propertyGroup);
    layout->addWidget(targetGroup);
    layout->addStretch(1);
    layout->addWidget(buttons);

    connect(m_from, &QComboBox::currentIndexChanged, this,
            &CRemoteCameraCopySettingDlg::sourceChanged);
    connect(m_selectAll, &QCheckBox::clicked, this, &CRemoteCameraCopySettingDlg::selectAllClicked);
    connect(buttons, &QDialogButtonBox::accepted, this, &CRemoteCameraCopySettingDlg::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &CRemoteCameraCopySettingDlg::reject);
}

void CRemoteCameraCopySettingDlg::setCopyMode(int mode)
{
    m_copyMode = mode;
}

void CRemoteCameraCopySettingDlg::setChannelCount(int count)
{
    m_channelCount = std::clamp(count, 1, int(Channels));
}

void CRemoteCameraCopySettingDlg::setVisible(bool visible)
{
    if (visible && !isVisible())
        prepare();
    QDialog::setVisible(visible);
}

// Every opening starts from the first channel as the source and shows the
// choices of the last OK; what a cancelled run ticked is forgotten.
void CRemoteCameraCopySettingDlg::prepare()
{
    const std::span<const P> offered = propertiesOf(m_copyMode);
    for (int p = 0; p < PropertyCount; ++p) {
        m_propertyBoxes[p]->setChecked(m_properties[p] != 0);
        m_propertyBoxes[p]->setVisible(std::find(offered.begin(), offered.end(), P(p))
                                       != offered.end());
    }
    m_selectAll->setChecked(false);
    for (int c = 0; c < Channels; ++c) {
        m_channelBoxes[c]->setChecked(m_targets[c] != 0);
        m_channelBoxes[c]->setVisible(c < m_channelCount);
    }
    if (m_from->currentIndex() == 0)
        sourceChanged(0);
    else
        m_from->setCurrentIndex(0);

    const QRect area = (parentWidget() ? parentWidget() : this)->screen()->geometry();
    move(area.x() + area.width() / 2 - 210, area.y() + area.height() / 2 - 225);
    resize(350, 500);
}

void CRemoteCameraCopySettingDlg::sourceChanged(int index)
{
    for (int c = 0; c < Channels; ++c)
        m_channelBoxes[c]->setEnabled(c != index);
}

void CRemoteCameraCopySettingDlg::selectAllClicked(bool checked)
{
    const int source = m_from->currentIndex();
    for (int c = 0; c < Channels; ++c)
        m_channelBoxes[c]->setChecked(checked && c != source);
}

void CRemoteCameraCopySettingDlg::accept()
{
    m_source = m_from->currentIndex();
    for (int p = 0; p < PropertyCount; ++p)
        m_properties[p] = m_propertyBoxes[p]->isChecked() ? 1 : 0;
    for (int c = 0; c < Channels; ++c)
        m_targets[c] = m_channelBoxes[c]->isChecked() ? 1 : 0;
    QDialog::accept();
}

void CRemoteCameraCopySettingDlg::applyCopy(const CopyRow &copyRow) const
{
    for (int c = 0; c < Channels; ++c) {
        if (m_targets[c])
            copyRow(m_source, c, m_properties);
    }
}
