// SPDX-License-Identifier: GPL-3.0-or-later

#include "pages/common/FieldEditor.h"

#include "i18n/CodePage.h"
#include "i18n/Translator.h"
#include "pages/common/ChannelSelectionEditor.h"
#include "pages/common/TextLimitValidator.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QRegularExpressionValidator>
#include <QSpinBox>

using namespace Qt::StringLiterals;
using setup::FieldInfo;

FieldEditor::FieldEditor(const FieldInfo &field, int i, int j, QObject *parent)
    : QObject(parent)
    , m_field(field)
    , m_i(i)
    , m_j(j)
{ }

FieldEditor::~FieldEditor() = default;

void FieldEditor::setAccessibleName(const QString &name)
{
    nameControl(widget(), name);
}

namespace {

constexpr QLatin1StringView HiddenLabel("accessibleLabel");

} // namespace

void FieldEditor::nameControl(QWidget *control, const QString &name)
{
    control->setAccessibleName(name);
    // Screen readers on Linux read a list as its current item and learn
    // what the list is from its label; a list without a label of its own
    // gets one that is never shown.
    auto *list = qobject_cast<QComboBox *>(control);
    QWidget *parent = control->parentWidget();
    if (!list || !parent)
        return;
    for (QLabel *label : parent->findChildren<QLabel *>(Qt::FindDirectChildrenOnly)) {
        if (label->buddy() == list) {
            if (label->objectName() == HiddenLabel)
                label->setText(name);
            return;
        }
    }
    auto *label = new QLabel(name, parent);
    label->setObjectName(QString(HiddenLabel));
    label->setTextFormat(Qt::PlainText);
    label->setBuddy(list);
    label->hide();
}

quint32 FieldEditor::number(const setup::SectionView &section) const
{
    return section.number(m_field, m_i, m_j);
}

void FieldEditor::setNumber(setup::SectionEdit &section, quint32 value) const
{
    section.setNumber(m_field, value, m_i, m_j);
}

QByteArrayView FieldEditor::bytes(const setup::SectionView &section) const
{
    return section.bytes(m_field, m_i, m_j);
}

void FieldEditor::setBytes(setup::SectionEdit &section, QByteArrayView value) const
{
    section.setBytes(m_field, value, m_i, m_j);
}

namespace {

class CheckEditor : public FieldEditor
{
public:
    CheckEditor(const FieldInfo &field, int i, int j, QWidget *parent)
        : FieldEditor(field, i, j, parent)
        , m_box(new QCheckBox(parent))
    {
        connect(m_box, &QCheckBox::clicked, this, &FieldEditor::edited);
    }
    QWidget *widget() const override { return m_box; }
    void fill(const setup::SectionView &section) override
    {
        m_box->setChecked(number(section) != 0);
    }
    void gather(setup::SectionEdit &section) const override
    {
        setNumber(section, m_box->isChecked() ? 1 : 0);
    }
    void copyFrom(const FieldEditor &other) override
    {
        m_box->setChecked(static_cast<const CheckEditor &>(other).m_box->isChecked());
    }

private:
    QCheckBox *m_box;
};

// A value the list does not name selects nothing, and gather then keeps the
// stored value: the page never rewrites what it cannot show.
class ListEditor : public FieldEditor
{
public:
    ListEditor(const FieldInfo &field, int i, int j, QWidget *parent)
        : FieldEditor(field, i, j, parent)
        , m_list(new QComboBox(parent))
    {
        for (const setup::ValueName &name : field.valueNames)
            m_list->addItem(nelib::tr(name.name), name.value);
        m_list->setCurrentIndex(-1);
        connect(m_list, &QComboBox::activated, this, &FieldEditor::edited);
    }
    QWidget *widget() const override { return m_list; }
    void fill(const setup::SectionView &section) override
    {
        m_list->setCurrentIndex(m_list->findData(number(section)));
    }
    void gather(setup::SectionEdit &section) const override
    {
        if (m_list->currentIndex() >= 0)
            setNumber(section, m_list->currentData().toUInt());
    }
    void copyFrom(const FieldEditor &other) override
    {
        m_list->setCurrentIndex(static_cast<const ListEditor &>(other).m_list->currentIndex());
    }

private:
    QComboBox *m_list;
};

class NumberEditor : public FieldEditor
{
public:
    NumberEditor(const FieldInfo &field, int i, int j, QWidget *parent)
        : FieldEditor(field, i, j, parent)
        , m_box(new QSpinBox(parent))
    {
        // A spin box holds an int; wider unsigned ranges stop at its top.
        constexpr qint64 top = std::numeric_limits<int>::max();
        m_box->setRange(int(std::clamp(field.lowest(), -top - 1, top)),
                        int(std::min(field.highest(), top)));
        connect(m_box, &QSpinBox::valueChanged, this, &FieldEditor::edited);
    }
    QWidget *widget() const override { return m_box; }
    void fill(const setup::SectionView &section) override
    {
        m_raw = number(section);
        const qint64 value = field().type == setup::FieldType::I32 ? qint64(qint32(m_raw)) : m_raw;
        m_box->setValue(int(std::clamp<qint64>(value, m_box->minimum(), m_box->maximum())));
        m_shown = m_box->value();
    }
    // A value outside the range shows clamped, and stays stored until the
    // operator picks another.
    void gather(setup::SectionEdit &section) const override
    {
        setNumber(section, m_box->value() == m_shown ? m_raw : quint32(m_box->value()));
    }
    void copyFrom(const FieldEditor &other) override
    {
        m_box->setValue(static_cast<const NumberEditor &>(other).m_box->value());
    }

private:
    QSpinBox *m_box;
    quint32 m_raw = 0;
    int m_shown = 0;
};

class TextEditor : public FieldEditor
{
public:
    TextEditor(const FieldInfo &field, int i, int j, QWidget *parent)
        : FieldEditor(field, i, j, parent)
        , m_edit(new QLineEdit(parent))
        , m_limit(new TextLimitValidator(m_edit))
    {
        m_limit->setLimit(field.width);
        m_edit->setValidator(m_limit);
        connect(m_edit, &QLineEdit::textChanged, this, &FieldEditor::edited);
    }
    QWidget *widget() const override { return m_edit; }
    void fill(const setup::SectionView &section) override
    {
        // Up to the first zero byte; a text that fills the field has none.
        const QByteArrayView stored = bytes(section);
        const qsizetype end = stored.indexOf('\0');
        m_limit->setText(m_edit,
                         nelib::CodePage::system().decode(end < 0 ? stored : stored.first(end)));
    }
    void gather(setup::SectionEdit &section) const override
    {
        setBytes(section, nelib::CodePage::system().encode(m_edit->text(), field().width));
    }
    void copyFrom(const FieldEditor &other) override
    {
        m_limit->setText(m_edit, static_cast<const TextEditor &>(other).m_edit->text());
    }

private:
    QLineEdit *m_edit;
    TextLimitValidator *m_limit;
};

// Four bytes shown as a.b.c.d. Text that is no address yet (while typing)
// leaves the stored bytes as they are.
class AddressEditor : public FieldEditor
{
public:
    AddressEditor(const FieldInfo &field, int i, int j, QWidget *parent)
        : FieldEditor(field, i, j, parent)
        , m_edit(new QLineEdit(parent))
    {
        static const QRegularExpression address(
            uR"((?:(?:25[0-5]|2[0-4]\d|1\d\d|[1-9]?\d)\.){0,3}(?:25[0-5]|2[0-4]\d|1\d\d|[1-9]?\d)?)"_s);
        m_edit->setValidator(new QRegularExpressionValidator(address, m_edit));
        connect(m_edit, &QLineEdit::textChanged, this, &FieldEditor::edited);
    }
    QWidget *widget() const override { return m_edit; }
    void fill(const setup::SectionView &section) override
    {
        const QByteArrayView stored = bytes(section);
        QStringList parts;
        for (char c : stored)
            parts.append(QString::number(quint8(c)));
        m_edit->setText(parts.join(u'.'));
    }
    void gather(setup::SectionEdit &section) const override
    {
        const QStringList parts = m_edit->text().split(u'.');
        if (parts.size() != field().width)
            return;
        QByteArray value;
        for (const QString &part : parts) {
            bool ok = false;
            const uint n = part.toUInt(&ok);
            if (!ok || n > 255)
                return;
            value.append(char(n));
        }
        setBytes(section, value);
    }
    void copyFrom(const FieldEditor &other) override
    {
        m_edit->setText(static_cast<const AddressEditor &>(other).m_edit->text());
    }

private:
    QLineEdit *m_edit;
};

class BitsEditor : public FieldEditor
{
public:
    BitsEditor(const FieldInfo &field, int i, int j, QWidget *parent)
        : FieldEditor(field, i, j, parent)
        , m_box(new QWidget(parent))
    {
        auto *layout = new QHBoxLayout(m_box);
        layout->setContentsMargins(0, 0, 0, 0);
        for (const setup::ValueName &bit : field.bitNames) {
            auto *box = new QCheckBox(nelib::tr(bit.name), m_box);
            layout->addWidget(box);
            m_bits.append(box);
            m_named |= bit.value;
            connect(box, &QCheckBox::clicked, this, &FieldEditor::edited);
        }
        layout->addStretch(1);
    }
    QWidget *widget() const override { return m_box; }
    // Each box by the element's name and its bit's, so that rows of the same
    // bits differ.
    void setAccessibleName(const QString &name) override
    {
        m_box->setAccessibleName(name);
        for (QCheckBox *box : std::as_const(m_bits))
            box->setAccessibleName(name + u' ' + box->text());
    }
    void fill(const setup::SectionView &section) override
    {
        const quint32 value = number(section);
        for (qsizetype k = 0; k < m_bits.size(); ++k)
            m_bits[k]->setChecked(value & field().bitNames[k].value);
    }
    void gather(setup::SectionEdit &section) const override
    {
        quint32 value = number(section) & ~m_named;
        for (qsizetype k = 0; k < m_bits.size(); ++k) {
            if (m_bits[k]->isChecked())
                value |= field().bitNames[k].value;
        }
        setNumber(section, value);
    }
    void copyFrom(const FieldEditor &other) override
    {
        const auto &from = static_cast<const BitsEditor &>(other);
        for (qsizetype k = 0; k < m_bits.size(); ++k)
            m_bits[k]->setChecked(from.m_bits[k]->isChecked());
    }

private:
    QWidget *m_box;
    QList<QCheckBox *> m_bits;
    quint32 m_named = 0;
};

} // namespace

FieldEditor *FieldEditor::create(Kind kind, const FieldInfo &field, int i, int j, QWidget *parent)
{
    switch (kind) {
    case Kind::Check:
        return new CheckEditor(field, i, j, parent);
    case Kind::List:
        return new ListEditor(field, i, j, parent);
    case Kind::Number:
        return new NumberEditor(field, i, j, parent);
    case Kind::Text:
        return new TextEditor(field, i, j, parent);
    case Kind::Address:
        return new AddressEditor(field, i, j, parent);
    case Kind::Bits:
        return new BitsEditor(field, i, j, parent);
    case Kind::Channels:
        return new ChannelSelectionEditor(ChannelSelectionEditor::Dialog::Channels, field, i, j,
                                          parent);
    case Kind::AlarmOutputs:
        return new ChannelSelectionEditor(ChannelSelectionEditor::Dialog::AlarmOutputs, field, i, j,
                                          parent);
    }
    return nullptr;
}
