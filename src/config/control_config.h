#pragma once
// The settings of the control service (vxControl), kept in
// vx_control_config.json.
#include <cstdint>
#include <string>

namespace vx::config {

inline constexpr const char* controlConfigFileName = "vx_control_config.json";

struct ControlSrvConfig {
    std::int32_t port = 1235;
    bool httpLogger = false;
    std::int32_t modeDB = 2;   // 0 no database, 1 a single file, 2 one file a month
    bool equalLatinCyr = false;
    bool notReturnServSymb = true;
    bool autoUpdateListsInControl = false;
};

// The file's text as saveControlGlobal writes it (UTF-8, "\n" line ends).
std::string controlConfigText(const ControlSrvConfig& config);

// Reads `configDirectory`/vx_control_config.json into `config` under the lock
// vxConfigFileRWCG; a file that won't open is written with the record as it
// stands and opened again. Every key falls back on the current field; none
// is limited. False only when the lock can't be had or the file won't open:
// a parse or type error is printed and the result is still true, so a
// corrupt file never reaches the operator's message box.
bool loadControlGlobal(const std::string& configDirectory, ControlSrvConfig& config);

// Writes the record. True when the file was written.
bool saveControlGlobal(const std::string& configDirectory, const ControlSrvConfig& config);

} // namespace vx::config
