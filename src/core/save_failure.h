#pragma once
// How the commands report a config file that was not saved: an ERROR line in
// the system log always, and for a dialog's OK a box the operator sees.
#include <string>

namespace vx::core {

// Logs "<fileName> was not saved" at ERROR level when `saved` is false;
// returns `saved`.
bool noteSave(bool saved, const std::string& fileName);

// The operator's text, Windows-1251: "Не удалось сохранить файл <fileName>!".
std::string saveFailedText(const std::string& fileName);

} // namespace vx::core
