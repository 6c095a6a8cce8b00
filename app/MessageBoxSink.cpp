#include "app/MessageBoxSink.h"

#include "i18n/Translator.h"

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <QThread>

void MessageBoxSink::showMessage(const QString &text)
{
    // The firmware upload reports from its own thread; boxes belong to the
    // user-interface thread, and the caller waits as for any modal box.
    if (QThread::currentThread() != qApp->thread()) {
        QMetaObject::invokeMethod(
            qApp, [this, text] { showMessage(text); }, Qt::BlockingQueuedConnection);
        return;
    }
    QMessageBox box(QMessageBox::NoIcon, nelib::tr("Remote Setup"), text, QMessageBox::Ok,
                    QApplication::activeWindow());
    box.button(QMessageBox::Ok)->setText(nelib::tr("OK"));
    box.exec();
}
