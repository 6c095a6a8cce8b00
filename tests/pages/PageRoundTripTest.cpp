// SPDX-License-Identifier: GPL-3.0-or-later

// Every page of the catalog that edits a section, through its bound controls:
// what it fills it gathers back unchanged, each control writes its own
// element and no other byte, rows past the channel count are hidden and
// keep their bytes, number boxes offer the field's range. Every page, the
// dialogs it opens and the connection panel say to a screen reader what
// each control is.

#include "app/ConnectionPanel.h"
#include "app/PageCatalog.h"
#include "tests/pages/PageTestSupport.h"

#include <QAbstractSpinBox>
#include <QAccessible>
#include <QApplication>
#include <QCheckBox>
#include <QDialog>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QRegularExpression>
#include <QSpinBox>
#include <QToolButton>

#include <gtest/gtest.h>

#include <memory>

using setup::FieldInfo;
using setup::FieldTable;
using setup::FieldType;
using setup::SetupRecordMap;
using namespace Qt::StringLiterals;

namespace {

struct PageCase
{
    const char *label;
    PageCatalog::Factory create;

    friend void PrintTo(const PageCase &c, std::ostream *out) { *out << c.label; }
};

// Every page that exists and has a Save action.
std::vector<PageCase> boundPages()
{
    std::vector<PageCase> pages;
    for (const PageCatalog::Entry &entry : PageCatalog::entries()) {
        if (entry.create && entry.pageId != 0)
            pages.push_back({entry.label, entry.create});
    }
    return pages;
}

// A value of the element that its control can show, different for each k.
void writeSample(QByteArray &record, const FieldEditor &e, int k)
{
    const FieldInfo &f = e.field();
    const int i = e.index();
    const int j = e.index2();
    QWidget *w = e.widget();
    if (qobject_cast<QCheckBox *>(w)) {
        FieldTable::setNumber(record, f, k % 2, i, j);
    } else if (qobject_cast<QComboBox *>(w) && !f.valueNames.empty()) {
        FieldTable::setNumber(record, f, f.valueNames[k % f.valueNames.size()].value, i, j);
    } else if (qobject_cast<QSpinBox *>(w)) {
        const qint64 span = std::min<qint64>(f.highest() - f.lowest() + 1, 1000);
        FieldTable::setNumber(record, f, quint32(f.lowest() + k % span), i, j);
    } else if (qobject_cast<QLineEdit *>(w) && f.type == FieldType::Text) {
        FieldTable::setBytes(record, f, "T" + QByteArray::number(k).left(f.width - 1), i, j);
    } else if (qobject_cast<QLineEdit *>(w) && f.type == FieldType::Bytes) {
        FieldTable::setBytes(record, f, QByteArray::fromRawData("\x0a\x00\x07\x01", 4), i, j);
    } else if (!f.bitNames.empty()) {
        FieldTable::setNumber(record, f, f.bitNames[k % f.bitNames.size()].value, i, j);
    }
    // Controls of a page's own kind keep the pattern and must give it back.
}

class PageRoundTrip : public ::testing::TestWithParam<PageCase>
{
};

// What a screen reader says a control is: its labels, then its name.
QString spoken(QWidget *w)
{
    QAccessibleInterface *control = QAccessible::queryAccessibleInterface(w);
    QStringList parts;
    for (const auto &relation : control->relations(QAccessible::Label))
        parts.append(relation.first->text(QAccessible::Name));
    parts.append(control->text(QAccessible::Name));
    parts.removeAll(QString());
    return parts.join(u" | ");
}

bool isControl(const QWidget *w)
{
    // The line edit inside a number box or a list is part of that control.
    if (qobject_cast<QAbstractSpinBox *>(w->parentWidget())
        || qobject_cast<QComboBox *>(w->parentWidget()))
        return false;
    switch (QAccessible::queryAccessibleInterface(const_cast<QWidget *>(w))->role()) {
    case QAccessible::CheckBox:
    case QAccessible::RadioButton:
    case QAccessible::ComboBox:
    case QAccessible::SpinBox:
    case QAccessible::EditableText:
    case QAccessible::PushButton:
    case QAccessible::ButtonMenu:
    case QAccessible::List:
    case QAccessible::Slider:
        return true;
    default:
        return false;
    }
}

// The controls of `root` that say nothing, or the same as another one.
QStringList silentOrAlike(const QWidget *root)
{
    QStringList problems;
    QHash<QString, int> seen;
    for (QWidget *w : root->findChildren<QWidget *>()) {
        // Hidden on purpose (a month's missing days), a control is not there.
        if (w->isHidden() || !isControl(w) || w->window() != root->window())
            continue;
        const QString said = spoken(w);
        if (said.isEmpty())
            problems.append(u"no name: "_s + QLatin1StringView(w->metaObject()->className()));
        else if (seen[said]++ == 1)
            problems.append(u"shared: "_s + said);
    }
    return problems;
}

// Dialogs open now, but for message boxes and file choosers.
QList<QDialog *> openDialogs()
{
    QList<QDialog *> dialogs;
    for (QWidget *w : QApplication::topLevelWidgets()) {
        auto *dialog = qobject_cast<QDialog *>(w);
        if (dialog && dialog->isVisible() && !qobject_cast<QMessageBox *>(w)
            && !qobject_cast<QFileDialog *>(w))
            dialogs.append(dialog);
    }
    return dialogs;
}

} // namespace

TEST_P(PageRoundTrip, BoundFieldsRoundTripAndTouchOnlyTheirOwnBytes)
{
    std::unique_ptr<CSetupPage> page(GetParam().create(nullptr));
    ASSERT_TRUE(page->hasSaveAction());
    // The bytes the page edits: its section, or the consecutive sections it saves.
    const struct
    {
        int offset;
        int length;
    } section {page->recordOffset(), int(page->sectionBuffer().size())};

    for (int channels : {16, 4}) {
        SCOPED_TRACE(channels);
        page->load(pagetest::pattern(SetupRecordMap::RecordSize), channels);
        QByteArray record = pagetest::pattern(SetupRecordMap::RecordSize);
        int k = 1;
        for (const SectionBinder::Binding &b : std::as_const(*page).binder().bindings()) {
            if (b.row < channels)
                writeSample(record, *b.editor, k++);
        }
        const QByteArray slice = record.mid(section.offset, section.length);
        page->load(record, channels);
        EXPECT_FALSE(page->isModified());
        EXPECT_FALSE(page->needsSave());
        page->gather();
        ASSERT_EQ(page->sectionBuffer(), slice) << "fill and gather differ";

        for (const SectionBinder::Binding &b : std::as_const(*page).binder().bindings()) {
            const FieldEditor &e = *b.editor;
            SCOPED_TRACE(std::string(e.field().name) + '[' + std::to_string(e.index()) + "]["
                         + std::to_string(e.index2()) + ']');
            if (b.row >= channels) {
                EXPECT_FALSE(e.widget()->isVisibleTo(page.get()));
                continue;
            }
            if (auto *spin = qobject_cast<QSpinBox *>(e.widget())) {
                EXPECT_EQ(spin->minimum(), std::max<qint64>(e.field().lowest(), INT_MIN));
                EXPECT_EQ(spin->maximum(), std::min<qint64>(e.field().highest(), INT_MAX));
            }
            if (!pagetest::changeControl(e.widget(), false))
                continue;
            page->gather();
            const QByteArray &gathered = page->sectionBuffer();
            const int first = e.field().elementOffset(e.index(), e.index2()) - section.offset;
            bool changed = false;
            for (int at = 0; at < section.length; ++at) {
                if (gathered[at] == slice[at])
                    continue;
                changed = true;
                EXPECT_TRUE(at >= first && at < first + e.field().width)
                    << "byte " << section.offset + at << " changed";
            }
            EXPECT_TRUE(changed) << "the change reached no byte";
            page->load(record, channels);
        }

        // Default shows other values without sending them; Cancel brings
        // back what the recorder holds.
        const QByteArray other = pagetest::pattern(SetupRecordMap::RecordSize);
        page->loadDefault(QByteArrayView(other).sliced(section.offset, section.length));
        EXPECT_TRUE(page->isModified());
        EXPECT_EQ(page->sectionBuffer(), slice);
        page->cancel();
        EXPECT_FALSE(page->isModified());
        page->gather();
        EXPECT_EQ(page->sectionBuffer(), slice) << "Cancel after Default";
    }
}

TEST(Accessibility, EveryControlOfEveryPageAndItsDialogsSaysWhatItIs)
{
    SessionHarness window; // takes the messages some buttons raise
    for (const PageCatalog::Entry &entry : PageCatalog::entries()) {
        SCOPED_TRACE(entry.label);
        std::unique_ptr<CSetupPage> page(entry.create(nullptr));
        page->load(setup::FactoryDefaults::record(), 16);
        page->show();
        EXPECT_EQ(silentOrAlike(page.get()), QStringList());
        // Buttons that would send or restore stay untouched; the pages
        // without Save (files, firmware) open only file choosers.
        const QString untouched[] = {u"Save"_s, u"Default"_s, u"Apply"_s};
        if (entry.pageId == 0)
            continue;
        for (QAbstractButton *button : page->findChildren<QAbstractButton *>()) {
            if (!qobject_cast<QPushButton *>(button) && !qobject_cast<QToolButton *>(button))
                continue;
            if (std::find(std::begin(untouched), std::end(untouched), button->text())
                    != std::end(untouched)
                || button->isHidden())
                continue;
            button->click();
            for (QDialog *dialog : openDialogs()) {
                SCOPED_TRACE(dialog->windowTitle().toStdString());
                EXPECT_EQ(silentOrAlike(dialog), QStringList());
                dialog->reject();
            }
        }
    }
    ConnectionPanel panel;
    EXPECT_EQ(silentOrAlike(&panel), QStringList());
}

INSTANTIATE_TEST_SUITE_P(AllPages, PageRoundTrip, ::testing::ValuesIn(boundPages()),
                         [](const auto &info) {
                             QString name = QString::fromLatin1(info.param.label);
                             name.remove(QRegularExpression(QStringLiteral("[^A-Za-z0-9]")));
                             return name.toStdString();
                         });
