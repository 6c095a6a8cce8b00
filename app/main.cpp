#include "app/CKRemoteSetupApp.h"

int main(int argc, char **argv)
{
    CKRemoteSetupApp app(argc, argv);
    return app.run();
}
