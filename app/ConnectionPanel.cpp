// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/ConnectionPanel.h"

#include "i18n/Translator.h"
#include "session/CWork.h"
#include "session/ConnectionRecord.h"

#include <QButtonGroup>
#include <QFormLayout>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QRegularExpressionValidator>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

constexpr int LightSize = 10;

QLineEdit *newField(const QString &accessibleName, int maxLength, QWidget *parent)
{
    auto *field = new QLineEdit(parent);
    field->setAccessibleName(accessibleName);
    field->setMaxLength(maxLength);
    return field;
}

} // namespace

ConnectionPanel::ConnectionPanel(QWidget *parent)
    : QWidget(parent)
    , m_manual(new QRadioButton(nelib::tr("MANUAL"), this))
    , m_ddns(new QRadioButton(nelib::tr("DDNS"), this))
    , m_address(newField(nelib::tr("ADDRESS"), ConnectionRecord::AddressSize - 1, this))
    , m_port(newField(nelib::tr("PORT NUMBER"), 5, this))
    , m_hostName(newField(nelib::tr("Host name"), ConnectionRecord::AddressSize - 1, this))
    , m_userId(newField(nelib::tr("USER ID"), ConnectionRecord::MemberIdSize - 1, this))
    , m_password(newField(nelib::tr("PASSWORD"), ConnectionRecord::PasswordSize - 1, this))
    , m_connect(new QPushButton(nelib::tr("CONNECT"), this))
    , m_disconnect(new QPushButton(nelib::tr("DISCONNECT"), this))
    , m_openFile(new QPushButton(nelib::tr("OPEN FILE"), this))
    , m_saveFile(new QPushButton(nelib::tr("SAVE FILE"), this))
    , m_light(new QLabel(this))
    , m_status(new QLabel(this))
    , m_version(new QLabel(this))
    , m_form(new QFormLayout)
    , m_fileChannels(ConnectionSettings {}.fileChannels)
    , m_fileVideoStandard(ConnectionSettings {}.fileVideoStandard)
{
    auto *modes = new QButtonGroup(this);
    modes->addButton(m_manual);
    modes->addButton(m_ddns);
    m_manual->setChecked(true);
    connect(m_ddns, &QRadioButton::toggled, this, &ConnectionPanel::applyMode);

    m_port->setValidator(new QRegularExpressionValidator(QRegularExpression(u"[0-9]*"_s), m_port));
    m_password->setEchoMode(QLineEdit::Password);

    auto *modeRow = new QHBoxLayout;
    modeRow->addWidget(m_manual);
    modeRow->addWidget(m_ddns);
    modeRow->addStretch(1);

    m_form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    m_form->setRowWrapPolicy(QFormLayout::DontWrapRows);
    m_form->addRow(modeRow);
    for (QLineEdit *field : {m_address, m_port, m_hostName, m_userId, m_password})
        m_form->addRow(field->accessibleName(), field);

    auto *buttons = new QGridLayout;
    buttons->addWidget(m_connect, 0, 0);
    buttons->addWidget(m_disconnect, 0, 1);
    buttons->addWidget(m_openFile, 1, 0);
    buttons->addWidget(m_saveFile, 1, 1);
    connect(m_connect, &QPushButton::clicked, this, &ConnectionPanel::connectRequested);
    connect(m_disconnect, &QPushButton::clicked, this, &ConnectionPanel::disconnectRequested);
    connect(m_openFile, &QPushButton::clicked, this, &ConnectionPanel::openFileRequested);
    connect(m_saveFile, &QPushButton::clicked, this, &ConnectionPanel::saveFileRequested);
    m_connect->setDefault(true);

    m_light->setFixedSize(LightSize, LightSize);
    auto *statusRow = new QHBoxLayout;
    statusRow->addWidget(m_light);
    statusRow->addWidget(m_status, 1);
    m_version->setForegroundRole(QPalette::PlaceholderText);

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addLayout(m_form);
    layout->addLayout(buttons);
    layout->addSpacing(6);
    layout->addLayout(statusRow);
    layout->addWidget(m_version);

    applyMode();
    showDisconnectedLook();
}

ConnectionSettings ConnectionPanel::settings() const
{
    ConnectionSettings settings;
    settings.mode
        = m_ddns->isChecked() ? ConnectionSettings::Mode::Ddns : ConnectionSettings::Mode::Manual;
    settings.address = m_address->text();
    settings.port = m_port->text();
    settings.hostName = m_hostName->text();
    settings.userId = m_userId->text();
    settings.password = m_password->text();
    settings.fileChannels = m_fileChannels;
    settings.fileVideoStandard = m_fileVideoStandard;
    return settings;
}

void ConnectionPanel::enter(const ConnectionSettings &settings)
{
    (settings.mode == ConnectionSettings::Mode::Ddns ? m_ddns : m_manual)->setChecked(true);
    m_address->setText(settings.address);
    m_port->setText(settings.port);
    m_hostName->setText(settings.hostName);
    m_userId->setText(settings.userId);
    m_password->setText(settings.password);
    m_fileChannels = settings.fileChannels;
    m_fileVideoStandard = settings.fileVideoStandard;
}

QString ConnectionPanel::addressText() const
{
    return m_address->text();
}

void ConnectionPanel::applyMode()
{
    const bool ddns = m_ddns->isChecked();
    m_form->setRowVisible(m_port, !ddns);
    m_form->setRowVisible(m_hostName, ddns);
}

void ConnectionPanel::setInputsEnabled(bool enabled)
{
    for (QWidget *input : std::initializer_list<QWidget *> {m_manual, m_ddns, m_address, m_port,
                                                            m_hostName, m_userId, m_password})
        input->setEnabled(enabled);
    m_connect->setEnabled(enabled);
    m_openFile->setEnabled(enabled);
    m_disconnect->setEnabled(!enabled);
    m_saveFile->setEnabled(false);
}

void ConnectionPanel::lockForSession()
{
    setInputsEnabled(false);
}

void ConnectionPanel::showFile(const QString &name)
{
    setInputsEnabled(false);
    m_saveFile->setEnabled(true);
    showState(name, QColor(0x3a6fc4));
}

void ConnectionPanel::showDisconnectedLook()
{
    setInputsEnabled(true);
    showStatus(CWork::Idle);
    m_version->setText(nelib::tr("VERSION UNKNOWN"));
}

void ConnectionPanel::showStatus(int status)
{
    QString text;
    QColor light;
    switch (status) {
    case CWork::Connecting:
        text = nelib::tr("Connecting...");
        light = QColor(0xe0a000);
        break;
    case CWork::Connected:
        text = nelib::tr("Connected");
        light = QColor(0xe0a000);
        break;
    case CWork::LoggingIn:
        text = nelib::tr("Logging in...");
        light = QColor(0xe0a000);
        break;
    case CWork::Ready:
        text = nelib::tr("Ready");
        light = QColor(0x2e9d3f);
        break;
    case CWork::Failed:
        text = nelib::tr("Failed");
        light = QColor(0xcc3333);
        break;
    default:
        text = nelib::tr("Disconnect");
        light = QColor(0x9a9a9a);
        break;
    }
    showState(text, light);
}

void ConnectionPanel::showState(const QString &text, const QColor &light)
{
    m_status->setText(text);
    m_light->setStyleSheet(
        u"background: %1; border-radius: %2px;"_s.arg(light.name()).arg(LightSize / 2));
}

void ConnectionPanel::showSoftwareVersion(QByteArrayView version)
{
    if (version.size() < 4)
        return;
    m_version->setText(u"%1 %2.%3.%4.%5"_s.arg(nelib::tr("S/W Version"))
                           .arg(quint8(version[0]))
                           .arg(quint8(version[1]))
                           .arg(quint8(version[2]))
                           .arg(quint8(version[3])));
}
