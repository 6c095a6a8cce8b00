// SPDX-License-Identifier: GPL-3.0-or-later

#include "pages/system/CRemoteSystemConfigDlg.h"

#include "i18n/Translator.h"
#include "pages/common/CTransparentStatic.h"
#include "pages/common/DataFileDialog.h"
#include "pages/common/FileDialogFilter.h"
#include "pages/common/Question.h"
#include "session/CWork.h"
#include "session/MessageSink.h"
#include "session/SessionMessage.h"
#include "session/SetupTransfer.h"
#include "setup/ExportFile.h"
#include "setup/LittleEndian.h"
#include "setup/SetupFiles.h"

#include <QCoreApplication>
#include <QDir>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

using namespace Qt::StringLiterals;
using nelib::LittleEndian;
using setup::SetupRecordMap;

namespace {

constexpr int ClockRefreshMs = 1000;
// Proposed as it is in every language: installers look for this name.
constexpr QStringView ExportFileName = u"Export_SetupData";

QString formatTime(const RecorderTime &t)
{
    return QString::asprintf("%04u-%02u-%02u %02u:%02u:%02u", t.year, t.month, t.day, t.hour,
                             t.minute, t.second);
}

} // namespace

CRemoteSystemConfigDlg::CRemoteSystemConfigDlg(QWidget *parent)
    : CSetupPage(parent)
{
    m_clockTimer.setInterval(ClockRefreshMs);
    connect(&m_clockTimer, &QTimer::timeout, this, &CRemoteSystemConfigDlg::showRecorderTime);
}

CRemoteSystemConfigDlg::~CRemoteSystemConfigDlg() = default;

void CRemoteSystemConfigDlg::buildControls()
{
    QWidget *content = contentArea();

    auto *files = new QGroupBox(nelib::tr("Configuration"), content);
    auto *fileForm = new QFormLayout;
    m_fileName = new QLineEdit(files);
    m_fileName->setReadOnly(true);
    m_fileName->setAccessibleName(nelib::tr("File Name"));
    auto *fileLabel = new CTransparentStatic(nelib::tr("File Name"), files);
    fileLabel->setBuddy(m_fileName);
    fileForm->addRow(fileLabel, m_fileName);

    auto *importButton = new QPushButton(nelib::tr("Import"), files);
    auto *exportButton = new QPushButton(nelib::tr("Export"), files);
    auto *defaultButton = new QPushButton(nelib::tr("Factory Default"), files);
    // One width for the three, with room around the longest word.
    const std::initializer_list<QPushButton *> operations {importButton, exportButton,
                                                           defaultButton};
    int width = 0;
    for (QPushButton *button : operations)
        width = std::max(width, button->sizeHint().width());
    width += 2 * fontMetrics().averageCharWidth();
    auto *buttons = new QHBoxLayout;
    for (QPushButton *button : operations) {
        button->setMinimumWidth(width);
        buttons->addWidget(button);
    }
    buttons->addStretch(1);
    connect(importButton, &QPushButton::clicked, this, &CRemoteSystemConfigDlg::chooseImportFile);
    connect(exportButton, &QPushButton::clicked, this, &CRemoteSystemConfigDlg::chooseExportFile);
    connect(defaultButton, &QPushButton::clicked, this,
            &CRemoteSystemConfigDlg::restoreFactoryDefault);

    auto *filesLayout = new QVBoxLayout(files);
    filesLayout->addLayout(fileForm);
    filesLayout->addLayout(buttons);

    auto *information = new QGroupBox(nelib::tr("Information"), content);
    auto *form = new QFormLayout(information);
    form->setHorizontalSpacing(form->horizontalSpacing() * 3);
    m_model = addValue(form, nelib::tr("Model"));
    m_version = addValue(form, nelib::tr("S/W Version"));
    m_channels = addValue(form, nelib::tr("Channels"));
    m_videoStandard = addValue(form, nelib::tr("Video Standard"));
    m_alarmInputs = addValue(form, nelib::tr("Alarm Inputs"));
    m_alarmOutputs = addValue(form, nelib::tr("Alarm Outputs"));
    m_audioInputs = addValue(form, nelib::tr("Audio Inputs"));
    m_disks = addValue(form, nelib::tr("Disks"));
    m_recorderTime = addValue(form, nelib::tr("Recorder Time"));

    auto *layout = new QVBoxLayout(content);
    layout->addWidget(files);
    layout->addWidget(information);
    layout->addStretch(1);
}

QLabel *CRemoteSystemConfigDlg::addValue(QFormLayout *form, const QString &label)
{
    QWidget *group = form->parentWidget();
    auto *caption = new CTransparentStatic(label, group);
    auto *value = new QLabel(group);
    // Values take no focus, so a screen reader learns their meaning from the name.
    value->setAccessibleName(label);
    value->setTextInteractionFlags(Qt::TextSelectableByMouse);
    // In the caption's font and as tall as the caption, whose words may come
    // from a taller fallback font, so that both stand on one line.
    value->setFont(caption->font());
    value->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    value->setMinimumHeight(caption->sizeHint().height());
    form->addRow(caption, value);
    return value;
}

void CRemoteSystemConfigDlg::load(const QByteArray &mirror, int channelCount)
{
    CSetupPage::load(mirror, channelCount);
    // The recorder's clock arrives after its setup record; shown at once
    // rather than at the next tick. The connection ends with the worker.
    if (CWork *work = CWork::instance())
        connect(work, &CWork::timeAnswerReceived, this, &CRemoteSystemConfigDlg::showRecorderTime,
                Qt::UniqueConnection);
    showIdentity(mirror);
}

void CRemoteSystemConfigDlg::showIdentity(const QByteArray &mirror)
{
    if (mirror.size() == SetupRecordMap::RecordSize) {
        const int v = SetupRecordMap::SoftwareVersionOffset;
        m_model->setText(QString::number(LittleEndian::u32(mirror, SetupRecordMap::ModelIdOffset)));
        m_version->setText(u"%1.%2.%3.%4"_s.arg(LittleEndian::u8(mirror, v))
                               .arg(LittleEndian::u8(mirror, v + 1))
                               .arg(LittleEndian::u8(mirror, v + 2))
                               .arg(LittleEndian::u8(mirror, v + 3)));
    } else {
        m_model->clear();
        m_version->clear();
    }
    m_channels->setText(QString::number(channelCount()));

    const CWork *work = CWork::instance();
    if (work) {
        m_videoStandard->setText(work->videoStandard() ? nelib::tr("PAL") : nelib::tr("NTSC"));
        const auto &values = work->setupAnswerValues();
        m_alarmInputs->setNum(values.alarmInputs);
        m_alarmOutputs->setNum(values.alarmOutputs);
        m_audioInputs->setNum(values.audioInputs);
        m_disks->setNum(values.disks);
    } else {
        for (QLabel *value :
             {m_videoStandard, m_alarmInputs, m_alarmOutputs, m_audioInputs, m_disks})
            value->clear();
    }
    showRecorderTime();
}

void CRemoteSystemConfigDlg::showRecorderTime()
{
    if (!m_recorderTime)
        return;
    const CWork *work = CWork::instance();
    m_recorderTime->setText(work && work->clockValid() ? formatTime(work->clock()) : QString());
}

void CRemoteSystemConfigDlg::showEvent(QShowEvent *event)
{
    CSetupPage::showEvent(event);
    showRecorderTime();
    m_clockTimer.start();
}

void CRemoteSystemConfigDlg::hideEvent(QHideEvent *event)
{
    m_clockTimer.stop();
    CSetupPage::hideEvent(event);
}

QFileDialog *CRemoteSystemConfigDlg::openFileDialog() const
{
    for (QFileDialog *dialog : {m_importDialog, m_exportDialog}) {
        if (dialog && dialog->isVisible())
            return dialog;
    }
    return nullptr;
}

QFileDialog *CRemoteSystemConfigDlg::fileDialog(QFileDialog::AcceptMode mode)
{
    return DataFileDialog::create(
        this, mode, mode == QFileDialog::AcceptOpen ? nelib::tr("Import") : nelib::tr("Export"));
}

void CRemoteSystemConfigDlg::chooseImportFile()
{
    if (!m_importDialog) {
        m_importDialog = fileDialog(QFileDialog::AcceptOpen);
        m_importDialog->setNameFilter(
            FileDialogFilter::toQt(nelib::tr("Data Files(*.dat)|*.dat||")));
        // The label names the pattern already; the list shows it once.
        m_importDialog->setOption(QFileDialog::HideNameFilterDetails);
        connect(m_importDialog, &QDialog::accepted, this,
                [this] { importFrom(m_importDialog->selectedFiles().value(0)); });
    }
    m_importDialog->open();
}

void CRemoteSystemConfigDlg::chooseExportFile()
{
    if (!m_exportDialog) {
        m_exportDialog = fileDialog(QFileDialog::AcceptSave);
        // The translation file holds this filter as a label without a pattern part.
        m_exportDialog->setNameFilter(nelib::tr("Data File(*.dat)"));
        connect(m_exportDialog, &QDialog::accepted, this,
                [this] { exportTo(m_exportDialog->selectedFiles().value(0)); });
    }
    m_exportDialog->selectFile(ExportFileName.toString());
    m_exportDialog->open();
}

void CRemoteSystemConfigDlg::importFrom(const QString &path)
{
    if (path.isEmpty())
        return;
    m_fileName->setText(QDir::toNativeSeparators(path));
    CWork *work = CWork::instance();
    if (!work)
        return;
    // A file that cannot be imported is refused with its own message at
    // once; the recorder changes only once the operator has said Yes.
    const setup::SetupFiles::FileContents file = setup::SetupFiles::readImportFile(path);
    if (file.status != setup::SetupFiles::FileStatus::Read
        || setup::SetupFiles::importFaults(file.bytes, work->mirror())) {
        SetupTransfer::importFile(*work, path);
        return;
    }
    if (work->holdsRecordOnly()) {
        // A file opened instead of a recorder: nobody to ask about what a
        // cut file lacks.
        if (file.bytesRead < setup::ExportFile::Size)
            MessageSink::show(nelib::tr("This file can not be imported."));
        else
            replaceHeldRecord(setup::SetupFiles::importedRecord(file.bytes, work->mirror()),
                              nelib::tr("Import Success"));
        return;
    }
    QString text = nelib::tr("Import the settings of this file to the recorder %1? They replace "
                             "the settings it holds now.")
                       .arg(recorderName(*work));
    // A cut file sends zeros over what the recorder holds: the question says so.
    if (file.bytesRead < setup::ExportFile::Size)
        text = nelib::tr("This file is shorter than an export file: %1 bytes are missing.")
                   .arg(setup::ExportFile::Size - file.bytesRead)
               + u"\n\n"_s + text;
    m_question = Question::ask(this, text, [bytes = file.bytes] {
        if (CWork *work = CWork::instance())
            SetupTransfer::importData(*work, bytes);
    });
}

QString CRemoteSystemConfigDlg::recorderName(const CWork &work)
{
    return u"%1:%2"_s.arg(QString::fromLatin1(work.address())).arg(work.port());
}

void CRemoteSystemConfigDlg::exportTo(const QString &path)
{
    if (path.isEmpty())
        return;
    m_fileName->setText(QDir::toNativeSeparators(path));
    if (const CWork *work = CWork::instance())
        SetupTransfer::exportFile(*work, path);
}

// The recorder's last acknowledgement brings the success message.
void CRemoteSystemConfigDlg::restoreFactoryDefault()
{
    const CWork *work = CWork::instance();
    if (!work)
        return;
    if (work->holdsRecordOnly()) {
        replaceHeldRecord(
            setup::SetupFiles::defaultRecord(
                setup::SetupFiles::readDefaultFile(defaultSetupPath()).bytes, work->mirror()),
            nelib::tr("Default Setup Success"));
        return;
    }
    m_question = Question::ask(
        this,
        nelib::tr("Restore the factory defaults on the recorder %1? They replace the settings it "
                  "holds now.")
            .arg(recorderName(*work)),
        [this] {
            if (CWork *work = CWork::instance())
                SetupTransfer::factoryDefault(*work, defaultSetupPath());
        });
}

// The open file's record changes at once; the window reloads every page.
void CRemoteSystemConfigDlg::replaceHeldRecord(const QByteArray &record, const QString &done)
{
    CWork *work = CWork::instance();
    if (!work || record.size() != SetupRecordMap::RecordSize)
        return;
    work->restoreMirror(0, record);
    SessionMessage restored(SessionMessage::SetupRestored);
    QCoreApplication::sendEvent(window(), &restored);
    MessageSink::show(done);
}
