// SPDX-License-Identifier: GPL-3.0-or-later

#include "pages/network/NetworkEntryCheck.h"

#include "i18n/Translator.h"
#include "pages/common/SectionBinder.h"
#include "session/MessageSink.h"

#include <QHostAddress>
#include <QLineEdit>
#include <QRegularExpression>
#include <QSpinBox>
#include <QStackedWidget>
#include <QTabBar>

using namespace Qt::StringLiterals;
using setup::FieldInfo;

namespace {

QString labelOf(const FieldInfo &field, int i)
{
    QString label = nelib::tr(field.label);
    if (field.count > 1)
        label += u' ' + QString::number(i + 1);
    return label;
}

// Brings the tab that holds `control` to the front (a page's tabs are a tab
// bar over a stack of contents) and puts the focus on it.
void showAndFocus(QWidget *control)
{
    for (QWidget *w = control; w && w->parentWidget(); w = w->parentWidget()) {
        auto *stack = qobject_cast<QStackedWidget *>(w->parentWidget());
        if (!stack || !stack->parentWidget())
            continue;
        if (auto *tabs = stack->parentWidget()->findChild<QTabBar *>())
            tabs->setCurrentIndex(stack->indexOf(w));
        break;
    }
    control->setFocus();
}

} // namespace

NetworkEntryCheck::NetworkEntryCheck(const SectionBinder &binder)
    : m_binder(binder)
{ }

QString NetworkEntryCheck::textOf(const FieldInfo &field, int i) const
{
    const auto *edit = m_binder.widget<QLineEdit>(field, i);
    return edit ? edit->text() : QString();
}

bool NetworkEntryCheck::refuse(const FieldInfo &field, int i, const char *message) const
{
    if (FieldEditor *editor = m_binder.editor(field, i))
        showAndFocus(editor->widget());
    MessageSink::show(nelib::tr(message).replace(u"%s"_s, labelOf(field, i)));
    return false;
}

bool NetworkEntryCheck::hostNames(const FieldInfo &field) const
{
    // Letters, digits and inner hyphens in dot-separated labels; an IPv4
    // address passes as well.
    static const QRegularExpression host(
        u"^[A-Za-z0-9]([A-Za-z0-9-]*[A-Za-z0-9])?(\\.[A-Za-z0-9]([A-Za-z0-9-]*[A-Za-z0-9])?)*$"_s);
    for (int i = 0; i < field.count; ++i) {
        const QString text = textOf(field, i);
        if (!text.isEmpty() && !host.match(text).hasMatch())
            return refuse(field, i, RS_TEXT("%s is not a valid host name."));
    }
    return true;
}

bool NetworkEntryCheck::ipv4(const FieldInfo &field) const
{
    // QHostAddress also takes forms such as "10.1" or "0x0a000001", which a
    // recorder's menu would never show; only the four dotted parts pass.
    static const QRegularExpression dotted(u"^\\d{1,3}(\\.\\d{1,3}){3}$"_s);
    const QString text = textOf(field);
    QHostAddress address;
    if (!dotted.match(text).hasMatch() || !address.setAddress(text)
        || address.protocol() != QAbstractSocket::IPv4Protocol)
        return refuse(field, 0, RS_TEXT("%s is not a valid IP address."));
    return true;
}

bool NetworkEntryCheck::subnetMask(const FieldInfo &field) const
{
    if (!ipv4(field))
        return false;
    const quint32 mask = QHostAddress(textOf(field)).toIPv4Address();
    // Contiguous ones: the inverse plus one is a power of two.
    const quint32 hosts = ~mask;
    if (mask == 0 || (hosts & (hosts + 1)) != 0)
        return refuse(field, 0, RS_TEXT("%s is not a valid subnet mask."));
    return true;
}

bool NetworkEntryCheck::distinctPorts(const FieldInfo &a, const FieldInfo &b) const
{
    const auto *first = m_binder.widget<QSpinBox>(a);
    const auto *second = m_binder.widget<QSpinBox>(b);
    if (first && second && first->value() == second->value())
        return refuse(b, 0, RS_TEXT("%s is already in use by another port."));
    return true;
}

bool NetworkEntryCheck::mailAddresses(const FieldInfo &field) const
{
    static const QRegularExpression mail(u"^[^@\\s]+@[^@\\s.]+(\\.[^@\\s.]+)*$"_s);
    QStringList seen;
    for (int i = 0; i < field.count; ++i) {
        const QString text = textOf(field, i);
        if (text.isEmpty())
            continue;
        if (!mail.match(text).hasMatch())
            return refuse(field, i, RS_TEXT("%s is not a valid e-mail address."));
        if (seen.contains(text, Qt::CaseInsensitive))
            return refuse(field, i, RS_TEXT("%s repeats an address already in the list."));
        seen.append(text);
    }
    return true;
}
