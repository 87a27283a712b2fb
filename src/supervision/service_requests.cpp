#include "supervision/service_requests.h"

#include <exception>

#include <httplib.h>
#include <nlohmann/json.hpp>

#include "maintenance/system_log.h"
#include "supervision/service_launcher.h"

namespace vx::supervision {

using maintenance::logDebug;
using maintenance::logError;
using maintenance::logInfo;
using maintenance::logTrace;
using maintenance::logWarning;

namespace {

bool usable(const std::shared_ptr<httplib::Client>& client)
{
    return client && client->is_valid();
}

} // namespace

bool forceStop(ServiceContext& context, Service service, const std::string& worker,
               const std::string& finishLine)
{
    for (int i = 0; i < 10; ++i) {
        context.pause(100);
        if (context.shuttingDown) {
            VX_LOG(logTrace, finishLine);
            return false;
        }
    }
    const std::string name = serviceImageName(service);
    try {
        const long pid = context.process.find(name);
        if (pid == 0) {
            VX_LOG(logDebug, worker + " " + name + " pid == 0");
        } else if (context.process.terminate(pid)) {
            VX_LOG(logDebug, worker + " " + name + " Terminated!");
        }
    } catch (...) {
        VX_LOG(logInfo, worker + " " + name + " terminate ...!");
    }
    return true;
}

void ThreadRequests(ServiceContext& context, const std::string& path, bool restart)
{
    VX_LOG(logDebug, "ThreadRequests " + path);
    if (!usable(context.clients.clientRecognition.load())) {
        VX_LOG(logError, "ClientHTTP invalid");
        return;
    }
    int fps = -1;
    try {
        std::lock_guard<std::mutex> lock(context.clients.clientRecognitionMutex);
        // Teardown may have taken the client away since the look above.
        if (std::shared_ptr<httplib::Client> client = context.clients.clientRecognition.load()) {
            httplib::Result res = client->Get(path.c_str());
            if (res) {
                VX_LOG(logDebug, "ThreadRequests res " + std::to_string(res->status));
                if (res->status == 200 && path == "/FPS") {
                    try {
                        const nlohmann::json body = nlohmann::json::parse(res->body);
                        VX_LOG(logDebug, "ThreadRequests JSON " + res->body);
                        if (!body.is_object())
                            throw std::runtime_error("not an object");
                        fps = body.contains("fps") ? body["fps"].get<int>() : 0;
                    } catch (const nlohmann::json::parse_error&) {
                        VX_LOG(logError, "ThreadRequests JSON parse_error");
                        fps = -1;
                    } catch (...) {
                        VX_LOG(logError, "ThreadRequests JSON ...");
                        fps = -1;
                    }
                }
            }
        }
    } catch (const std::exception& e) {
        VX_LOG(logError, std::string("HTTP POST request failed: ") + e.what());
    } catch (...) {
        VX_LOG(logError, "HTTP POST request failed with unknown exception");
    }
    if (path == "/StopServer") {
        if (forceStop(context, Service::recognition, "ThreadRequests", "ThreadRequests 'finish' ok!") && restart)
            startInference(context);
    }
    if (path == "/FPS")
        context.fpsRecognition = fps;
    VX_LOG(logTrace, "statusInferenceServer:" + std::to_string(context.fpsRecognition.load()));
}

void threadRequestsToDirect(ServiceContext& context, const std::string& path, bool restart,
                            std::int32_t value, std::int32_t open)
{
    if (!usable(context.clients.clientControl.load())) {
        VX_LOG(logError, "ClientHTTPDirect invalid");
        return;
    }
    VX_LOG(logDebug, "threadRequestsToDirect " + path);
    bool answered = false;
    try {
        std::lock_guard<std::mutex> lock(context.clients.clientControlMutex);
        std::shared_ptr<httplib::Client> client = context.clients.clientControl.load();
        if (client) {
            if (path == "/GenerateReport") {
                client->Post(path.c_str(), httplib::Params{{"value", std::to_string(value)}});
                return;
            }
            if (path == "/HandSignal") {
                client->Post(path.c_str(),
                             httplib::Params{{"value", std::to_string(value)}, {"open", std::to_string(open)}});
                return;
            }
            httplib::Result res = client->Get(path.c_str());
            if (res) {
                answered = true;
                VX_LOG(logDebug, "ThreadRequestsToDirect res " + std::to_string(res->status));
            }
        }
    } catch (const std::exception& e) {
        VX_LOG(logError, std::string("HTTP ToDirect POST request failed: ") + e.what());
    } catch (...) {
        VX_LOG(logError, "HTTP ToDirect POST request failed with unknown exception");
    }
    if (path == "/CheckRun")
        context.statusControl = answered ? 0 : -1;
    if (path == "/StopServer") {
        if (forceStop(context, Service::control, "ThreadRequestsToDirect", "ThreadRequestsToDirect 'finish' ok!") &&
            restart)
            startControl(context);
    }
}

void threadRequestsToMes(ServiceContext& context, const std::string& path, bool restart)
{
    if (!usable(context.clients.clientMes.load())) {
        VX_LOG(logError, "ClientHTTPMes invalid");
        return;
    }
    VX_LOG(logDebug, "threadRequestsToMes " + path);
    // Held for the whole call: a rebuild meanwhile publishes a new client and
    // this call finishes on the old one.
    const std::shared_ptr<httplib::Client> client = context.clients.clientMes.load();
    if (!client) {
        VX_LOG(logWarning, "HTTP Mes client not initialized");
        return;
    }
    bool answered = false;
    try {
        std::lock_guard<std::mutex> lock(context.clients.clientMesMutex);
        httplib::Result res = client->Get(path.c_str());
        if (res) {
            answered = true;
            VX_LOG(logDebug, "threadRequestsToMes res " + std::to_string(res->status));
        }
    } catch (const std::exception& e) {
        VX_LOG(logError, std::string("HTTP ToMes POST request failed: ") + e.what());
    } catch (...) {
        VX_LOG(logError, "HTTP ToMes POST request failed with unknown exception");
    }
    if (path == "/CheckRun")
        context.statusMes = answered ? 0 : -1;
    if (path == "/StopServer") {
        if (forceStop(context, Service::messengers, "threadRequestsToMes", "threadRequestsToMes 'finish' ok!") &&
            restart)
            startMes(context);
    }
}

} // namespace vx::supervision
