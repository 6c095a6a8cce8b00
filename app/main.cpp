// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/CKRemoteSetupApp.h"

#include "BuildInfo.h"

#include <cstdio>
#include <cstring>

namespace {

// Answered before the window exists, so they work without a display.
constexpr char Help[]
    = "usage: remote-setup [--help] [--version]\n"
      "\n"
      "The Remote Setup desktop client: connects to a digital video recorder over the\n"
      "network and edits its settings page by page. Other arguments are ignored,\n"
      "except Qt's own (-platform, -display, -style).\n"
      "\n"
      "Options:\n"
      "  --help     print this help and exit\n"
      "  --version  print the version and exit\n"
      "\n"
      "Environment:\n"
      "  REMOTE_SETUP_LANGUAGE  language number of language.config to start in\n"
      "                         (0 English); unset: the system locale's language\n"
      "  REMOTE_SETUP_CODEPAGE  single-byte code page of the recorder's texts\n"
      "                         (default Windows-1252)\n";

} // namespace

int main(int argc, char **argv)
{
    if (argc == 2 && std::strcmp(argv[1], "--help") == 0) {
        std::fputs(Help, stdout);
        return 0;
    }
    if (argc == 2 && std::strcmp(argv[1], "--version") == 0) {
        std::puts("remote-setup " RS_VERSION);
        return 0;
    }
    CKRemoteSetupApp app(argc, argv);
    return app.run();
}
