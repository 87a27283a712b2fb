// One of the service stand-ins; which one is fixed when it is built.
#include "service_stand_in.h"

int main(int argc, char* argv[])
{
    return vx::standin::runService(vx::standin::serviceKind(VX_SERVICE_NAME), argc, argv);
}
