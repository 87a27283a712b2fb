#pragma once
// A stand-in for one of the suite's services. It does what the manager can
// see of the real one and nothing else:
//
//   command line  vxInference <config file> <log file>
//                 vxControl                (configs/vx_control_config.json and
//                                           logs/vxControlLog.txt below its working directory)
//                 vxMes <config file> <log file> [-logging]
//   port          "port" of its config file, read under the file's named lock
//                 (1234, 1235, 1236 when the file can't be read)
//   HTTP          on 127.0.0.1: GET "/FPS" -> 200 {"fps":N}; GET "/CheckRun",
//                 "/UpdateConfig" -> 200; GET "/StopServer" -> 200, then the
//                 process exits with 0; POST "/GenerateReport", "/HandSignal"
//                 -> 200 with their form fields noted
//   log           appended, one line per event:
//                   "start pid=<pid> port=<port>"
//                   "arg <n> <text>"                   each argument from 1 on
//                   "<METHOD> <path>[ <key>=<value>…]" each request, once answered
//                   "hang <METHOD> <path>"             a request it won't answer
//                   "exit <code>"
//
// Behaviour for tests, from environment variables whose names begin with the
// service's name in capitals (VXINFERENCE_, VXCONTROL_, VXMES_):
//   EXIT_AFTER_MS=N   exit N ms after the start, with EXIT_CODE (default 0)
//   FPS=N             the fps "/FPS" reports (default 25)
//   FPS_STATUS=S      the status of the "/FPS" reply (default 200)
//   FPS_BODY=text     the body of the "/FPS" reply, as it stands
//   HANG=1            take requests and never answer them
//   IGNORE_STOP=1     answer "/StopServer" and go on running
#include <string>

namespace vx::standin {

enum class ServiceKind { recognition, control, messengers };

ServiceKind serviceKind(const std::string& name);
int runService(ServiceKind kind, int argc, char* argv[]);

} // namespace vx::standin
