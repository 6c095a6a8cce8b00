// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "pages/common/CRemoteCameraCopySettingDlg.h"
#include "pages/common/FieldEditor.h"

#include <QObject>

#include <array>
#include <functional>
#include <vector>

QT_BEGIN_NAMESPACE
class QFormLayout;
class QGridLayout;
class QHBoxLayout;
class QWidget;
QT_END_NAMESPACE

class ColumnCheckBox;

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

    // A column of a channel grid. Row r edits element [r] of the field, or
    // [fixed][r] when the field's first index is something else (a mode).
    struct Column
    {
        setup::FieldInfo field;
        Kind kind;
        // The copy-settings property that copies this column; -1: none.
        int copyProperty = -1;
        // A check box above a check column that sets the whole column.
        bool headerBox = false;
        int fixed = -1;
        // Builds the column's editors instead of `kind`, when set.
        Factory make = {};
        // Off: the column has no label over it (the page puts its own
        // heading there, or the header box stands alone).
        bool labelled = true;
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
        int copyProperty;
        bool rowIsSecondIndex; // the row is index j, not i (a fixed first index)
    };

    explicit SectionBinder(QObject *parent = nullptr);
    ~SectionBinder() override;

    // The record offset of the first byte of the sections filled and gathered.
    void setBase(int base) { m_base = base; }
    int base() const { return m_base; }

    // One row per channel under a heading per column: the row's number
    // ("01" to "16") and one editor per column. Rows at and above the channel
    // count are hidden. `parent` holds the controls; the caller places the grid.
    QGridLayout *channelGrid(QWidget *parent, std::initializer_list<Column> columns);
    // A label and an editor per item, the label being the editor's buddy.
    QFormLayout *form(QWidget *parent, std::initializer_list<Item> items);
    // A time as an hour box, ":" and a minute box: element [i] of `hour` and
    // of `minute`, bound to channel row `row` (-1: no channel's), named
    // `name` followed by " hh" and " mm".
    QHBoxLayout *timeEditor(QWidget *parent, const setup::FieldInfo &hour,
                            const setup::FieldInfo &minute, int i, int row, int copyProperty,
                            const QString &name);
    // Takes an editor built elsewhere (a page's own kind) into the binding.
    FieldEditor *add(FieldEditor *editor, int row = -1, int copyProperty = -1,
                     bool rowIsSecondIndex = false);
    // Further widgets of a channel row, shown and hidden with it.
    void addRowWidgets(int row, std::initializer_list<QWidget *> widgets);

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
    // Copies, between controls, the columns whose property is ticked.
    void copyRow(int source, int target, const CRemoteCameraCopySettingDlg::Properties &properties);

    // The number shown in front of channel row `row` (0-based): "01" ... "16".
    static QString channelNumber(int row);

Q_SIGNALS:
    void edited();

private:
    bool inUse(const Binding &binding) const;

    int m_base = 0;
    int m_channelCount = MaxChannels;
    std::vector<Binding> m_bindings;
    std::array<std::vector<QWidget *>, MaxChannels> m_rows;
    std::vector<std::pair<setup::FieldInfo, ColumnCheckBox *>> m_headerBoxes;
};
