#pragma once
// Help in moving the settings over from the last program that ran: when a
// new version is unpacked beside the old one and started from its own
// folder, the operator is offered the earlier installation's configs.
// The per-user data folder remembers where the manager last ran.
#include <filesystem>
#include <string>

namespace vx::maintenance {

// The file below the user data folder that holds the last run's folder.
extern const char* const lastRunFileName;

// Reads the remembered folder and remembers `current` in its place. Gives
// the earlier folder when there is one, it differs from `current` and it
// still holds a configs folder; otherwise an empty path (a first run
// anywhere, the same folder again, an earlier folder since removed). With no
// user data folder (`userData` empty) nothing is remembered or offered.
std::filesystem::path checkSettingsMigration(const std::filesystem::path& userData,
                                             const std::filesystem::path& current);

// Copies the configs folder of `earlier` over that of `current`, with its
// subfolders; files of the same name are replaced, others stay. On failure
// returns false with the system's reason in `error`.
bool copyEarlierConfigs(const std::filesystem::path& earlier, const std::filesystem::path& current,
                        std::string& error);

} // namespace vx::maintenance
