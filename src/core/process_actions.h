#pragma once
// The entry points the core's commands reach the services and the streams
// by. The service workers and the stream control fill them in; tests put in
// their own.
#include <functional>
#include <future>
#include <string>

namespace vx::core {

struct ProcessActions {
    // One request to a service: the path ("/StopServer", "/FPS", …) and
    // whether the service is started again after it stopped.
    using ServiceRequest = std::function<void(const std::string& path, bool restart)>;
    ServiceRequest threadRequests;           // recognition service
    ServiceRequest threadRequestsToDirect;   // control service
    ServiceRequest threadRequestsToMes;      // messenger service
    std::function<void(int index)> videoStart;
    std::function<void(int index)> videoStop;
    std::function<bool()> messengerOn;       // the messenger service is switched on
    // Writes the main config from the live record; false when it was not
    // saved (already logged).
    std::function<bool()> saveMainConfig;
    // Starts a task asynchronously; std::async unless a test says otherwise.
    std::function<std::future<void>(std::function<void()>)> launch;
};

// std::async with the launch policy "async".
std::future<void> launchAsync(std::function<void()> task);

} // namespace vx::core
