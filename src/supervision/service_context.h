#pragma once
// Everything the service launcher and the service workers work with: where
// the settings come from, the three HTTP clients, the process operations,
// the sleeps and the values the workers publish. The manager makes one for
// its window; tests make their own with their own process operations and
// sleeps, so no test waits for real or touches another test's services.
#include <atomic>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>

#include "platform/process.h"
#include "supervision/http_clients.h"

namespace vx::core {
struct AppState;
}

namespace vx::supervision {

enum class Service { recognition, control, messengers };

// The service's image name on this platform: "vxInference", "vxControl",
// "vxMes" followed by the platform's executable suffix.
std::string serviceImageName(Service service);

// What a start or a request reads at the moment it runs.
struct ServiceSettings {
    std::filesystem::path baseDirectory;   // working directory and first place to look
    std::string configDirectory;           // 1251, ConfigDirectory
    std::string systemLogPath;             // 1251
    std::int32_t logThreshold = 3;         // the system log's current threshold
    std::int32_t recognitionPort = 1234;   // RecognitionSrvConfig, 1234 before it is read
    std::int32_t controlPort = 1235;
    std::int32_t mesPort = 1236;
};

struct ProcessOperations {
    std::function<std::unique_ptr<platform::StartedProcess>(const platform::ProcessStartInfo&)> start =
        platform::startProcess;
    std::function<long(const std::string& imageName)> find = platform::findProcessByName;
    std::function<bool(long pid)> terminate = platform::terminateProcess;
};

struct ServiceContext {
    // The values the workers publish and the flag they obey live elsewhere
    // (the manager's AppState); the context only points at them.
    ServiceContext(std::atomic<bool>& shuttingDown, std::atomic<int>& fpsRecognition,
                   std::atomic<int>& statusControl, std::atomic<int>& statusMes);
    ServiceContext(const ServiceContext&) = delete;
    ServiceContext& operator=(const ServiceContext&) = delete;

    std::function<ServiceSettings()> settings = [] { return ServiceSettings{}; };
    ProcessOperations process;
    std::function<void(int ms)> sleep;   // a real sleep unless a test sets it
    int startWatchMs = 5000;             // how long a start routine watches its service
    ServiceClients clients;

    std::atomic<bool>& shuttingDown;
    std::atomic<int>& fpsRecognition;
    std::atomic<int>& statusControl;
    std::atomic<int>& statusMes;

    void pause(int ms) const;
};

// A context bound to the manager's state: its shuttingDown, its published
// values, and settings read from its records on each call.
std::shared_ptr<ServiceContext> makeServiceContext(core::AppState& state);

} // namespace vx::supervision
