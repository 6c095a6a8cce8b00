// SPDX-License-Identifier: GPL-3.0-or-later

#include "pages/common/ContactTypeEditor.h"

#include "i18n/Translator.h"

#include <QComboBox>

using namespace Qt::StringLiterals;
using setup::FieldInfo;

namespace {

struct Type
{
    const char *name;
    quint32 enabled;
    quint32 closed;
};
constexpr Type Types[] = {{RS_TEXT("Off"), 0, 0}, {RS_TEXT("N.O"), 1, 0}, {RS_TEXT("N.C"), 1, 1}};

// Both words as one field, so that the binder and its tests see one element.
FieldInfo spanning(const FieldInfo &enabled, const FieldInfo &closed)
{
    FieldInfo f
        = FieldInfo::bytes("type", enabled.offset, closed.offset + closed.width - enabled.offset)
              .repeat(enabled.count, enabled.stride)
              .labelled(RS_TEXT("Type"));
    return f;
}

} // namespace

ContactTypeEditor::ContactTypeEditor(const FieldInfo &enabled, const FieldInfo &normallyClosed,
                                     int i, QWidget *parent)
    : FieldEditor(spanning(enabled, normallyClosed), i, 0, parent)
    , m_enabled(enabled)
    , m_closed(normallyClosed)
    , m_list(new QComboBox(parent))
{
    for (const Type &type : Types)
        m_list->addItem(nelib::tr(type.name));
    m_list->setCurrentIndex(-1);
    m_list->setMinimumWidth(m_list->fontMetrics().horizontalAdvance(u"N.O"_s) + 60);
    connect(m_list, &QComboBox::activated, this, &FieldEditor::edited);
}

SectionBinder::Factory ContactTypeEditor::factory(const FieldInfo &normallyClosed)
{
    return [normallyClosed](const FieldInfo &enabled, int i, int, QWidget *parent) {
        return new ContactTypeEditor(enabled, normallyClosed, i, parent);
    };
}

QWidget *ContactTypeEditor::widget() const
{
    return m_list;
}

void ContactTypeEditor::fill(const setup::SectionView &section)
{
    const quint32 enabled = section.number(m_enabled, index());
    const quint32 closed = section.number(m_closed, index());
    int shown = -1;
    for (int t = 0; t < int(std::size(Types)); ++t) {
        if (Types[t].enabled == enabled && Types[t].closed == closed)
            shown = t;
    }
    m_list->setCurrentIndex(shown);
}

void ContactTypeEditor::gather(setup::SectionEdit &section) const
{
    const int t = m_list->currentIndex();
    if (t < 0)
        return;
    section.setNumber(m_enabled, Types[t].enabled, index());
    section.setNumber(m_closed, Types[t].closed, index());
}

void ContactTypeEditor::copyFrom(const FieldEditor &other)
{
    m_list->setCurrentIndex(static_cast<const ContactTypeEditor &>(other).m_list->currentIndex());
}
