// vxVideoStream: one stream of the suite (see stream_process.h).
#include "stream_process.h"

int main(int argc, char* argv[])
{
    return vx::stream::runStream(argc, argv);
}
