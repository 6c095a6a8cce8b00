// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/CKRemoteSetupApp.h"

#include "app/CRemoteKSetupDlg.h"

#include <QCommandLineParser>
#include <QStyleFactory>

using namespace Qt::StringLiterals;

CKRemoteSetupApp::CKRemoteSetupApp(int &argc, char **argv)
    : QApplication(argc, argv)
{
    setApplicationName(u"remote-setup"_s);
    setStyle(QStyleFactory::create(u"Fusion"_s));

    // The command line is read but no option changes anything: the program
    // starts the same way however it is called.
    QCommandLineParser parser;
    parser.parse(arguments());

    MessageSink::install(&m_sink);
    // Ending the program may be asked for from any thread; the loop ends on
    // the user-interface thread.
    m_previousExit = ProgramExit::install([this](int exitCode) {
        QMetaObject::invokeMethod(
            this, [exitCode] { exit(exitCode); }, Qt::QueuedConnection);
    });
}

CKRemoteSetupApp::~CKRemoteSetupApp()
{
    ProgramExit::install(m_previousExit);
    MessageSink::install(nullptr);
}

int CKRemoteSetupApp::run()
{
    CRemoteKSetupDlg window;
    window.show();
    return exec();
}
