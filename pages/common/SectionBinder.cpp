// SPDX-License-Identifier: GPL-3.0-or-later

#include "pages/common/SectionBinder.h"

#include "i18n/Translator.h"
#include "pages/common/CTransparentStatic.h"
#include "pages/common/ColumnCheckBox.h"
#include "pages/common/CopySettingDialog.h"

#include <QCheckBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QStackedWidget>

#include <algorithm>
#include <string_view>

namespace {

QString labelOf(const setup::FieldInfo &field)
{
    return field.label ? nelib::tr(field.label) : QString::fromLatin1(field.name);
}

QString headingOf(const SectionBinder::Column &column)
{
    return column.heading ? nelib::tr(column.heading) : labelOf(column.field);
}

bool sameProperty(const char *a, const char *b)
{
    return a && b && std::string_view(a) == std::string_view(b);
}

} // namespace

SectionBinder::SectionBinder(QObject *parent)
    : QObject(parent)
{ }

SectionBinder::~SectionBinder() = default;

QString SectionBinder::channelNumber(int row)
{
    return QString::number(row + 1).rightJustified(2, u'0');
}

FieldEditor *SectionBinder::add(FieldEditor *editor, int row, const char *copy,
                                bool rowIsSecondIndex)
{
    editor->setParent(this);
    editor->setChannelCount(m_channelCount);
    m_bindings.push_back({editor, row, copy, m_group, rowIsSecondIndex});
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
    return grid(parent, {.heading = nelib::tr("Ch.")}, columns);
}

QGridLayout *SectionBinder::grid(QWidget *parent, const Rows &rows, std::span<const Column> columns)
{
    auto *grid = new QGridLayout;
    grid->setHorizontalSpacing(14);
    grid->setVerticalSpacing(3);
    if (!rows.heading.isEmpty())
        grid->addWidget(new CTransparentStatic(rows.heading, parent), 0, 0);
    if (rows.widgets)
        rows.widgets->resize(rows.count);
    const auto title = [&](int row) {
        return row < rows.titles.size() ? rows.titles[row] : channelNumber(row);
    };
    const QString prefix = rows.name.isEmpty() ? QString() : rows.name + u' ';

    std::vector<QList<QCheckBox *>> boxes(columns.size());
    std::vector<QWidget *> firsts(rows.count, nullptr);
    const auto cell = [&](int row, int c) {
        const Column &column = columns[c];
        const int bound = rows.channels ? row : -1;
        const QString name = prefix
                             + (rows.titleFirst ? title(row) + u' ' + headingOf(column)
                                                : headingOf(column) + u' ' + title(row));
        const bool perRow = row < int(column.rowFields.size());
        const setup::FieldInfo &field = perRow ? column.rowFields[row] : column.field;
        const int i = perRow ? 0 : column.fixed >= 0 ? column.fixed : row;
        const int j = column.fixed >= 0 ? row : 0;
        QList<QWidget *> made;
        if (column.minute) {
            QHBoxLayout *time
                = timeEditor(parent, field, *column.minute, i, bound, column.copy, name);
            time->addStretch(1);
            grid->addLayout(time, row + 1, c + 1, rows.alignment);
            for (int k = 0; k < time->count(); ++k) {
                if (QWidget *w = time->itemAt(k)->widget())
                    made.append(w);
            }
        } else {
            FieldEditor *e
                = add(column.make ? column.make(field, i, j, parent)
                                  : FieldEditor::create(column.kind, field, i, j, parent),
                      bound, column.copy, column.fixed >= 0);
            e->setAccessibleName(name);
            grid->addWidget(e->widget(), row + 1, c + 1, rows.alignment);
            made.append(e->widget());
            if (auto *box = qobject_cast<QCheckBox *>(e->widget()))
                boxes[c].append(box);
        }
        if (c == 0)
            firsts[row] = made.value(0);
        if (rows.widgets)
            (*rows.widgets)[row].append(made);
    };
    const auto heading = [&](int c) {
        const Column &column = columns[c];
        const QString label = headingOf(column);
        if (column.headerBox && !boxes[c].isEmpty()) {
            auto *header = new QCheckBox(parent);
            header->setAccessibleName(label);
            auto *layout = new QHBoxLayout;
            layout->setSpacing(4);
            layout->addWidget(header);
            if (column.labelled)
                layout->addWidget(new CTransparentStatic(label, parent), 1);
            grid->addLayout(layout, 0, c + 1);
            auto *columnBox = new ColumnCheckBox(header, boxes[c], this);
            connect(columnBox, &ColumnCheckBox::columnClicked, this, &SectionBinder::edited);
            m_headerBoxes.emplace_back(column.field, columnBox);
        } else if (column.labelled) {
            grid->addWidget(new CTransparentStatic(label, parent), 0, c + 1);
        }
    };
    // Channel grids are built column by column, other tables row by row, so
    // that the tab key goes down a column of channels or across an entry.
    const int columnCount = int(columns.size());
    if (rows.channels) {
        for (int c = 0; c < columnCount; ++c) {
            for (int row = 0; row < rows.count; ++row)
                cell(row, c);
            heading(c);
        }
    } else {
        for (int row = 0; row < rows.count; ++row) {
            for (int c = 0; c < columnCount; ++c)
                cell(row, c);
        }
        for (int c = 0; c < columnCount; ++c)
            heading(c);
    }
    for (int row = 0; row < rows.count; ++row) {
        auto *text = new CTransparentStatic(title(row), parent);
        grid->addWidget(text, row + 1, 0, rows.alignment);
        if (rows.channels)
            addRowWidgets(row, {text});
        else
            text->setBuddy(firsts[row]);
        if (rows.widgets)
            (*rows.widgets)[row].prepend(text);
    }
    setChannelCount(m_channelCount);
    return grid;
}

QStackedWidget *SectionBinder::channelForms(QWidget *parent, std::initializer_list<Column> columns)
{
    auto *stack = new QStackedWidget(parent);
    for (int row = 0; row < MaxChannels; ++row) {
        auto *form = new QWidget(stack);
        auto *layout = new QFormLayout(form);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->setFieldGrowthPolicy(QFormLayout::FieldsStayAtSizeHint);
        for (const Column &column : columns) {
            FieldEditor *e
                = add(column.make ? column.make(column.field, row, 0, form)
                                  : FieldEditor::create(column.kind, column.field, row, 0, form),
                      row, column.copy);
            const QString label = headingOf(column);
            e->setAccessibleName(label + u' ' + channelNumber(row));
            auto *text = new CTransparentStatic(label, form);
            text->setBuddy(e->widget());
            layout->addRow(text, e->widget());
        }
        stack->addWidget(form);
    }
    return stack;
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
        auto *text = new CTransparentStatic(label, parent);
        text->setBuddy(e->widget());
        e->setAccessibleName(label);
        layout->addRow(text, e->widget());
    }
    return layout;
}

QHBoxLayout *SectionBinder::timeEditor(QWidget *parent, const setup::FieldInfo &hour,
                                       const setup::FieldInfo &minute, int i, int row,
                                       const char *copy, const QString &name)
{
    auto *time = new QHBoxLayout;
    time->setSpacing(2);
    FieldEditor *h = add(FieldEditor::create(Kind::Number, hour, i, 0, parent), row, copy);
    h->setAccessibleName(name + QStringLiteral(" hh"));
    auto *colon = new CTransparentStatic(QStringLiteral(":"), parent);
    addRowWidgets(row, {colon});
    FieldEditor *m = add(FieldEditor::create(Kind::Number, minute, i, 0, parent), row, copy);
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

std::vector<const char *> SectionBinder::copyProperties(int group) const
{
    std::vector<const char *> properties;
    for (const Binding &b : m_bindings) {
        if (b.group == group && b.copy
            && std::none_of(properties.begin(), properties.end(),
                            [&](const char *p) { return sameProperty(p, b.copy); }))
            properties.push_back(b.copy);
    }
    return properties;
}

void SectionBinder::copy(int group, const CopySettingDialog &choice)
{
    const int source = choice.sourceChannel();
    for (int target = 0; target < m_channelCount; ++target) {
        if (target == source || !choice.targetTicked(target))
            continue;
        for (const Binding &from : m_bindings) {
            if (from.group != group || from.row != source || !choice.copies(from.copy))
                continue;
            for (const Binding &to : m_bindings) {
                // The same element but for the row: a mode's grid copies within the mode.
                const bool sameOther = from.rowIsSecondIndex
                                           ? to.editor->index() == from.editor->index()
                                           : to.editor->index2() == from.editor->index2();
                if (to.group == group && to.row == target && sameOther
                    && to.editor->field() == from.editor->field())
                    to.editor->copyFrom(*from.editor);
            }
        }
    }
}
