#pragma once
// What a window leaves in <runtime>/windows/: the socket, named by the handle
// in 16 lower-case hex digits, and the record "<handle>.rec" beside it.
// Internal to the POSIX code.
#include "platform/window_endpoint.h"

#include <optional>
#include <string>
#include <vector>

namespace vx::platform::posix {

struct WindowRecord {
    long pid = 0;
    // The owner's start time in clock ticks since boot (/proc/<pid>/stat),
    // so a pid that the system has handed to a new process isn't taken for
    // the owner. 0 when unknown.
    unsigned long long startTime = 0;
    std::string className;
    std::string title;
};

// <runtime>/windows, created 0700 when missing; empty on failure.
std::string windowsFolder();
std::string handleText(WindowHandle handle);
// Parses the 16 hex digits of a socket or record name; 0 when it isn't one.
WindowHandle handleFromText(const std::string& text);
std::string socketPath(const std::string& folder, WindowHandle handle);
std::string recordPath(const std::string& folder, WindowHandle handle);

std::optional<WindowRecord> readRecord(const std::string& path);
// Writes a temporary file and renames it over the record, so a reader sees
// either the old record or the new one, never half of one.
bool writeRecord(const std::string& folder, WindowHandle handle, const WindowRecord& record);

unsigned long long processStartTime(long pid);
// The record's owner still runs (a zombie counts as gone).
bool ownerAlive(const WindowRecord& record);

// Handles of all records in the folder, in ascending order.
std::vector<WindowHandle> listRecords(const std::string& folder);
// Removes what a dead owner left behind.
void removeWindowFiles(const std::string& folder, WindowHandle handle);

} // namespace vx::platform::posix
