#include "dialogs/camera_discovery.h"

#include <iostream>
#include <regex>

#include <nlohmann/json.hpp>

#include "config/text_codec.h"
#include "platform/paths.h"

namespace vx::dialogs {

std::vector<FoundCamera> parseCameras(const std::string& output)
{
    std::vector<FoundCamera> cameras;
    try {
        nlohmann::json document = nlohmann::json::parse(output);
        for (auto& entry : document["cameras"]) {
            FoundCamera camera;
            camera.ip = config::utf8ToCp1251(entry["ip"].get<std::string>());
            camera.name = config::utf8ToCp1251(entry["name"].get<std::string>());
            cameras.push_back(std::move(camera));
        }
    } catch (const nlohmann::json::parse_error& e) {
        std::cerr << "[VX2S] parseCamera sparse error at byte " << e.byte << std::endl;
    } catch (const std::exception&) {
        // type_error is the one expected (a key of the wrong type, a
        // document that isn't an object); any other is reported alike.
        std::cerr << "[VX2S] parseCameras parse error type " << std::endl;
    }
    return cameras;
}

std::string parseRTSP(const std::string& output)
{
    try {
        nlohmann::json document = nlohmann::json::parse(output);
        if (!document.contains("rtsp"))
            return "error";
        return config::utf8ToCp1251(document["rtsp"].get<std::string>());
    } catch (const nlohmann::json::parse_error& e) {
        std::cerr << "[VX2S] parseRTSP parse error at byte " << e.byte << std::endl;
    } catch (const std::exception&) {
        std::cerr << "[VX2S] parseRTSP parse error type " << std::endl;
    }
    return {};
}

std::string insertCredentials(const std::string& link, std::string login, std::string password)
{
    static const std::string scheme = "rtsp://";
    if (link.rfind(scheme, 0) != 0)
        return link;
    for (std::string* text : {&login, &password})
        for (char& c : *text)
            if (c == '@' || c == ':')
                c = '_';
    static const std::regex credentials("rtsp://[^@]+@");
    std::string result = std::regex_replace(link, credentials, scheme);
    result.insert(result.find(scheme) + scheme.size(), login + ":" + password + "@");
    return result;
}

std::string cameraItemText(const FoundCamera& camera) { return camera.ip + " " + camera.name; }

std::string scanCommandLine() { return std::string("get_rtsp_onvif") + platform::executableSuffix + " -scan"; }

std::string linkCommandLine(const std::string& ip, const std::string& login, const std::string& password)
{
    return std::string("get_rtsp_onvif") + platform::executableSuffix + " -rtsp " + ip + " " + login + " " + password;
}

std::string noCamerasText()
{
    return config::utf8ToCp1251("Камеры не найдены, попробуйте снова или введите ссылку rtsp самостоятельно!");
}

std::string noLinkText() { return config::utf8ToCp1251("Невозможно получить rtsp ссылку по технологии ONVIF!"); }

} // namespace vx::dialogs
