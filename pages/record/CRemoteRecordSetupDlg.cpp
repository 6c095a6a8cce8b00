// SPDX-License-Identifier: GPL-3.0-or-later

#include "pages/record/CRemoteRecordSetupDlg.h"

#include "i18n/Translator.h"
#include "pages/common/CTransparentStatic.h"
#include "pages/common/ColumnCheckBox.h"
#include "pages/common/MirroredListEditor.h"
#include "pages/common/ResolutionEditor.h"
#include "pages/record/CRemoteRecordCopySettingDlg.h"
#include "session/CWork.h"
#include "setup/Fields.h"
#include "setup/RecordProfiles.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLayoutItem>
#include <QPushButton>
#include <QStackedWidget>
#include <QVBoxLayout>

#include <span>

namespace fields = setup::fields::record;
namespace values = setup::fields::values;
using setup::FieldInfo;
using Kind = FieldEditor::Kind;
using namespace Qt::StringLiterals;

namespace {

constexpr const char *ModeNames[] = {
    RS_TEXT("Normal"),
    RS_TEXT("Event"),
    RS_TEXT("Pre-Event"),
    RS_TEXT("Panic"),
};

// The header list of the Dwell Time column offers more than its channel lists.
constexpr int HeaderDwellSeconds = 30;

QStringList textsOf(std::span<const setup::ValueName> items)
{
    QStringList texts;
    for (const setup::ValueName &item : items)
        texts.append(nelib::tr(item.name));
    return texts;
}

std::span<const setup::ValueName> resolutions(bool pal)
{
    return pal ? std::span(values::resolutionPal) : std::span(values::resolutionNtsc);
}

std::span<const setup::ValueName> frameRates(bool pal)
{
    return pal ? std::span(values::frameRatePal) : std::span(values::frameRateNtsc);
}

// The value items of a column's header list, after the column's name.
QStringList headerItems(const FieldInfo &field, bool pal)
{
    if (field == fields::resolution)
        return textsOf(resolutions(pal));
    if (field == fields::frameRates)
        return textsOf(frameRates(pal));
    if (field == fields::qualities)
        return textsOf(values::quality);
    if (field == fields::dwell) {
        QStringList texts;
        for (int seconds = 1; seconds <= HeaderDwellSeconds; ++seconds)
            texts.append(nelib::tr("%d Sec").replace(u"%d"_s, QString::number(seconds)));
        return texts;
    }
    return textsOf(field.valueNames);
}

FieldEditor *makeResolution(const FieldInfo &field, int i, int j, QWidget *parent)
{
    return new ResolutionEditor(field, fields::widthCode, fields::heightCode,
                                textsOf(values::resolutionNtsc), i, j, parent);
}

FieldEditor *makeQuality(const FieldInfo &field, int i, int j, QWidget *parent)
{
    return new MirroredListEditor(field, fields::quality, fields::qualityCopy, values::quality, i,
                                  j, parent);
}

FieldEditor *makeFrameRate(const FieldInfo &field, int i, int j, QWidget *parent)
{
    return new MirroredListEditor(field, fields::frameRate, fields::frameRateCopy,
                                  values::frameRateNtsc, i, j, parent);
}

} // namespace

CRemoteRecordSetupDlg::CRemoteRecordSetupDlg(QWidget *parent)
    : CSetupPage(parent)
{
    setSection(setup::Section::RecordSetup);
}

CRemoteRecordSetupDlg::~CRemoteRecordSetupDlg() = default;

int CRemoteRecordSetupDlg::recordMode() const
{
    return m_mode ? m_mode->currentIndex() : Normal;
}

void CRemoteRecordSetupDlg::load(const QByteArray &mirror, int channelCount)
{
    const CWork *work = CWork::instance();
    setVideoStandard(work ? work->videoStandard() : 0);
    CSetupPage::load(mirror, channelCount);
}

void CRemoteRecordSetupDlg::setVideoStandard(int standard)
{
    const bool pal = standard != 0;
    if (pal == m_pal)
        return;
    m_pal = pal;
    if (m_mode)
        applyVideoStandard();
}

QGridLayout *CRemoteRecordSetupDlg::modeGrid(QWidget *parent, int mode)
{
    // A copy stays within the mode shown; the modes' controls differ by name.
    binder().setCopyGroup(mode);
    const SectionBinder::Rows rows {.heading = nelib::tr("Ch."),
                                    .name = nelib::tr(ModeNames[mode])};
    const SectionBinder::Column profile[] = {
        {fields::resolution, Kind::List, RS_TEXT("Resolution"), false, mode, makeResolution, false},
        {fields::qualities, Kind::List, RS_TEXT("Quality"), false, mode, makeQuality, false},
        {fields::frameRates, Kind::List, RS_TEXT("FPS"), false, mode, makeFrameRate, false},
    };
    if (mode != PreEvent)
        return binder().grid(parent, rows, profile);
    // The header box stands alone above its column, under the "Ch." heading.
    QGridLayout *grid = binder().grid(
        parent, rows,
        {
            {fields::preEvent, Kind::Check, nullptr, true, mode, {}, false},
            profile[0],
            profile[1],
            profile[2],
            {fields::eventType, Kind::List, RS_TEXT("Type"), false, mode, {}, false},
            {fields::dwell, Kind::List, RS_TEXT("Dwell Time"), false, mode, {}, false},
        });
    for (int row = 0; row < MaxChannels; ++row) {
        QCheckBox *box = binder().widget<QCheckBox>(fields::preEvent, mode, row);
        for (const FieldInfo &field : columnsOf(mode)) {
            if (field != fields::preEvent)
                m_preEventLists[row].append(binder().editor(field, mode, row)->widget());
        }
        m_preEventBoxes[row] = box;
        connect(box, &QCheckBox::toggled, this, [this, row] { updatePreEventRow(row); });
    }
    return grid;
}

void CRemoteRecordSetupDlg::buildControls()
{
    auto *modeLabel = new CTransparentStatic(nelib::tr("Record Mode"), contentArea());
    m_mode = new QComboBox(contentArea());
    for (const char *name : ModeNames)
        m_mode->addItem(nelib::tr(name));
    m_mode->setAccessibleName(modeLabel->text());
    modeLabel->setBuddy(m_mode);
    auto *modeRow = new QHBoxLayout;
    modeRow->addWidget(modeLabel);
    modeRow->addWidget(m_mode);
    modeRow->addStretch(1);

    m_grids = new QStackedWidget(contentArea());
    for (int mode = 0; mode < ModeCount; ++mode) {
        auto *gridPage = new QWidget(m_grids);
        QGridLayout *grid = modeGrid(gridPage, mode);
        // Each column's heading is a list that sets the whole column.
        const QList<FieldInfo> columns = columnsOf(mode);
        for (int c = 0; c < columns.size(); ++c) {
            const FieldInfo &field = columns[c];
            if (field == fields::preEvent)
                continue;
            const int at = c + 1;
            auto *header = new QComboBox(gridPage);
            FieldEditor::nameControl(header,
                                     nelib::tr(ModeNames[mode]) + u' ' + nelib::tr(field.label));
            grid->addWidget(header, 0, at);
            m_headers[mode].append(header);
            connect(header, &QComboBox::activated, this, [this, mode, field, header](int item) {
                applyHeader(mode, field, item);
                header->setCurrentIndex(0);
            });
        }
        grid->setHorizontalSpacing(8);
        grid->setColumnStretch(columns.size() + 1, 1);
        auto *layout = new QVBoxLayout(gridPage);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->addLayout(grid);
        layout->addStretch(1);
        m_grids->addWidget(gridPage);
    }
    applyVideoStandard();

    auto *layout = new QVBoxLayout(contentArea());
    layout->addLayout(modeRow);
    layout->addWidget(m_grids, 1);
    connect(m_mode, &QComboBox::currentIndexChanged, this, [this] {
        showMode();
        // A mode's values are shown afresh, as after a load.
        setModified(false);
    });
    connect(copySettingsButton(), &QPushButton::clicked, this,
            &CRemoteRecordSetupDlg::copySettings);
}

QList<FieldInfo> CRemoteRecordSetupDlg::columnsOf(int mode)
{
    if (mode == PreEvent)
        return {fields::preEvent,   fields::resolution, fields::qualities,
                fields::frameRates, fields::eventType,  fields::dwell};
    return {fields::resolution, fields::qualities, fields::frameRates};
}

void CRemoteRecordSetupDlg::applyVideoStandard()
{
    const QStringList resolutionTexts = textsOf(resolutions(m_pal));
    const QStringList frameRateTexts = textsOf(frameRates(m_pal));
    for (int mode = 0; mode < ModeCount; ++mode) {
        for (int row = 0; row < MaxChannels; ++row) {
            static_cast<CodedListEditor *>(binder().editor(fields::resolution, mode, row))
                ->setItemTexts(resolutionTexts);
            static_cast<CodedListEditor *>(binder().editor(fields::frameRates, mode, row))
                ->setItemTexts(frameRateTexts);
        }
        const QList<FieldInfo> columns = columnsOf(mode);
        int h = 0;
        for (const FieldInfo &field : columns) {
            if (field == fields::preEvent)
                continue;
            QComboBox *header = m_headers[mode][h++];
            header->clear();
            header->addItem(nelib::tr(field.label));
            header->addItems(headerItems(field, m_pal));
        }
    }
}

void CRemoteRecordSetupDlg::afterFill()
{
    showMode();
}

void CRemoteRecordSetupDlg::prepareSave(QByteArray &section)
{
    setup::SectionEdit profiles = edit(section);
    setup::RecordProfiles::normalise(profiles, channelCount());
}

void CRemoteRecordSetupDlg::showMode()
{
    const int mode = recordMode();
    m_grids->setCurrentIndex(mode);
    for (QComboBox *header : std::as_const(m_headers[mode]))
        header->setCurrentIndex(0);
    for (int row = 0; row < MaxChannels; ++row)
        updatePreEventRow(row);
}

// A channel's Pre-Event profile counts only while the channel records before
// events, so its lists are enabled only then.
void CRemoteRecordSetupDlg::updatePreEventRow(int row)
{
    for (QWidget *list : std::as_const(m_preEventLists[row]))
        list->setEnabled(m_preEventBoxes[row]->isChecked());
    if (ColumnCheckBox *header = binder().headerBox(fields::preEvent))
        header->update();
}

// Selects item - 1 in every shown channel's list of the column, as the
// operator would; a value a channel list does not offer leaves it empty.
void CRemoteRecordSetupDlg::applyHeader(int mode, const FieldInfo &field, int item)
{
    if (item < 1)
        return;
    for (int row = 0; row < channelCount(); ++row)
        binder().widget<QComboBox>(field, mode, row)->setCurrentIndex(item - 1);
    markModified();
}

void CRemoteRecordSetupDlg::copySettings()
{
    if (!m_copyDialog) {
        m_copyDialog = new CRemoteRecordCopySettingDlg(this);
        // The Pre-Event columns hold every property a copy can carry.
        m_copyDialog->offer(binder().copyProperties(PreEvent));
        connect(m_copyDialog, &QDialog::accepted, this,
                [this] { binder().copy(recordMode(), *m_copyDialog); });
    }
    m_copyDialog->setChannelCount(channelCount());
    m_copyDialog->open();
}
