#include "service_stand_in.h"

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <mutex>
#include <thread>

#include <httplib.h>

#include "config/config_file.h"
#include "config/control_config.h"
#include "config/messenger_config.h"
#include "config/recognition_config.h"
#include "config/text_codec.h"
#include "platform/paths.h"
#include "platform/process_info.h"
#include "platform/program_arguments.h"

namespace vx::standin {

namespace {

struct Profile {
    std::string name;
    std::string configPath;
    std::string logPath;
    std::string mutexName;
    int defaultPort = 0;
};

class RequestLog {
public:
    explicit RequestLog(const std::string& path)
    {
        std::error_code ec;
        const std::filesystem::path file(std::u8string(path.begin(), path.end()));
        if (file.has_parent_path())
            std::filesystem::create_directories(file.parent_path(), ec);
        out_.open(file, std::ios::app | std::ios::binary);
    }
    void line(const std::string& text)
    {
        std::lock_guard<std::mutex> lock(mutex_);
        out_ << text << '\n';
        out_.flush();
    }

private:
    std::mutex mutex_;
    std::ofstream out_;
};

std::string environment(const std::string& prefix, const std::string& name, const std::string& fallback = "")
{
    const char* value = std::getenv((prefix + name).c_str());
    return value ? std::string(value) : fallback;
}

int environmentNumber(const std::string& prefix, const std::string& name, int fallback)
{
    const std::string text = environment(prefix, name);
    try {
        return text.empty() ? fallback : std::stoi(text);
    } catch (...) {
        return fallback;
    }
}

std::string upper(std::string text)
{
    for (char& c : text)
        c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return text;
}

Profile profileFor(ServiceKind kind, const std::vector<std::string>& args)
{
    const auto argc = args.size();
    Profile p;
    const std::string sep(1, platform::pathSeparator);
    switch (kind) {
    case ServiceKind::recognition:
        p = {"vxInference", argc > 1 ? args[1] : "", argc > 2 ? args[2] : "vxInferenceLog.txt",
             config::recognitionConfigMutexName, 1234};
        break;
    case ServiceKind::control:
        p = {"vxControl", "configs" + sep + config::controlConfigFileName, "logs" + sep + "vxControlLog.txt",
             config::controlConfigMutexName, 1235};
        break;
    case ServiceKind::messengers:
        p = {"vxMes", argc > 1 ? args[1] : "", argc > 2 ? args[2] : "vxMes.txt", config::messengersConfigMutexName,
             1236};
        break;
    }
    return p;
}

// The port as the service would take it: "port" of its file, under the lock
// the manager writes the file under.
int readPort(const Profile& profile)
{
    int port = profile.defaultPort;
    if (profile.configPath.empty())
        return port;
    config::ConfigReadRequest request;
    request.mutexName = profile.mutexName;
    request.path = config::utf8ToCp1251(profile.configPath);   // the readers take the in-memory code page
    request.readerName = profile.name;
    config::readConfigFile(request, [&port](nlohmann::json& j) { port = j.value("port", port); });
    return port;
}

std::string describe(const httplib::Request& req)
{
    std::string text = req.method + " " + req.path;
    for (const auto& [key, value] : req.params)
        text += " " + key + "=" + value;
    return text;
}

[[noreturn]] void leave(RequestLog& log, int code)
{
    log.line("exit " + std::to_string(code));
    std::_Exit(code);
}

} // namespace

ServiceKind serviceKind(const std::string& name)
{
    if (name == "vxControl")
        return ServiceKind::control;
    if (name == "vxMes")
        return ServiceKind::messengers;
    return ServiceKind::recognition;
}

int runService(ServiceKind kind, int argc, char* argv[])
{
    const std::vector<std::string> args = platform::programArguments(argc, argv);
    const Profile profile = profileFor(kind, args);
    const std::string prefix = upper(profile.name) + "_";
    RequestLog log(profile.logPath);
    const int port = readPort(profile);
    log.line("start pid=" + std::to_string(platform::currentProcessId()) + " port=" + std::to_string(port));
    for (std::size_t i = 1; i < args.size(); ++i)
        log.line("arg " + std::to_string(i) + " " + args[i]);

    const int exitAfterMs = environmentNumber(prefix, "EXIT_AFTER_MS", -1);
    if (exitAfterMs >= 0) {
        const int code = environmentNumber(prefix, "EXIT_CODE", 0);
        std::thread([&log, exitAfterMs, code] {
            std::this_thread::sleep_for(std::chrono::milliseconds(exitAfterMs));
            leave(log, code);
        }).detach();
    }
    const bool hang = environment(prefix, "HANG") == "1";
    const bool ignoreStop = environment(prefix, "IGNORE_STOP") == "1";
    const int fps = environmentNumber(prefix, "FPS", 25);
    const int fpsStatus = environmentNumber(prefix, "FPS_STATUS", 200);
    const std::string fpsBody = environment(prefix, "FPS_BODY", "{\"fps\":" + std::to_string(fps) + "}");

    httplib::Server server;
    server.set_address_family(AF_INET);
    if (hang) {
        server.set_pre_routing_handler([&log](const httplib::Request& req, httplib::Response&) {
            log.line("hang " + req.method + " " + req.path);
            for (;;)
                std::this_thread::sleep_for(std::chrono::hours(1));
            return httplib::Server::HandlerResponse::Handled;
        });
    }
    server.set_logger([&log, ignoreStop](const httplib::Request& req, const httplib::Response&) {
        log.line(describe(req));
        if (req.path == "/StopServer" && !ignoreStop) {
            // Leaves once the answer is on its way.
            std::thread([&log] {
                std::this_thread::sleep_for(std::chrono::milliseconds(50));
                leave(log, 0);
            }).detach();
        }
    });
    const bool recognition = kind == ServiceKind::recognition;
    server.Get("/StopServer", [](const httplib::Request&, httplib::Response& res) { res.set_content("OK", "text/plain"); });
    if (recognition) {
        server.Get("/FPS", [fpsStatus, fpsBody](const httplib::Request&, httplib::Response& res) {
            res.status = fpsStatus;
            res.set_content(fpsBody, "application/json");
        });
    } else {
        server.Get("/CheckRun", [](const httplib::Request&, httplib::Response& res) { res.set_content("OK", "text/plain"); });
    }
    if (kind == ServiceKind::control) {
        auto ok = [](const httplib::Request&, httplib::Response& res) { res.set_content("OK", "text/plain"); };
        server.Get("/UpdateConfig", ok);
        server.Post("/GenerateReport", ok);
        server.Post("/HandSignal", ok);
    }
    if (!server.listen("127.0.0.1", port)) {
        log.line("listen failed");
        leave(log, 1);
    }
    leave(log, 0);
}

} // namespace vx::standin
