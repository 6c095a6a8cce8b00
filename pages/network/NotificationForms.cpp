// SPDX-License-Identifier: GPL-3.0-or-later

#include "pages/network/NotificationForms.h"

#include "pages/common/SectionBinder.h"
#include "pages/network/NetworkEntryCheck.h"
#include "setup/Fields.h"

#include <QFormLayout>
#include <QLineEdit>
#include <QVBoxLayout>

namespace email = setup::fields::email;
namespace event = setup::fields::networkEvent;
using Kind = FieldEditor::Kind;

namespace {

void addForm(QWidget *parent, QFormLayout *form)
{
    // A channel mask too wide beside its label goes below it.
    form->setRowWrapPolicy(QFormLayout::WrapLongRows);
    auto *layout = new QVBoxLayout(parent);
    layout->addLayout(form);
    layout->addStretch(1);
}

} // namespace

void NotificationForms::email(SectionBinder &binder, QWidget *parent)
{
    QFormLayout *form = binder.form(parent, {
                                                {email::enabled, Kind::List},
                                                {email::smtpServer, Kind::Text},
                                                {email::smtpPort, Kind::Number},
                                                {email::security, Kind::List},
                                                {email::authentication, Kind::List},
                                                {email::user, Kind::Text},
                                                {email::password, Kind::Text},
                                                {email::sender, Kind::Text},
                                                {email::recipient, Kind::Text, 0},
                                                {email::recipient, Kind::Text, 1},
                                                {email::recipient, Kind::Text, 2},
                                                {email::subject, Kind::Text},
                                                {email::attachImage, Kind::List},
                                            });
    binder.widget<QLineEdit>(email::password)->setEchoMode(QLineEdit::Password);
    addForm(parent, form);
}

void NotificationForms::cameraEvents(SectionBinder &binder, QWidget *parent)
{
    QFormLayout *form = binder.form(parent, {
                                                {event::notify, Kind::List},
                                                {event::minInterval, Kind::Number},
                                                {event::alarmEnabled, Kind::List},
                                                {event::alarmChannels, Kind::Channels},
                                                {event::alarmActions, Kind::Bits},
                                                {event::motionEnabled, Kind::List},
                                                {event::motionChannels, Kind::Channels},
                                                {event::motionActions, Kind::Bits},
                                                {event::videoLossEnabled, Kind::List},
                                                {event::videoLossChannels, Kind::Channels},
                                                {event::videoLossActions, Kind::Bits},
                                            });
    addForm(parent, form);
}

void NotificationForms::systemEvents(SectionBinder &binder, QWidget *parent)
{
    addForm(parent, binder.form(parent, {
                                            {event::diskFullEnabled, Kind::List},
                                            {event::diskFullActions, Kind::Bits},
                                            {event::diskErrorEnabled, Kind::List},
                                            {event::diskErrorActions, Kind::Bits},
                                            {event::powerOnEnabled, Kind::List},
                                            {event::powerOnActions, Kind::Bits},
                                            {event::loginFailureEnabled, Kind::List},
                                            {event::loginFailureActions, Kind::Bits},
                                        }));
}

bool NotificationForms::emailAccepted(const NetworkEntryCheck &check)
{
    return check.hostNames(email::smtpServer) && check.mailAddresses(email::sender)
           && check.mailAddresses(email::recipient);
}
