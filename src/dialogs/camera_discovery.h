#pragma once
// Camera discovery as the manager sees it: the tool get_rtsp_onvif, started
// twice by its bare name, and what it prints. Text in memory is
// Windows-1251; the tool prints UTF-8.
#include <functional>
#include <string>
#include <vector>

namespace vx::dialogs {

struct FoundCamera {
    std::string name;
    std::string ip;
};

// The scan output's cameras in its order. A parse failure, or an entry
// whose ip or name isn't a string, ends the reading and keeps the entries
// read so far, with "[VX2S] parseCamera sparse error at byte " and the
// position, or "[VX2S] parseCameras parse error type ", on standard error.
std::vector<FoundCamera> parseCameras(const std::string& output);
// The link of the link output; an object without "rtsp" gives "error",
// unreadable output the empty text (and its line on standard error).
std::string parseRTSP(const std::string& output);
// Login and password put into an rtsp:// link, as "login:password@" after
// its scheme: any other link comes back unchanged; "@" and ":" in either
// become "_"; credentials already in the link are dropped first.
std::string insertCredentials(const std::string& link, std::string login, std::string password);

// The list item of a camera: ip, one blank, name.
std::string cameraItemText(const FoundCamera& camera);
std::string scanCommandLine();
// The arguments as typed, each after one blank, unquoted.
std::string linkCommandLine(const std::string& ip, const std::string& login, const std::string& password);

// A run of the tool: whether it started, and the text it left (empty after
// a timed-out wait). The command line is Windows-1251.
struct ToolOutput {
    bool started = false;
    std::string text;
};
using ToolCall = std::function<ToolOutput(const std::string& commandLine)>;

// The messages of the discovery, Windows-1251.
std::string noCamerasText();      // "Камеры не найдены, ..."
std::string noLinkText();         // "Невозможно получить rtsp ссылку по технологии ONVIF!"

} // namespace vx::dialogs
