// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "pages/common/FieldEditor.h"
#include "setup/SetupRecordMap.h"

#include <QObject>
#include <QStringList>

#include <array>
#include <functional>
#include <span>
#include <vector>

QT_BEGIN_NAMESPACE
class QFormLayout;
class QGridLayout;
class QHBoxLayout;
class QStackedWidget;
class QWidget;
QT_END_NAMESPACE

class ColumnCheckBox;
class CopySettingDialog;

// Binds the controls of a settings page to the fields of its section, the
// way a settings dialog manager binds widgets to a config skeleton: the page
// names its fields (setup::fields::...) with an editor kind, the binder builds
// the controls, fills them from the section's bytes, gathers them back
// (leaving every byte no control owns as it was), reports edits and copies
// one channel's values to others. Labels, headings and accessible names all
// come from the fields' labels, through the translator.
class SectionBinder : public QObject
{
    Q_OBJECT

public:
    static constexpr int MaxChannels = setup::SetupRecordMap::MaxChannels;
    using Kind = FieldEditor::Kind;
    // Builds an editor of a page's own kind for element [i][j] of a field.
    using Factory = std::function<FieldEditor *(const setup::FieldInfo &field, int i, int j,
                                                QWidget *parent)>;

    // A column of a grid. Row r edits element [r] of the field, or [fixed][r]
    // when the field's first index is something else (a mode).
    struct Column
    {
        setup::FieldInfo field;
        Kind kind;
        // The copy-settings property (its English text) that copies this
        // column between channels; null: the column is not copied.
        const char *copy = nullptr;
        // A check box above a check column that sets the whole column.
        bool headerBox = false;
        int fixed = -1;
        // Builds the column's editors instead of `kind`, when set.
        Factory make = {};
        // Off: the column has no label over it (the page puts its own
        // heading there, or the header box stands alone).
        bool labelled = true;
        // The heading instead of the field's label (English text).
        const char *heading = nullptr;
        // Set: an hour:minute editor of `field` (the hour) and this field.
        const setup::FieldInfo *minute = nullptr;
        // Set: row r edits element [0] of rowFields[r] instead.
        std::span<const setup::FieldInfo> rowFields = {};
    };

    // The rows of a grid.
    struct Rows
    {
        int count = MaxChannels;
        // Channel rows are hidden from the channel count on and copied
        // between; other rows are always in use.
        bool channels = true;
        // The text in front of each row; channel numbers when empty.
        QStringList titles = {};
        // The heading above the row texts.
        QString heading = {};
        // Put before every control's accessible name (a view's name).
        QString name = {};
        // Names read row text first ("DST Start Time Month"), not last ("Day 01").
        bool titleFirst = false;
        Qt::Alignment alignment = {};
        // Receives, when set, the widgets of each row.
        std::vector<QList<QWidget *>> *widgets = nullptr;
    };

    // A labelled row of a form: element [i][j] of the field.
    struct Item
    {
        setup::FieldInfo field;
        Kind kind;
        int i = 0;
        int j = 0;
    };

    struct Binding
    {
        FieldEditor *editor;
        int row; // the channel row, -1 for controls that belong to no channel
        const char *copy; // the copy-settings property, or null
        int group; // the copy group: a copy stays within one
        bool rowIsSecondIndex; // the row is index j, not i (a fixed first index)
    };

    explicit SectionBinder(QObject *parent = nullptr);
    ~SectionBinder() override;

    // The record offset of the first byte of the sections filled and gathered.
    void setBase(int base) { m_base = base; }
    int base() const { return m_base; }

    // A row per channel (or per entry of `rows`) under a heading per column:
    // the row's text and one editor per column, each named by its column's
    // heading and its row's text. Channel rows at and above the channel
    // count are hidden. `parent` holds the controls; the caller places the grid.
    QGridLayout *grid(QWidget *parent, const Rows &rows, std::span<const Column> columns);
    QGridLayout *grid(QWidget *parent, const Rows &rows, std::initializer_list<Column> columns)
    {
        return grid(parent, rows, std::span(columns.begin(), columns.size()));
    }
    // The grid of the channel rows under "Ch.".
    QGridLayout *channelGrid(QWidget *parent, std::initializer_list<Column> columns);
    // One form per channel on the pages of a stack (the page shows one
    // channel at a time): a label and an editor per column, the editor of
    // form r bound to element [r] and named by its label and "01" ... "16".
    QStackedWidget *channelForms(QWidget *parent, std::initializer_list<Column> columns);
    // A label and an editor per item, the label being the editor's buddy.
    QFormLayout *form(QWidget *parent, std::initializer_list<Item> items);
    // A time as an hour box, ":" and a minute box: element [i] of `hour` and
    // of `minute`, bound to channel row `row` (-1: no channel's), named
    // `name` followed by " hh" and " mm".
    QHBoxLayout *timeEditor(QWidget *parent, const setup::FieldInfo &hour,
                            const setup::FieldInfo &minute, int i, int row, const char *copy,
                            const QString &name);
    // Takes an editor built elsewhere (a page's own kind) into the binding.
    FieldEditor *add(FieldEditor *editor, int row = -1, const char *copy = nullptr,
                     bool rowIsSecondIndex = false);
    // Bindings added from now on belong to copy group `group` (0 at first).
    void setCopyGroup(int group) { m_group = group; }

    // The editor of element [i][j] of `field`; null when none is bound.
    FieldEditor *editor(const setup::FieldInfo &field, int i = 0, int j = 0) const;
    template<class T>
    T *widget(const setup::FieldInfo &field, int i = 0, int j = 0) const
    {
        const FieldEditor *e = editor(field, i, j);
        return e ? qobject_cast<T *>(e->widget()) : nullptr;
    }
    // The header box of the column of `field`; null when it has none.
    ColumnCheckBox *headerBox(const setup::FieldInfo &field) const;
    const std::vector<Binding> &bindings() const { return m_bindings; }

    void setChannelCount(int count);
    int channelCount() const { return m_channelCount; }

    // Fill and gather touch the controls of the first channel-count rows and
    // those of no row.
    void fill(QByteArrayView section);
    void gather(QByteArray &section) const;
    // The copy-settings properties of the columns of `group`, in column order.
    std::vector<const char *> copyProperties(int group) const;
    // Copies, between controls of `group`, the columns whose properties the
    // last OK of `choice` ticked, from its source to each ticked channel in use.
    void copy(int group, const CopySettingDialog &choice);

    // The number shown in front of channel row `row` (0-based): "01" ... "16".
    static QString channelNumber(int row);

Q_SIGNALS:
    void edited();

private:
    // Further widgets of a channel row, shown and hidden with it.
    void addRowWidgets(int row, std::initializer_list<QWidget *> widgets);
    bool inUse(const Binding &binding) const;

    int m_base = 0;
    int m_group = 0;
    int m_channelCount = MaxChannels;
    std::vector<Binding> m_bindings;
    std::array<std::vector<QWidget *>, MaxChannels> m_rows;
    std::vector<std::pair<setup::FieldInfo, ColumnCheckBox *>> m_headerBoxes;
};
