#include "pages/record/CRemoteRecordCopySettingDlg.h"

#include "i18n/Translator.h"
#include "setup/Fields.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

namespace {

constexpr const char *PropertyNames[] = {
    RS_TEXT("Resolution"), RS_TEXT("Quality"),    RS_TEXT("FPS"),
    RS_TEXT("Type"),       RS_TEXT("Dwell Time"),
};

QString channelName(int channel)
{
    return nelib::tr(setup::fields::values::channelBits[channel].name);
}

} // namespace

CRemoteRecordCopySettingDlg::CRemoteRecordCopySettingDlg(QWidget *parent)
    : QDialog(parent)
{
    setWindowTitle(nelib::tr("Copy Settings"));

    auto *fromLabel = new QLabel(nelib::tr("From"), this);
    m_from = new QComboBox(this);
    for (int c = 0; c < Channels; ++c)
        m_from->addItem(channelName(c));
    m_from->setAccessibleName(fromLabel->text());
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

    auto *targetGroup = new QGroupBox(nelib::tr("To"), this);
    auto *targetLayout = new QVBoxLayout(targetGroup);
    m_selectAll = new QCheckBox(nelib::tr("Select All"), targetGroup);
    m_selectAll->setAccessibleName(m_selectAll->text());
    targetLayout->addWidget(m_selectAll);
    auto *channelGrid = new QGridLayout;
    for (int c = 0; c < Channels; ++c) {
        m_channelBoxes[c] = new QCheckBox(channelName(c), targetGroup);
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
            &CRemoteRecordCopySettingDlg::sourceChanged);
    connect(m_selectAll, &QCheckBox::clicked, this, [this](bool checked) {
        for (int c = 0; c < Channels; ++c)
            m_channelBoxes[c]->setChecked(checked && c != m_from->currentIndex());
    });
    connect(buttons, &QDialogButtonBox::accepted, this, &CRemoteRecordCopySettingDlg::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &CRemoteRecordCopySettingDlg::reject);
}

void CRemoteRecordCopySettingDlg::setChannelCount(int count)
{
    m_channelCount = std::clamp(count, 1, int(Channels));
}

// Every opening starts from the first channel and shows the choices of the
// last OK; what a cancelled run ticked is forgotten.
void CRemoteRecordCopySettingDlg::setVisible(bool visible)
{
    if (visible && !isVisible()) {
        for (int p = 0; p < PropertyCount; ++p)
            m_propertyBoxes[p]->setChecked(m_properties[p]);
        m_selectAll->setChecked(false);
        for (int c = 0; c < Channels; ++c) {
            m_channelBoxes[c]->setChecked(m_targets[c]);
            m_channelBoxes[c]->setVisible(c < m_channelCount);
        }
        m_from->setCurrentIndex(0);
        sourceChanged(0);
    }
    QDialog::setVisible(visible);
}

void CRemoteRecordCopySettingDlg::sourceChanged(int index)
{
    for (int c = 0; c < Channels; ++c)
        m_channelBoxes[c]->setEnabled(c != index);
}

void CRemoteRecordCopySettingDlg::accept()
{
    m_source = m_from->currentIndex();
    for (int p = 0; p < PropertyCount; ++p)
        m_properties[p] = m_propertyBoxes[p]->isChecked();
    for (int c = 0; c < Channels; ++c)
        m_targets[c] = m_channelBoxes[c]->isChecked() && c != m_source && c < m_channelCount;
    QDialog::accept();
}
