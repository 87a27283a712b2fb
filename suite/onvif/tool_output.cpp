#include "tool_output.h"

#include <cstdio>
#include <mutex>

#include <nlohmann/json.hpp>

#include "trace.h"

namespace onvif {

namespace {

std::string dump(const nlohmann::json& value)
{
    // Names come from cameras: bytes that are not UTF-8 become U+FFFD
    // rather than ending the run.
    return value.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

} // namespace

std::string scanJson(const std::vector<FoundCamera>& cameras)
{
    nlohmann::json list = nlohmann::json::array();
    for (const FoundCamera& camera : cameras)
        list.push_back({{"ip", camera.ip}, {"name", camera.name}});
    return dump({{"cameras", list}});
}

std::string rtspJson(const std::optional<std::string>& link)
{
    nlohmann::json value = nlohmann::json::object();
    if (link)
        value["rtsp"] = *link;
    return dump(value);
}

bool printOnce(const std::string& text)
{
    static std::mutex mutex;
    static bool printed = false;
    std::lock_guard lock(mutex);
    if (printed)
        return false;
    printed = true;
    std::fwrite(text.data(), 1, text.size(), stdout);
    std::fputc('\n', stdout);
    std::fflush(stdout);
    return true;
}

void trace(const std::string& text)
{
    static const bool enabled = std::getenv("VX_ONVIF_TRACE") != nullptr;
    if (enabled)
        std::fprintf(stderr, "get_rtsp_onvif: %s\n", text.c_str());
}

} // namespace onvif
