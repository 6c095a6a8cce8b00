// SPDX-License-Identifier: GPL-3.0-or-later

#include "pages/common/SectionBinder.h"

#include "i18n/Translator.h"
#include "pages/common/CTransparentStatic.h"
#include "pages/common/ColumnCheckBox.h"

#include <QCheckBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QHBoxLayout>

namespace {

QString labelOf(const setup::FieldInfo &field)
{
    return field.label ? nelib::tr(field.label) : QString::fromLatin1(field.name);
}

} // namespace

SectionBinder::SectionBinder(QObject *parent)
    : QObject(parent)
{ }

SectionBinder::~SectionBinder() = default;

QString SectionBinder::channelNumber(int row)
{
    return QString::asprintf("%02d", row + 1);
}

FieldEditor *SectionBinder::add(FieldEditor *editor, int row, int copyProperty,
                                bool rowIsSecondIndex)
{
    editor->setParent(this);
    editor->setChannelCount(m_channelCount);
    m_bindings.push_back({editor, row, copyProperty, rowIsSecondIndex});
    connect(editor, &FieldEditor::edited, this, &SectionBinder::edited);
    if (row >= 0 && row < MaxChannels)
        m_rows[row].push_back(editor->widget());
    return editor;
}

void SectionBinder::addRowWidgets(int row, std::initializer_list<QWidget *> widgets)
{
    if (row < 0 || row >= MaxChannels)
        return;
    m_rows[row].insert(m_rows[row].end(), widgets);
    for (QWidget *w : widgets)
        w->setVisible(row < m_channelCount);
}

QGridLayout *SectionBinder::channelGrid(QWidget *parent, std::initializer_list<Column> columns)
{
    auto *grid = new QGridLayout;
    grid->setHorizontalSpacing(14);
    grid->setVerticalSpacing(3);
    grid->addWidget(new CTransparentStatic(nelib::tr("Ch."), parent), 0, 0);

    int c = 1;
    for (const Column &column : columns) {
        const QString label = labelOf(column.field);
        QList<QCheckBox *> boxes;
        for (int row = 0; row < MaxChannels; ++row) {
            const int i = column.fixed >= 0 ? column.fixed : row;
            const int j = column.fixed >= 0 ? row : 0;
            FieldEditor *made = column.make
                                    ? column.make(column.field, i, j, parent)
                                    : FieldEditor::create(column.kind, column.field, i, j, parent);
            FieldEditor *e = add(made, row, column.copyProperty, column.fixed >= 0);
            e->setAccessibleName(label + u' ' + channelNumber(row));
            grid->addWidget(e->widget(), row + 1, c);
            if (auto *box = qobject_cast<QCheckBox *>(e->widget()))
                boxes.append(box);
        }
        if (column.headerBox && !boxes.isEmpty()) {
            auto *header = new QCheckBox(parent);
            header->setAccessibleName(label);
            auto *heading = new QHBoxLayout;
            heading->setSpacing(4);
            heading->addWidget(header);
            if (column.labelled)
                heading->addWidget(new CTransparentStatic(label, parent), 1);
            grid->addLayout(heading, 0, c);
            auto *columnBox = new ColumnCheckBox(header, boxes, this);
            connect(columnBox, &ColumnCheckBox::columnClicked, this, &SectionBinder::edited);
            m_headerBoxes.emplace_back(column.field, columnBox);
        } else if (column.labelled) {
            grid->addWidget(new CTransparentStatic(label, parent), 0, c);
        }
        ++c;
    }
    for (int row = 0; row < MaxChannels; ++row) {
        auto *number = new CTransparentStatic(channelNumber(row), parent);
        grid->addWidget(number, row + 1, 0);
        addRowWidgets(row, {number});
    }
    setChannelCount(m_channelCount);
    return grid;
}

QFormLayout *SectionBinder::form(QWidget *parent, std::initializer_list<Item> items)
{
    auto *layout = new QFormLayout;
    for (const Item &item : items) {
        QString label = labelOf(item.field);
        // Elements of one repeated field share the label; their number tells them apart.
        if (item.field.count > 1)
            label += u' ' + QString::number(item.i + 1);
        FieldEditor *e = add(FieldEditor::create(item.kind, item.field, item.i, item.j, parent));
        e->setAccessibleName(label);
        auto *text = new CTransparentStatic(label, parent);
        text->setBuddy(e->widget());
        layout->addRow(text, e->widget());
    }
    return layout;
}

QHBoxLayout *SectionBinder::timeEditor(QWidget *parent, const setup::FieldInfo &hour,
                                       const setup::FieldInfo &minute, int i, int row,
                                       int copyProperty, const QString &name)
{
    auto *time = new QHBoxLayout;
    time->setSpacing(2);
    FieldEditor *h = add(FieldEditor::create(Kind::Number, hour, i, 0, parent), row, copyProperty);
    h->setAccessibleName(name + QStringLiteral(" hh"));
    auto *colon = new CTransparentStatic(QStringLiteral(":"), parent);
    addRowWidgets(row, {colon});
    FieldEditor *m
        = add(FieldEditor::create(Kind::Number, minute, i, 0, parent), row, copyProperty);
    m->setAccessibleName(name + QStringLiteral(" mm"));
    time->addWidget(h->widget());
    time->addWidget(colon);
    time->addWidget(m->widget());
    return time;
}

FieldEditor *SectionBinder::editor(const setup::FieldInfo &field, int i, int j) const
{
    for (const Binding &b : m_bindings) {
        if (b.editor->field() == field && b.editor->index() == i && b.editor->index2() == j)
            return b.editor;
    }
    return nullptr;
}

ColumnCheckBox *SectionBinder::headerBox(const setup::FieldInfo &field) const
{
    for (const auto &[f, box] : m_headerBoxes) {
        if (f == field)
            return box;
    }
    return nullptr;
}

void SectionBinder::setChannelCount(int count)
{
    m_channelCount = std::clamp(count, 1, int(MaxChannels));
    for (const Binding &b : m_bindings)
        b.editor->setChannelCount(m_channelCount);
    for (int row = 0; row < MaxChannels; ++row) {
        for (QWidget *w : m_rows[row])
            w->setVisible(row < m_channelCount);
    }
}

bool SectionBinder::inUse(const Binding &binding) const
{
    return binding.row < m_channelCount;
}

void SectionBinder::fill(QByteArrayView section)
{
    const setup::SectionView view(section, m_base);
    for (const Binding &b : m_bindings) {
        if (inUse(b))
            b.editor->fill(view);
    }
    for (const auto &entry : m_headerBoxes)
        entry.second->update();
}

void SectionBinder::gather(QByteArray &section) const
{
    setup::SectionEdit edit(section, m_base);
    for (const Binding &b : m_bindings) {
        if (inUse(b))
            b.editor->gather(edit);
    }
}

void SectionBinder::copyRow(int source, int target,
                            const CRemoteCameraCopySettingDlg::Properties &properties)
{
    for (const Binding &from : m_bindings) {
        if (from.row != source || from.copyProperty < 0 || !properties[from.copyProperty])
            continue;
        for (const Binding &to : m_bindings) {
            // The same element but for the row: a mode's grid copies within the mode.
            const bool sameOther = from.rowIsSecondIndex
                                       ? to.editor->index() == from.editor->index()
                                       : to.editor->index2() == from.editor->index2();
            if (to.row == target && sameOther && to.editor->field() == from.editor->field())
                to.editor->copyFrom(*from.editor);
        }
    }
}
