#include "pages/common/CSetupPage.h"

#include "i18n/Translator.h"

#include <QCoreApplication>
#include <QHBoxLayout>
#include <QPushButton>
#include <QStackedWidget>
#include <QStyle>
#include <QTabBar>
#include <QVBoxLayout>

#include <algorithm>

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
    , m_binder(new SectionBinder(this))
{
    connect(m_binder, &SectionBinder::edited, this, &CSetupPage::markModified);
}

CSetupPage::~CSetupPage() = default;

void CSetupPage::setSection(setup::Section section)
{
    m_section = section;
    const setup::SectionInfo &info = SetupRecordMap::section(section);
    m_buffer = QByteArray(info.length, '\0');
    m_saved = m_buffer;
    m_binder->setBase(info.offset);
}

// The sections nested in the page's own that none of its controls edits.
void CSetupPage::takeNestedSections()
{
    const QByteArray record = m_records ? m_records() : QByteArray();
    if (record.size() != SetupRecordMap::RecordSize)
        return;
    const setup::SectionInfo &own = SetupRecordMap::section(*m_section);
    const auto edited = [this](const setup::SectionInfo &nested) {
        return std::any_of(m_binder->bindings().begin(), m_binder->bindings().end(),
                           [&nested](const SectionBinder::Binding &b) {
                               const setup::FieldInfo &f = b.editor->field();
                               const int at
                                   = f.elementOffset(b.editor->index(), b.editor->index2());
                               return at < nested.end() && at + f.width > nested.offset;
                           });
    };
    for (const setup::SectionInfo &nested : SetupRecordMap::Sections) {
        if (nested.id != own.id && nested.offset >= own.offset && nested.end() <= own.end()
            && !edited(nested))
            m_buffer.replace(nested.offset - own.offset, nested.length,
                             record.sliced(nested.offset, nested.length));
    }
}

QString CSetupPage::defaultSetupPath()
{
    const QString &path = defaultSetupPathOverride();
    return path.isEmpty() ? QCoreApplication::applicationDirPath() + u"/DEFDVRSETUP.DAT"_s : path;
}

void CSetupPage::setDefaultSetupPath(const QString &path)
{
    defaultSetupPathOverride() = path;
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
    connect(m_defaultButton, &QPushButton::clicked, this, [this] { loadDefault(); });
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

void CSetupPage::openCopySettings(int copyMode)
{
    openCopySettings(copyMode, [this](int source, int target, const auto &properties) {
        m_binder->copyRow(source, target, properties);
    });
}

void CSetupPage::addCopySettings(int copyMode)
{
    connect(copySettingsButton(), &QPushButton::clicked, this,
            [this, copyMode] { openCopySettings(copyMode); });
}

void CSetupPage::addChannelRow(int index, std::initializer_list<QWidget *> widgets)
{
    m_binder->addRowWidgets(index, widgets);
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
    m_binder->setChannelCount(m_channelCount);
    if (shown)
        show();
}

void CSetupPage::load(const QByteArray &mirror, int channelCount)
{
    loadSection(m_section ? SetupRecordMap::slice(mirror, SetupRecordMap::section(*m_section))
                          : QByteArrayView(),
                channelCount);
}

void CSetupPage::loadSection(QByteArrayView section, int channelCount)
{
    ensureBuilt();
    m_channelCount = std::clamp(channelCount, 1, int(MaxChannels));
    if (section.size() == m_buffer.size() && !section.isEmpty()) {
        m_buffer = section.toByteArray();
        m_saved = m_buffer;
    }
    m_binder->setChannelCount(m_channelCount);
    fill();
}

void CSetupPage::fillControls(QByteArrayView section, Source)
{
    m_binder->fill(section);
}

void CSetupPage::gatherControls(QByteArray &section)
{
    m_binder->gather(section);
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
    takeNestedSections();
    const int result = m_writer ? m_writer(*m_section, m_buffer) : 0;
    if (result) {
        m_saved = m_buffer;
        setModified(false);
    }
    return result;
}

bool CSetupPage::needsSave()
{
    if (!m_built)
        return false;
    QByteArray shown = m_buffer;
    gatherControls(shown);
    return shown != m_saved;
}

void CSetupPage::cancel()
{
    fill();
}

void CSetupPage::loadDefault()
{
    if (!m_section)
        return;
    // A missing or short default setup shows zeros, never stale memory.
    QByteArray defaults = m_defaults ? m_defaults() : QByteArray();
    defaults.resize(SetupRecordMap::RecordSize, '\0');
    loadDefault(SetupRecordMap::slice(defaults, SetupRecordMap::section(*m_section)));
}

void CSetupPage::loadDefault(QByteArrayView section)
{
    if (!m_section || section.size() != m_buffer.size())
        return;
    ensureBuilt();
    fillControls(section, Source::DefaultFile);
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
