#pragma once
// The service workers: one call per request, each on a task of its own; the
// service's mutex puts concurrent calls for one service in a line. After
// "/StopServer" a worker gives the service one second (ten sleeps of 100 ms,
// leaving early when the manager shuts down), then ends it by force when it
// still runs and, when asked, starts it again.
//
// The wire: all to "localhost" on the service's port.
//   recognition: "/FPS" (reply 200 with {"fps":N}), "/StopServer"
//   control:     "/CheckRun", "/StopServer", "/UpdateConfig" (GET);
//                "/GenerateReport" (form: value), "/HandSignal" (form: value, open) (POST)
//   messengers:  "/CheckRun", "/StopServer"
// Any other path goes out as a GET.
#include <cstdint>
#include <string>

#include "supervision/service_context.h"

namespace vx::supervision {

// The recognition service. "/FPS" publishes fpsRecognition: the reply's
// "fps", 0 when the key is absent, -1 for no reply, another status, or a
// body that isn't a JSON object.
void ThreadRequests(ServiceContext& context, const std::string& path, bool restart);

// The control service. "/CheckRun" publishes statusControl: 0 for any
// reply, -1 for none. `value` and `open` are the form fields of the two POSTs.
void threadRequestsToDirect(ServiceContext& context, const std::string& path, bool restart,
                            std::int32_t value = 0, std::int32_t open = 0);

// The messenger service. "/CheckRun" publishes statusMes like the control's.
void threadRequestsToMes(ServiceContext& context, const std::string& path, bool restart);

// The forced stop that follows "/StopServer": false when the manager shut
// down during the second of grace (then nothing was ended or restarted).
// `worker` names the worker in the log lines ("ThreadRequests", …).
bool forceStop(ServiceContext& context, Service service, const std::string& worker,
               const std::string& finishLine);

} // namespace vx::supervision
