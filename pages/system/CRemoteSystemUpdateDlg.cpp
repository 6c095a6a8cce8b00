// SPDX-License-Identifier: GPL-3.0-or-later

#include "pages/system/CRemoteSystemUpdateDlg.h"

#include "firmware/FirmwareUploader.h"
#include "i18n/Translator.h"
#include "pages/common/CTransparentStatic.h"
#include "pages/common/FileDialogFilter.h"
#include "session/CWork.h"
#include "session/MessageSink.h"
#include "session/ProgramExit.h"
#include "setup/SetupRecordMap.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;
using firmware::FirmwarePackage;
using firmware::FirmwareUploader;
using firmware::FirmwareVersion;
using setup::SetupRecordMap;

namespace {

// Start and Cancel stand a little apart from the fields they act on.
constexpr int ButtonGap = 12;

bool sessionReady(const CWork *work)
{
    return work && work->state() == CWork::Ready;
}

QLineEdit *readOnlyField(const QString &name, QWidget *parent)
{
    auto *field = new QLineEdit(parent);
    field->setReadOnly(true);
    field->setAccessibleName(name);
    return field;
}

QPushButton *button(const QString &text, QWidget *parent)
{
    auto *button = new QPushButton(text, parent);
    button->setAccessibleName(text);
    return button;
}

} // namespace

CRemoteSystemUpdateDlg::CRemoteSystemUpdateDlg(QWidget *parent)
    : CSetupPage(parent)
    , m_chooseFile([](QWidget *parent, const QString &filter) {
        return QFileDialog::getOpenFileName(parent, nelib::tr("Open"), QString(), filter);
    })
{ }

CRemoteSystemUpdateDlg::~CRemoteSystemUpdateDlg() = default;

void CRemoteSystemUpdateDlg::buildControls()
{
    QWidget *content = contentArea();
    const QString softwareVersion = nelib::tr("S/W Version");
    const QString fileName = nelib::tr("File Name");
    const QString updateVersion = nelib::tr("Update Version");
    const QString progress = nelib::tr("Progress");

    m_softwareVersion = readOnlyField(softwareVersion, content);
    m_fileName = readOnlyField(fileName, content);
    m_updateVersion = readOnlyField(updateVersion, content);
    m_progress = new QProgressBar(content);
    m_progress->setAccessibleName(progress);
    m_progress->setRange(0, 100);
    m_progress->setValue(0);

    m_open = button(nelib::tr("Open"), content);
    m_start = button(nelib::tr("Start"), content);
    m_cancel = button(nelib::tr("Cancel"), content);
    connect(m_open, &QPushButton::clicked, this, &CRemoteSystemUpdateDlg::openPackage);
    connect(m_start, &QPushButton::clicked, this, &CRemoteSystemUpdateDlg::startUpload);
    connect(m_cancel, &QPushButton::clicked, this, &CRemoteSystemUpdateDlg::cancelUpload);

    auto *grid = new QGridLayout;
    grid->setHorizontalSpacing(14);
    grid->setColumnStretch(1, 1);
    grid->addWidget(new CTransparentStatic(softwareVersion, content), 0, 0);
    grid->addWidget(m_softwareVersion, 0, 1);
    grid->addWidget(new CTransparentStatic(fileName, content), 1, 0);
    grid->addWidget(m_fileName, 1, 1);
    grid->addWidget(m_open, 1, 2);
    grid->addWidget(new CTransparentStatic(updateVersion, content), 2, 0);
    grid->addWidget(m_updateVersion, 2, 1);
    grid->addWidget(new CTransparentStatic(progress, content), 3, 0);
    grid->addWidget(m_progress, 3, 1, 1, 2);

    auto *buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(m_start);
    buttons->addWidget(m_cancel);

    auto *layout = new QVBoxLayout(content);
    layout->addLayout(grid);
    layout->addSpacing(ButtonGap);
    layout->addLayout(buttons);
    layout->addStretch(1);
    updateButtons();
}

void CRemoteSystemUpdateDlg::load(const QByteArray &mirror, int channelCount)
{
    CSetupPage::load(mirror, channelCount);
    m_softwareVersion->setText(
        mirror.size() == SetupRecordMap::RecordSize
            ? FirmwareVersion::fromBytes(mirror, SetupRecordMap::SoftwareVersionOffset).toString()
            : QString());
    updateButtons();
}

void CRemoteSystemUpdateDlg::openPackage()
{
    const QString path
        = m_chooseFile(this, FileDialogFilter::toQt(nelib::tr("KRP Files (*.KRP)|*.KRP;||")));
    if (!path.isEmpty())
        choosePackage(path);
}

// A package that does not hold together is refused now, before the recorder
// hears of it; the earlier choice goes too, so that Start never sends a file
// other than the one named on the page.
void CRemoteSystemUpdateDlg::choosePackage(const QString &path)
{
    FirmwarePackage::Fault fault = FirmwarePackage::Fault::None;
    m_package = FirmwarePackage::open(path, &fault);
    m_fileName->setText(m_package ? QFileInfo(path).fileName() : QString());
    m_updateVersion->setText(m_package ? m_package->version().toString() : QString());
    updateButtons();
    if (!m_package)
        MessageSink::show(FirmwarePackage::faultMessage(fault));
}

void CRemoteSystemUpdateDlg::startUpload()
{
    CWork *work = CWork::instance();
    if (m_uploader || !m_package || !sessionReady(work)) {
        updateButtons();
        return;
    }
    m_uploader = new FirmwareUploader(*work, *m_package);
    work->adoptUpload(m_uploader);
    m_canceled = false;
    m_progress->setValue(0);
    connect(m_uploader, &FirmwareUploader::percentageChanged, this,
            &CRemoteSystemUpdateDlg::showProgress);
    // Queued: the message box must not run inside the uploader's own call.
    connect(
        m_uploader, &FirmwareUploader::finished, this,
        [this](FirmwareUploader::Outcome outcome) { uploadEnded(int(outcome)); },
        Qt::QueuedConnection);
    // A session that ends stops the upload; Start then follows the session.
    connect(m_uploader, &QObject::destroyed, this, &CRemoteSystemUpdateDlg::updateButtons,
            Qt::QueuedConnection);
    updateButtons();
    m_uploader->start();
}

void CRemoteSystemUpdateDlg::cancelUpload()
{
    if (!m_uploader || m_canceled)
        return;
    // The transfer ends after the chunk on its way; the bar stays where the
    // operator stopped it.
    m_uploader->cancel();
    m_canceled = true;
    updateButtons();
    MessageSink::show(nelib::tr("Update canceled"));
}

void CRemoteSystemUpdateDlg::showProgress(int percent)
{
    if (!m_canceled)
        m_progress->setValue(percent);
}

void CRemoteSystemUpdateDlg::uploadEnded(int outcome)
{
    const auto ended = FirmwareUploader::Outcome(outcome);
    if (m_uploader)
        m_uploader->deleteLater();
    m_uploader = nullptr;
    updateButtons();
    if (const QString text = FirmwareUploader::message(ended); !text.isEmpty())
        MessageSink::show(text);
    if (FirmwareUploader::endsProgram(ended))
        ProgramExit::exitProgram(0);
}

void CRemoteSystemUpdateDlg::updateButtons()
{
    const bool running = m_uploader != nullptr;
    m_open->setEnabled(!running);
    m_start->setEnabled(!running && m_package && sessionReady(CWork::instance()));
    m_cancel->setEnabled(running && !m_canceled);
}
