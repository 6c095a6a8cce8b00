#include "pages/common/CSetupPage.h"

#include "i18n/Translator.h"
#include "session/CWork.h"
#include "setup/SetupFiles.h"

#include <QFile>
#include <QHBoxLayout>
#include <QPushButton>
#include <QStackedWidget>
#include <QStyle>
#include <QTabBar>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;
using setup::SetupRecordMap;

namespace {

// The colour of the page tabs, as installers know it from the recorder tools.
constexpr QRgb TabColour = qRgb(191, 219, 255);

QString &defaultSetupPathOverride()
{
    static QString path;
    return path;
}

} // namespace

CSetupPage::CSetupPage(QWidget *parent)
    : QWidget(parent)
    , m_rows(MaxChannels)
{ }

CSetupPage::~CSetupPage() = default;

void CSetupPage::setSection(setup::Section section)
{
    m_section = section;
    m_buffer = QByteArray(SetupRecordMap::section(section).length, '\0');
}

QString CSetupPage::defaultSetupPath()
{
    const QString &path = defaultSetupPathOverride();
    return path.isEmpty() ? setup::SetupFiles::defaultFilePath() : path;
}

void CSetupPage::setDefaultSetupPath(const QString &path)
{
    defaultSetupPathOverride() = path;
}

QString CSetupPage::channelNumber(int index)
{
    return QString::asprintf("%02d", index + 1);
}

void CSetupPage::createFrame()
{
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    m_tabs = new QTabBar(this);
    m_tabs->setExpanding(false);
    m_tabs->setDrawBase(true);
    m_tabs->setStyleSheet(
        u"QTabBar::tab { background: %1; padding: 4px 18px; }"
        "QTabBar::tab:selected { font-weight: bold; }"_s.arg(QColor(TabColour).name()));
    m_tabPages = new QStackedWidget(this);
    connect(m_tabs, &QTabBar::currentChanged, m_tabPages, &QStackedWidget::setCurrentIndex);
    layout->addWidget(m_tabs);
    layout->addWidget(m_tabPages, 1);

    m_buttonRow = new QHBoxLayout;
    // The tab strip runs edge to edge; the buttons keep the content's margins.
    const int margin = style()->pixelMetric(QStyle::PM_LayoutLeftMargin);
    m_buttonRow->setContentsMargins(margin, 0, margin, margin);
    m_defaultButton = new QPushButton(nelib::tr("Default"), this);
    m_saveButton = new QPushButton(nelib::tr("Save"), this);
    m_saveButton->setEnabled(false);
    m_buttonRow->addWidget(m_defaultButton);
    m_buttonRow->addStretch(1);
    m_buttonRow->addWidget(m_saveButton);
    layout->addLayout(m_buttonRow);
    connect(m_defaultButton, &QPushButton::clicked, this, &CSetupPage::loadDefault);
    connect(m_saveButton, &QPushButton::clicked, this, [this] { save(); });
    m_defaultButton->setVisible(hasSaveAction());
    m_saveButton->setVisible(hasSaveAction());
    setTabs({nelib::tr("Setup")});
}

void CSetupPage::setTabs(const QStringList &labels)
{
    while (m_tabs->count() > 0) {
        m_tabs->removeTab(0);
        QWidget *old = m_tabPages->widget(0);
        m_tabPages->removeWidget(old);
        delete old;
    }
    for (const QString &label : labels) {
        m_tabs->addTab(label);
        m_tabPages->addWidget(new QWidget(m_tabPages));
    }
}

QWidget *CSetupPage::contentArea()
{
    return tabContent(0);
}

QWidget *CSetupPage::tabContent(int index)
{
    return m_tabPages->widget(index);
}

QPushButton *CSetupPage::copySettingsButton()
{
    if (!m_copyButton) {
        m_copyButton = new QPushButton(nelib::tr("Copy Settings"), this);
        m_buttonRow->insertWidget(1, m_copyButton);
    }
    return m_copyButton;
}

void CSetupPage::openCopySettings(int copyMode, const CRemoteCameraCopySettingDlg::CopyRow &copyRow)
{
    if (!m_copyDialog) {
        m_copyDialog = new CRemoteCameraCopySettingDlg(this);
        connect(m_copyDialog, &QDialog::accepted, this,
                [this] { m_copyDialog->applyCopy(m_copyRow); });
    }
    m_copyRow = copyRow;
    m_copyDialog->setChannelCount(m_channelCount);
    m_copyDialog->setCopyMode(copyMode);
    m_copyDialog->open();
}

void CSetupPage::addChannelRow(int index, std::initializer_list<QWidget *> widgets)
{
    if (index < 0 || index >= MaxChannels)
        return;
    m_rows[index].insert(m_rows[index].end(), widgets);
}

void CSetupPage::applyChannelCount()
{
    for (int i = 0; i < MaxChannels; ++i) {
        for (QWidget *w : m_rows[i])
            w->setVisible(i < m_channelCount);
    }
}

void CSetupPage::ensureBuilt()
{
    if (m_built)
        return;
    // Built hidden, so that up to sixteen rows appear at once. Showing the
    // page again also shows the new controls: children added to a widget
    // already on screen would stay hidden.
    const bool shown = isVisible();
    if (shown)
        hide();
    createFrame();
    buildControls();
    m_built = true;
    applyChannelCount();
    if (shown)
        show();
}

void CSetupPage::load(const QByteArray &mirror, int channelCount)
{
    ensureBuilt();
    m_channelCount = std::clamp(channelCount, 1, int(MaxChannels));
    if (m_section && mirror.size() == SetupRecordMap::RecordSize) {
        const setup::SectionInfo &info = SetupRecordMap::section(*m_section);
        m_buffer = mirror.sliced(info.offset, info.length);
    }
    applyChannelCount();
    fill();
}

void CSetupPage::fill()
{
    ensureBuilt();
    const bool wasModified = m_modified;
    m_modified = true;
    fillControls(m_buffer, Source::SectionBuffer);
    m_modified = wasModified;
    setModified(false);
    afterFill();
}

void CSetupPage::gather()
{
    if (m_built)
        gatherControls(m_buffer);
}

int CSetupPage::save()
{
    if (!m_section)
        return 0;
    gather();
    CWork *work = CWork::instance();
    const int result = work ? work->writeSection(*m_section, m_buffer) : 0;
    setModified(false);
    return result;
}

void CSetupPage::cancel()
{
    fill();
}

void CSetupPage::loadDefault()
{
    if (!m_section)
        return;
    ensureBuilt();
    // A missing or short file leaves zeros, never stale memory.
    QByteArray defaults(SetupRecordMap::RecordSize, '\0');
    QFile file(defaultSetupPath());
    if (file.open(QIODevice::ReadOnly)) {
        const QByteArray read = file.read(SetupRecordMap::RecordSize);
        defaults.replace(0, read.size(), read);
    }
    const setup::SectionInfo &info = SetupRecordMap::section(*m_section);
    fillControls(QByteArrayView(defaults).sliced(info.offset, info.length), Source::DefaultFile);
    afterFill();
    setModified(true);
}

void CSetupPage::markModified()
{
    if (!m_modified)
        setModified(true);
}

void CSetupPage::setModified(bool modified)
{
    const bool changed = m_modified != modified;
    m_modified = modified;
    if (m_saveButton)
        m_saveButton->setEnabled(modified);
    if (changed)
        Q_EMIT modifiedChanged(modified);
}
