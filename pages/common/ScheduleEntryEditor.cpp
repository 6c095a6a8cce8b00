// SPDX-License-Identifier: GPL-3.0-or-later

#include "pages/common/ScheduleEntryEditor.h"

#include "i18n/Translator.h"
#include "pages/common/CRemoteChannelSel.h"
#include "setup/Fields.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QSpinBox>
#include <QToolButton>

using namespace Qt::StringLiterals;
using setup::FieldInfo;
namespace fields = setup::fields::schedule;

namespace {

constexpr quint32 ChannelBits = 0xFFFF;

int itemOf(const FieldInfo &field, quint32 value)
{
    for (std::size_t k = 0; k < field.valueNames.size(); ++k) {
        if (field.valueNames[k].value == value)
            return int(k);
    }
    return -1;
}

QComboBox *listOf(const FieldInfo &field, QWidget *parent)
{
    auto *list = new QComboBox(parent);
    for (const setup::ValueName &name : field.valueNames)
        list->addItem(nelib::tr(name.name), name.value);
    return list;
}

// The shown value, or the stored one while the control shows that value.
quint32 shownOr(const QComboBox *list, quint32 stored)
{
    return list->currentIndex() >= 0 ? list->currentData().toUInt() : stored;
}

quint32 shownOr(const QSpinBox *box, quint32 stored)
{
    const quint32 shown = quint32(box->value());
    return shown == std::clamp(stored, quint32(box->minimum()), quint32(box->maximum())) ? stored
                                                                                         : shown;
}

// Hours and minutes with two digits, as a clock shows them.
class TimeBox : public QSpinBox
{
public:
    using QSpinBox::QSpinBox;

protected:
    QString textFromValue(int value) const override
    {
        return QStringLiteral("%1").arg(value, 2, 10, QLatin1Char('0'));
    }
};

} // namespace

// The controls are created in row order, which is also their tab order.
ScheduleEntryEditor::ScheduleEntryEditor(int index, QWidget *parent)
    : FieldEditor(fields::entry, index, 0, parent)
    , m_number(new QLabel(QString::number(index + 1), parent))
    , m_day(listOf(fields::day, parent))
{
    const QString line = u' ' + QString::number(index + 1);
    m_number->setAlignment(Qt::AlignCenter);
    nameControl(m_day, nelib::tr(fields::day.label) + line);
    connect(m_day, &QComboBox::activated, this, &FieldEditor::edited);

    const FieldInfo timeFields[]
        = {fields::startHour, fields::startMinute, fields::endHour, fields::endMinute};
    const QString timeNames[] = {
        nelib::tr("Start Time") + line + u' ' + nelib::tr("Hour"),
        nelib::tr("Start Time") + line + u' ' + nelib::tr("Minute"),
        nelib::tr("End Time") + line + u' ' + nelib::tr("Hour"),
        nelib::tr("End Time") + line + u' ' + nelib::tr("Minute"),
    };
    for (int t = 0; t < 4; ++t) {
        auto *box = new TimeBox(parent);
        box->setRange(int(timeFields[t].lowest()), int(timeFields[t].highest()));
        box->setWrapping(true);
        box->setAlignment(Qt::AlignRight);
        box->setAccessibleName(timeNames[t]);
        connect(box, &QSpinBox::valueChanged, this, &FieldEditor::edited);
        m_times[t] = box;
        if (t % 2 == 0)
            m_colons[t / 2] = new QLabel(u":"_s, parent);
    }

    m_mode = listOf(fields::mode, parent);
    nameControl(m_mode, nelib::tr(fields::mode.label) + line);
    connect(m_mode, &QComboBox::activated, this, &FieldEditor::edited);

    m_channelText = new ElidedLineEdit(parent);
    m_channelButton = new QToolButton(parent);
    m_channelText->setAccessibleName(nelib::tr(fields::channels.label) + line);
    m_channelButton->setAccessibleName(m_channelText->accessibleName() + u" ..."_s);
    m_channelButton->setText(u"..."_s);
    connect(m_channelButton, &QToolButton::clicked, this, &ScheduleEntryEditor::chooseChannels);
    setEntry(Entry {});
}

ScheduleEntryEditor::~ScheduleEntryEditor() = default;

QList<QWidget *> ScheduleEntryEditor::rowWidgets() const
{
    return {m_number,    m_day,      m_times[0], m_colons[0],   m_times[1],     m_times[2],
            m_colons[1], m_times[3], m_mode,     m_channelText, m_channelButton};
}

ScheduleEntryEditor::Entry ScheduleEntryEditor::entry() const
{
    Entry e;
    e.day = shownOr(m_day, m_stored.day);
    e.startHour = shownOr(m_times[0], m_stored.startHour);
    e.startMinute = shownOr(m_times[1], m_stored.startMinute);
    e.endHour = shownOr(m_times[2], m_stored.endHour);
    e.endMinute = shownOr(m_times[3], m_stored.endMinute);
    e.mode = shownOr(m_mode, m_stored.mode);
    e.channels = m_channels;
    return e;
}

void ScheduleEntryEditor::setEntry(const Entry &entry)
{
    m_stored = entry;
    m_day->setCurrentIndex(itemOf(fields::day, entry.day));
    m_mode->setCurrentIndex(itemOf(fields::mode, entry.mode));
    const quint32 times[] = {entry.startHour, entry.startMinute, entry.endHour, entry.endMinute};
    for (int t = 0; t < 4; ++t) {
        const QSignalBlocker quiet(m_times[t]);
        m_times[t]->setValue(int(std::min(times[t], quint32(m_times[t]->maximum()))));
    }
    m_channels = entry.channels;
    showChannels();
}

void ScheduleEntryEditor::chooseChannels()
{
    if (!m_channelDialog) {
        m_channelDialog = new CRemoteChannelSel(m_channelText->window());
        connect(m_channelDialog, &QDialog::accepted, this, [this] {
            const quint32 chosen = (m_channels & ~ChannelBits) | m_channelDialog->selection();
            if (chosen == m_channels)
                return;
            m_channels = chosen;
            showChannels();
            Q_EMIT edited();
        });
    }
    m_channelDialog->setWindowTitle(m_channelText->accessibleName());
    m_channelDialog->setChannelCount(m_channelCount);
    m_channelDialog->setSelection(quint16(m_channels & ChannelBits));
    m_channelDialog->open();
}

// The channels of the mask as "1,2,5".
void ScheduleEntryEditor::showChannels()
{
    QString text;
    for (int c = 0; c < 16; ++c) {
        if (m_channels & (1u << c))
            text += nelib::tr("%d,").replace(u"%d"_s, QString::number(c + 1));
    }
    text.chop(1);
    m_channelText->setFullText(text);
}

QWidget *ScheduleEntryEditor::widget() const
{
    return m_day;
}

void ScheduleEntryEditor::fill(const setup::SectionView &section)
{
    if (!m_inUse)
        return;
    const int i = index();
    auto read = [&](const FieldInfo &field) {
        return section.number(field, i);
    };
    setEntry({read(fields::day), read(fields::startHour), read(fields::startMinute),
              read(fields::endHour), read(fields::endMinute), read(fields::mode),
              read(fields::channels)});
}

void ScheduleEntryEditor::gather(setup::SectionEdit &section) const
{
    if (!m_inUse)
        return;
    const int i = index();
    const Entry e = entry();
    const std::pair<FieldInfo, quint32> values[] = {
        {fields::day, e.day},
        {fields::startHour, e.startHour},
        {fields::startMinute, e.startMinute},
        {fields::endHour, e.endHour},
        {fields::endMinute, e.endMinute},
        {fields::mode, e.mode},
        {fields::channels, e.channels},
    };
    for (const auto &[field, value] : values)
        section.setNumber(field, value, i);
}

void ScheduleEntryEditor::copyFrom(const FieldEditor &other)
{
    setEntry(static_cast<const ScheduleEntryEditor &>(other).entry());
}
