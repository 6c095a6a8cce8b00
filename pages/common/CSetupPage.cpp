// SPDX-License-Identifier: GPL-3.0-or-later

#include "pages/common/CSetupPage.h"

#include "pages/common/CRemoteCameraCopySettingDlg.h"

#include "i18n/Translator.h"
#include "session/MessageSink.h"
#include "setup/SaveRules.h"
#include "setup/SetupFiles.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QStackedWidget>
#include <QStyle>
#include <QTabBar>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>
#include <vector>

using namespace Qt::StringLiterals;
using setup::SetupRecordMap;

namespace {

// The light blue of the page tabs.
constexpr QRgb TabColour = qRgb(191, 219, 255);

// The record offsets [first, last) that `length` bytes from `offset` share
// with the section buffer at `bufferOffset`: the whole buffer counts, which
// may span more than the page's first section.
std::pair<int, int> overlap(int offset, qsizetype length, int bufferOffset, qsizetype bufferSize)
{
    return {std::max(offset, bufferOffset),
            std::min(offset + int(length), bufferOffset + int(bufferSize))};
}

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
    setSections(section, section);
}

void CSetupPage::setSections(setup::Section first, setup::Section last)
{
    m_section = first;
    m_sections.clear();
    for (int s = int(first); s <= int(last); ++s)
        m_sections.push_back(setup::Section(s));
    m_offset = SetupRecordMap::section(first).offset;
    m_buffer = QByteArray(SetupRecordMap::section(last).end() - m_offset, '\0');
    m_saved = m_buffer;
    m_binder->setBase(m_offset);
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

void CSetupPage::addCopySettings(std::function<int()> group)
{
    connect(copySettingsButton(), &QPushButton::clicked, this, [this, group] {
        if (!m_copyDialog) {
            m_copyDialog = new CRemoteCameraCopySettingDlg(this);
            connect(m_copyDialog, &QDialog::accepted, this,
                    [this] { m_binder->copy(m_copyGroup, *m_copyDialog); });
        }
        m_copyGroup = group ? group() : 0;
        m_copyDialog->offer(m_binder->copyProperties(m_copyGroup));
        m_copyDialog->setChannelCount(m_channelCount);
        m_copyDialog->open();
    });
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
    keepSection(mirror, channelCount);
    ensureBuilt();
    m_binder->setChannelCount(m_channelCount);
    fill();
}

void CSetupPage::keepSection(const QByteArray &mirror, int channelCount)
{
    const bool whole = m_section && mirror.size() == SetupRecordMap::RecordSize;
    takeSection(whole ? QByteArrayView(mirror).sliced(m_offset, m_buffer.size()) : QByteArrayView(),
                channelCount);
}

void CSetupPage::loadSection(QByteArrayView section, int channelCount)
{
    takeSection(section, channelCount);
    ensureBuilt();
    m_binder->setChannelCount(m_channelCount);
    fill();
}

void CSetupPage::takeSection(QByteArrayView section, int channelCount)
{
    m_channelCount = std::clamp(channelCount, 1, int(MaxChannels));
    if (section.size() == m_buffer.size() && !section.isEmpty()) {
        m_buffer = section.toByteArray();
        m_saved = m_buffer;
    }
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
    prepareSave(m_buffer);
    if (checksSaveRules()) {
        if (const auto refusal
            = setup::SaveRules::refusal(*m_section, view(m_buffer), m_channelCount)) {
            MessageSink::show(*refusal);
            return 0;
        }
    }
    takeNestedSections();
    // The operator hears of one save: the session keeps quiet about the
    // first acknowledgement.
    if (m_sections.size() > 1 && m_silencer)
        m_silencer();
    int result = 0;
    for (setup::Section section : m_sections) {
        const setup::SectionInfo &info = SetupRecordMap::section(section);
        const QByteArray bytes = m_buffer.mid(info.offset - m_offset, info.length);
        result = m_writer ? m_writer(section, bytes) : 0;
        if (!result)
            break;
        m_saved.replace(info.offset - m_offset, info.length, bytes);
    }
    if (result)
        setModified(false);
    return result;
}

int CSetupPage::saveSection(setup::Section section)
{
    if (std::find(m_sections.begin(), m_sections.end(), section) == m_sections.end())
        return 0;
    gather();
    const setup::SectionInfo &info = SetupRecordMap::section(section);
    const QByteArray bytes = m_buffer.mid(info.offset - m_offset, info.length);
    const int result = m_writer ? m_writer(section, bytes) : 0;
    if (result) {
        m_saved.replace(info.offset - m_offset, info.length, bytes);
        if (m_saved == m_buffer)
            setModified(false);
    }
    return result;
}

void CSetupPage::takeNestedSections()
{
    const QByteArray record = m_records ? m_records() : QByteArray();
    if (record.size() != SetupRecordMap::RecordSize)
        return;
    const int end = m_offset + int(m_buffer.size());
    const auto edits = [this](const setup::SectionInfo &other) {
        for (const SectionBinder::Binding &b : m_binder->bindings()) {
            const setup::FieldInfo &f = b.editor->field();
            const int at = f.elementOffset(b.editor->index(), b.editor->index2());
            if (at < other.end() && at + f.width > other.offset)
                return true;
        }
        return false;
    };
    for (const setup::SectionInfo &other : SetupRecordMap::Sections) {
        const bool own
            = std::find(m_sections.begin(), m_sections.end(), other.id) != m_sections.end();
        if (!own && other.offset >= m_offset && other.end() <= end && !edits(other))
            m_buffer.replace(other.offset - m_offset, other.length,
                             record.mid(other.offset, other.length));
    }
}

bool CSetupPage::needsSave()
{
    if (!m_built)
        return false;
    QByteArray shown = m_buffer;
    gatherControls(shown);
    return shown != m_saved;
}

void CSetupPage::recordWritten(int offset, QByteArrayView bytes)
{
    const auto [from, to] = overlap(offset, bytes.size(), m_offset, m_buffer.size());
    if (from >= to)
        return;
    QByteArray shown = m_buffer;
    if (m_built)
        gatherControls(shown);
    const QByteArray before = m_saved;
    const QByteArray fresh = bytes.sliced(from - offset, to - from).toByteArray();
    m_buffer.replace(from - m_offset, to - from, fresh);
    m_saved.replace(from - m_offset, to - from, fresh);
    if (!m_built)
        return;
    if (!m_modified) {
        fill();
        return;
    }
    // A field the operator changed stays whole; every other byte is the new one.
    std::vector<bool> edited(m_buffer.size());
    for (qsizetype at = 0; at < m_buffer.size(); ++at)
        edited[at] = shown[at] != before[at];
    for (const SectionBinder::Binding &b : m_binder->bindings()) {
        if (b.row >= m_channelCount)
            continue;
        const setup::FieldInfo &f = b.editor->field();
        const int first = f.elementOffset(b.editor->index(), b.editor->index2()) - m_offset;
        if (first < 0 || first + f.width > int(edited.size()))
            continue;
        const auto element = edited.begin() + first;
        if (std::find(element, element + f.width, true) != element + f.width)
            std::fill(element, element + f.width, true);
    }
    for (int at = from - m_offset; at < to - m_offset; ++at) {
        if (!edited[at])
            shown[at] = m_buffer[at];
    }
    fillControls(shown, Source::SectionBuffer);
    afterFill();
}

void CSetupPage::writeRefused(int offset, QByteArrayView held)
{
    const auto [from, to] = overlap(offset, held.size(), m_offset, m_buffer.size());
    if (from >= to)
        return;
    // The controls keep the edits; Cancel returns to what the recorder holds.
    const QByteArray kept = held.sliced(from - offset, to - from).toByteArray();
    m_buffer.replace(from - m_offset, to - from, kept);
    m_saved.replace(from - m_offset, to - from, kept);
    setModified(true);
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
    loadDefault(QByteArrayView(defaults).sliced(m_offset, m_buffer.size()));
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
