#pragma once
// What every config reader and writer shares: where a file lives, the named
// lock around it, the safety copy of the main config, and the handling of
// the JSON parser's errors.
//
// Paths here are in-memory text (Windows-1251), like everything the records
// hold; they become native paths only at the point where a file is opened.
//
// Messages go to standard error, one line each ending with std::endl, so the
// system log (which takes over standard error) gets a complete, flushed line.
#include <filesystem>
#include <functional>
#include <string>

#include <nlohmann/json.hpp>

namespace vx::config {

// The named locks agreed with the suite's processes, one per file kind.
inline constexpr const char* mainConfigMutexName = "vxConfigFileRWMC";
inline constexpr const char* recognitionConfigMutexName = "vxConfigFileRWRG";
inline constexpr const char* controlConfigMutexName = "vxConfigFileRWCG";
inline constexpr const char* messengersConfigMutexName = "vxConfigFileRWSM";
inline constexpr const char* cameraConfigMutexName = "vxConfigFileRWVS";   // one for all cameras

// `configDirectory` + the platform's separator + `fileName`.
std::string configFilePath(const std::string& configDirectory, const std::string& fileName);

// A 1251 path as the file system wants it (here: UTF-8 bytes).
std::filesystem::path toNativePath(const std::string& cp1251Path);

// Whether a writer keeps the previous file as "<path>.tmp" (main config only).
enum class SafetyCopy { none, keepPrevious };

// Writes `text` (already UTF-8, with "\n" line ends) as the whole file:
//  1. creates the named lock `mutexName`; when that fails, prints
//     "Failed to create/open mutex: <name>" and returns false;
//  2. waits for it without limit;
//  3. with SafetyCopy::keepPrevious, copies the file over "<path>.tmp"
//     (through "<path>.tmp.new", renamed over it); a failure (also the first
//     save, with no file yet) prints "Failed to copy main config file:
//     <error>", leaves the older .tmp as it was, and the write goes on;
//  4. writes the text to "<path>.new", checking every write, flushes it to
//     the disk and renames it over the file in one step; when any of that
//     fails, removes "<path>.new", prints "Failed to write config file
//     <path>: <error>; the file was not changed" and returns false;
//  5. releases the lock.
// The file is thus either the old text or the new, whole, whatever happens;
// a "<path>.new" left by a crash is overwritten by the next save and read by
// nobody. An empty `mutexName` means the file has no lock (receiver samples,
// white lists). The bytes on disk are `text` in the platform's text mode
// (platform::toTextMode: CR LF line ends on Windows).
bool writeConfigFile(const std::string& mutexName, const std::string& path,
                     const std::string& text, SafetyCopy safetyCopy = SafetyCopy::none);

// Whether `text` parses as JSON and, with `take` (the file's own reader's key
// taking, pointed at a scratch record), reads back without an error. When it
// doesn't, prints "Config file <path> not written: ..." with the reason.
bool textReadsBack(const std::string& path, const std::string& text,
                   const std::function<void(nlohmann::json&)>& take = nullptr);

// The writers of the JSON config files: writeConfigFile, but only for a text
// that textReadsBack; otherwise nothing is written (not even the .tmp) and
// the result is false.
bool writeJsonConfigFile(const std::string& mutexName, const std::string& path, const std::string& text,
                         SafetyCopy safetyCopy = SafetyCopy::none,
                         const std::function<void(nlohmann::json&)>& take = nullptr);

// How a read ended, so each reader can derive its own result: some return
// false after any failure, loadControlGlobal only when the file won't open.
enum class ReadOutcome {
    done,         // parsed and taken without an error
    noLock,       // the named lock couldn't be had (message printed)
    notOpened,    // the file won't open (after the defaults, if any)
    parseError,   // the parser failed (message printed)
    typeError,    // taking the values failed (message printed)
};

struct ConfigReadRequest {
    std::string mutexName;    // empty: the file has no lock
    std::string path;         // 1251
    std::string readerName;   // names the reader in messages, e.g. "loadConfig"
    bool tagged = true;       // messages start with "[VX2S] " (not loadExtendedWhiteList)
    // For the four files with defaults: called, with the lock held, when the
    // file won't open; it writes the defaults (through writeConfigFile, which
    // may take the same lock again in this thread) and the open is retried.
    std::function<void()> writeDefaults = nullptr;
};

// Opens, parses and hands the whole document to `take`, all under the lock.
// `take` gets the document non-const on purpose: operator[] on a missing
// section creates it empty, and value() on that then throws a type error,
// which fails the read as the readers' key tables expect. Whatever `take`
// stored before a throw stays stored.
//
// Messages, each a line of its own:
//   parse error: "[VX2S] <readerName> parse error at byte <byte>"
//   type error:  "[VX2S] <readerName> parse error type " (nothing after it)
// The other exceptions of nlohmann json (out_of_range from at(),
// invalid_iterator, other_error) and any other std::exception thrown while the
// values are taken (std::invalid_argument from parseDateTime or std::stoi on a
// bad field, for instance) take the type-error path too, so that a bad file
// never ends the process.
ReadOutcome readConfigFile(const ConfigReadRequest& request,
                           const std::function<void(nlohmann::json&)>& take);

} // namespace vx::config
