#include "maintenance/crash_capture.h"

#include <cstdint>
#include <cstring>
#include <exception>
#include <typeinfo>

#include "platform/paths.h"

namespace vx::maintenance {

namespace {

// Filled once at install time, read by the handlers without a lock.
char dumpPath[4096];
char dumpPathText[4096];
// The uncaught exception's text for the report (terminate path only).
char terminateDetail[512];

void copyText(char* to, std::size_t size, const std::string& from)
{
    const std::size_t n = from.size() < size - 1 ? from.size() : size - 1;
    std::memcpy(to, from.data(), n);
    to[n] = '\0';
}

// "<prefix><text>" as one crash text, cut to what fits.
void writeJoined(const char* prefix, const char* text)
{
    char line[4200];
    std::size_t n = 0;
    for (const char* part : {prefix, text})
        for (; *part && n + 1 < sizeof line; ++part)
            line[n++] = *part;
    line[n] = '\0';
    platform::writeCrashText(line);
}

void signalEntry(int number, const platform::CrashReason& reason)
{
    if (reason.exception)
        onUnhandledException(reason);
    onSignal(number, reason);
}

std::string utf8Of(const std::filesystem::path& path)
{
    const std::u8string text = path.u8string();
    return std::string(text.begin(), text.end());
}

} // namespace

void installCrashCapture(const std::filesystem::path& baseDirectory, const std::string& pathText)
{
    const std::filesystem::path path = baseDirectory / "dumps" / "VexlaneDump.dmp";
    // The dump is made from the path's UTF-8 form on every platform.
    copyText(dumpPath, sizeof dumpPath, utf8Of(path));
    const std::string separator(1, platform::pathSeparator);
    const std::string text =
        pathText.empty() ? utf8Of(path) : pathText + separator + "dumps" + separator + "VexlaneDump.dmp";
    copyText(dumpPathText, sizeof dumpPathText, text);
    platform::installFatalSignalHandlers(signalEntry);
    std::set_terminate(onTerminate);
}

void sendCrashTextsTo(const std::filesystem::path& logFile)
{
    platform::setCrashTextFile(logFile);
}

std::filesystem::path crashDumpPath()
{
    return std::filesystem::path(std::u8string(dumpPath, dumpPath + std::strlen(dumpPath)));
}

void writeCrashDump(const char* path, const platform::CrashReason& reason)
{
    if (reason.exception) {
        // The code as the system gives it: an unsigned 32-bit number.
        char digits[24];
        writeJoined("Creating dump after exception. Code: ",
                    platform::formatDecimal(static_cast<long long>(static_cast<std::uint32_t>(reason.code)), digits));
    } else {
        platform::writeCrashText("Creating dump without exception context (terminate handler)");
    }
    const int dump = platform::createCrashDump(path);
    if (dump < 0) {
        // The text names the path in the log's code page; the file itself is
        // made from its native form.
        writeJoined("Creating dump-file error: ", path == dumpPath ? dumpPathText : path);
        return;
    }
    platform::writeCrashReport(dump, reason);
}

void onTerminate()
{
    platform::claimCrash(1);
    platform::writeCrashText("Terminate handler called! nullptr dump");
    platform::CrashReason reason;
    // What the uncaught exception said goes into the report; this path runs
    // outside a signal handler, so asking is safe.
    if (std::exception_ptr current = std::current_exception()) {
        try {
            std::rethrow_exception(current);
        } catch (const std::exception& e) {
            copyText(terminateDetail, sizeof terminateDetail, std::string(typeid(e).name()) + ": " + e.what());
        } catch (...) {
            copyText(terminateDetail, sizeof terminateDetail, "an exception of an unknown type");
        }
        reason.detail = terminateDetail;
    }
    writeCrashDump(dumpPath, reason);
    platform::endProcessNow(1);
}

void onUnhandledException(const platform::CrashReason& reason)
{
    platform::claimCrash(1);
    writeCrashDump(dumpPath, reason);
    platform::endProcessNow(1);
}

void onSignal(int number, const platform::CrashReason& reason)
{
    platform::claimCrash(1);
    char digits[24];
    char line[64] = "Signal ";
    std::strcat(line, platform::formatDecimal(number, digits));
    std::strcat(line, " received!");
    platform::writeCrashText(line);
    writeCrashDump(dumpPath, reason);
    platform::endProcessNow(1);
}

} // namespace vx::maintenance
