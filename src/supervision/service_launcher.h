#pragma once
// Starting the three services. Each start routine builds the service's
// command line, starts it in baseDirectory, watches it for startWatchMs
// (five seconds), logs what came of it and rebuilds the service's HTTP
// client, after a failed start too, so that a changed port takes effect in
// any case. None of them asks whether the service already runs: the callers
// look first. Each blocks its caller for up to the watch time; the main
// thread never calls them.
#include <cstdint>
#include <string>

#include "supervision/service_context.h"

namespace vx::supervision {

// The command lines, in-memory text (1251):
//   vxInference "<configDirectory>/vx_recog_config_srv.json" "<systemLogPath>/vxInferenceLog.txt"
//   vxControl  (the name and one blank; the service finds its file itself)
//   vxMes "<configDirectory>/vx_mess_config.json" "<systemLogPath><sep>vxMes.txt"[ -logging]
// " -logging" is added when the log threshold is 2 or below. The recognition
// paths take a forward slash, the messenger's log path the platform's
// separator, as they always have.
std::string inferenceCommandLine(const std::string& configDirectory, const std::string& systemLogPath);
std::string controlCommandLine();
std::string mesCommandLine(const std::string& configDirectory, const std::string& systemLogPath,
                           std::int32_t logThreshold);

void startInference(ServiceContext& context);
void startControl(ServiceContext& context);
void startMes(ServiceContext& context);

// The client set-up of one service with the port the settings give now.
void initHTTPClient(ServiceContext& context);
void initHTTPClientDirect(ServiceContext& context);
void initHTTPClientMes(ServiceContext& context);

} // namespace vx::supervision
