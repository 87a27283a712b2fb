#include "config/config_file.h"

#include <fstream>
#include <limits>
#include <vector>
#include <iostream>
#include <memory>

#include "config/text_codec.h"
#include "platform/file_replace.h"
#include "platform/named_lock.h"
#include "platform/paths.h"
#include "platform/text_mode.h"

namespace vx::config {
namespace {

// The named lock of one file operation, or none for the files that have no
// lock. Prints the agreed message when the lock can't be had.
// Every field a config file holds is an int32, a uint32 or a float, and
// converting a number outside their range is undefined. Such a number (a
// fractional one beyond the int32 range) becomes a text in the document, so
// that its key reads as a key of the wrong type, in its turn. Walked without
// recursion: a file may nest deeper than the stack allows.
void markOutOfRangeNumbers(nlohmann::json& document) {
    constexpr double lowest = std::numeric_limits<std::int32_t>::min();
    constexpr double highest = std::numeric_limits<std::int32_t>::max();
    std::vector<nlohmann::json*> pending{&document};
    while (!pending.empty()) {
        nlohmann::json* value = pending.back();
        pending.pop_back();
        if (value->is_structured()) {
            for (nlohmann::json& element : *value) pending.push_back(&element);
        } else if (value->is_number_float()) {
            const double number = value->get<double>();
            if (!(number >= lowest && number <= highest)) *value = "out of range";
        }
    }
}

class FileLock {
public:
    explicit FileLock(const std::string& mutexName) {
        if (mutexName.empty()) {
            ok_ = true;
            return;
        }
        lock_ = platform::createNamedLock(mutexName);
        ok_ = lock_ && lock_->lock();
        if (!ok_) std::cerr << "Failed to create/open mutex: " << mutexName << std::endl;
    }
    ~FileLock() {
        if (ok_ && lock_) lock_->unlock();
    }
    FileLock(const FileLock&) = delete;
    FileLock& operator=(const FileLock&) = delete;
    bool ok() const { return ok_; }

private:
    std::unique_ptr<platform::NamedLock> lock_;
    bool ok_ = false;
};

std::string messagePrefix(const ConfigReadRequest& request) {
    return (request.tagged ? "[VX2S] " : "") + request.readerName;
}

} // namespace

std::string configFilePath(const std::string& configDirectory, const std::string& fileName) {
    return configDirectory + platform::pathSeparator + fileName;
}

std::filesystem::path toNativePath(const std::string& cp1251Path) {
    // A path built from UTF-8 code units is converted to the native form by
    // the library itself (kept as it is here, UTF-16 on Windows).
    const std::string utf8 = cp1251ToUtf8(cp1251Path);
    return std::filesystem::path(std::u8string(utf8.begin(), utf8.end()));
}

std::string pendingFilePath(const std::string& path) { return path + ".new"; }

bool writeConfigFile(const std::string& mutexName, const std::string& path,
                     const std::string& text, SafetyCopy safetyCopy) {
    FileLock lock(mutexName);
    if (!lock.ok()) return false;
    const std::filesystem::path target = toNativePath(path);
    std::string error;
    if (safetyCopy == SafetyCopy::keepPrevious) {
        // The copy, too, goes through a file of its own, so that a failed or
        // interrupted copy leaves the older .tmp whole.
        const std::filesystem::path copy = toNativePath(path + ".tmp");
        const std::filesystem::path pendingCopy = toNativePath(pendingFilePath(path + ".tmp"));
        if (!platform::copyFileOverwrite(target, pendingCopy, error) ||
            !platform::replaceFile(pendingCopy, copy, error)) {
            platform::removeFileQuietly(pendingCopy);
            std::cerr << "Failed to copy main config file: " << error << std::endl;
        }
    }
    // The text goes to "<file>.new" beside the file and replaces it in one
    // step, so the file holds either the old text or the new one, never a part.
    const std::filesystem::path pending = toNativePath(pendingFilePath(path));
    if (!platform::writeWholeFile(pending, platform::toTextMode(text), error) || !platform::replaceFile(pending, target, error)) {
        platform::removeFileQuietly(pending);
        std::cerr << "Failed to write config file " << path << ": " << error << "; the file was not changed"
                  << std::endl;
        return false;
    }
    return true;
}

bool textReadsBack(const std::string& path, const std::string& text,
                   const std::function<void(nlohmann::json&)>& take) {
    try {
        nlohmann::json document = nlohmann::json::parse(text);
        if (take) take(document);
        return true;
    } catch (const nlohmann::json::parse_error& e) {
        std::cerr << "Config file " << path << " not written: its new text doesn't parse (error at byte "
                  << e.byte << ")" << std::endl;
    } catch (const std::exception& e) {
        std::cerr << "Config file " << path << " not written: its new text doesn't read back (" << e.what() << ")"
                  << std::endl;
    }
    return false;
}

bool writeJsonConfigFile(const std::string& mutexName, const std::string& path, const std::string& text,
                         SafetyCopy safetyCopy, const std::function<void(nlohmann::json&)>& take) {
    return textReadsBack(path, text, take) && writeConfigFile(mutexName, path, text, safetyCopy);
}

ReadOutcome readConfigFile(const ConfigReadRequest& request,
                           const std::function<void(nlohmann::json&)>& take) {
    FileLock lock(request.mutexName);
    if (!lock.ok()) return ReadOutcome::noLock;
    const std::filesystem::path source = toNativePath(request.path);
    // Text mode, as the suite's processes read: the parser treats a carriage
    // return before a line feed as blank space either way.
    std::ifstream file(source);
    if (!file.is_open() && request.writeDefaults) {
        request.writeDefaults();
        file.open(source);
    }
    if (!file.is_open()) return ReadOutcome::notOpened;
    try {
        nlohmann::json document = nlohmann::json::parse(file);
        markOutOfRangeNumbers(document);
        take(document);
    } catch (const nlohmann::json::parse_error& e) {
        std::cerr << messagePrefix(request) << " parse error at byte " << e.byte << std::endl;
        return ReadOutcome::parseError;
    } catch (const std::exception&) {
        // type_error is the expected one (a key of the wrong JSON type, value()
        // on a section that is missing). The rest of nlohmann's family and a
        // bad field's conversion error are reported the same way, so that no
        // file, however damaged, takes the process down.
        std::cerr << messagePrefix(request) << " parse error type " << std::endl;
        return ReadOutcome::typeError;
    }
    return ReadOutcome::done;
}

} // namespace vx::config
