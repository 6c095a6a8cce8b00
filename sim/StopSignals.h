// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>

QT_BEGIN_NAMESPACE
class QSocketNotifier;
QT_END_NAMESPACE

namespace sim {

// Quits the application's event loop on SIGTERM or SIGINT, so that a service
// manager's stop or Ctrl+C lets every recorder close its connections and the
// program end normally. The handler only writes a byte to a socket pair; the
// event loop reads it.
class StopSignals : public QObject
{
    Q_OBJECT

public:
    explicit StopSignals(QObject *parent = nullptr);
    ~StopSignals() override;

private:
    static void handle(int signal);

    QSocketNotifier *m_notifier = nullptr;
};

} // namespace sim
