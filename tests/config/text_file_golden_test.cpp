// Every text file the manager writes, byte for byte as this platform's build
// writes it: golden/posix/ holds the Linux bytes (LF, '/'), golden/win32/ the
// Windows bytes (CR LF, '\' doubled inside JSON). The same records are
// written on both; only the install folder differs. The system log is
// CR LF on both. The main, camera, recognition and control files have a second
// golden file each, of a record with every field away from its default.
//
// After a deliberate change of a format, VEXLANE_UPDATE_GOLDEN=1 rewrites
// this platform's golden files from what the writers produce.
#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>

#include "config/camera_config.h"
#include "config/control_config.h"
#include "config/main_config.h"
#include "config/messenger_config.h"
#include "config/recognition_config.h"
#include "config/text_codec.h"
#include "config/white_list_file.h"
#include "config/white_list_registry.h"
#include "maintenance/local_time.h"
#include "maintenance/log_buffer.h"
#include "platform/paths.h"
#include "camera_away_record.h"
#include "config_folder.h"

namespace vx::config {
namespace {

namespace fs = std::filesystem;
using test::ConfigFolder;

const bool windows = platform::pathSeparator == '\\';
const char* const platformFolder = windows ? "win32" : "posix";
// The install folder the records name (1251): a Cyrillic folder below it
// shows the conversion to UTF-8 as well.
const std::string installFolder = windows ? "C:\\Vexlane" : "/opt/vexlane";

std::string underInstall(const std::string& name) { return configFilePath(installFolder, name); }

WhiteList plainList(const std::string& file, bool oneTime) {
    WhiteList list;
    list.name = utf8ToCp1251("Сотрудники");
    list.file = file;
    list.oneTime = oneTime;
    for (int i = 0; i < 2; ++i) {
        WhiteListEntry row;
        row.ID = i + 1;
        row.num = i == 0 ? utf8ToCp1251("А123ВС77") : "X*7[12]";
        row.car = i == 0 ? "Lada" : "";
        row.add = utf8ToCp1251("гость");
        if (oneTime) {
            row.time1 = "2026-11-23 08:00:00";
            row.time2 = "2026-11-23 20:00:00";
        }
        list.entries.push_back(row);
    }
    return list;
}

WhiteList extendedList() {
    WhiteList list;
    list.name = "gate";
    list.file = "list3.list.json";
    list.extended = true;
    NestedList staff;
    staff.file = "list1.list.csv";
    NestedList guests;
    guests.file = "list2.list.csv";
    guests.permitted_access_days = "1,2,3,4,5";
    guests.permitted_access_time1 = "08:00:00";
    guests.permitted_access_time2 = "18:30:00";
    list.lists = {staff, guests};
    return list;
}

void writeLog(const ConfigFolder& folder, const std::string& name) {
    std::streambuf* previous = std::cerr.rdbuf();
    {
        maintenance::LogBuffer log(folder.file(name), maintenance::LogMode::appendStart, [] { return std::time_t{0}; });
        log.writeLine("1.0.0.1");
        log.log(maintenance::logError, utf8ToCp1251("Поток 1 не отвечает"));
        std::cerr.rdbuf(&log);
        std::cerr << "[VX2S] loadConfig parse error at byte 12" << std::endl;
        std::cerr.rdbuf(previous);
    }
}

// The file's bytes as they are, line ends included (the folder's bytes()
// reads them as text).
using vx::test::readFileBytes;

struct GoldenFile {
    std::string name;   // the file the writer makes, and its golden file
    std::function<void(const ConfigFolder&)> write;
    // Reads the file with its reader and saves the record again (none for
    // the log).
    std::function<void(const ConfigFolder&)> reread = nullptr;
    // The golden file's name where one writer has two: a fresh record and
    // one with every field away from its default.
    std::string golden = "";
    std::string goldenName() const { return golden.empty() ? name : golden; }
};

// One list in a table of its own, saved.
void writeList(const ConfigFolder& f, const WhiteList& list) {
    WhiteListTable table;
    table.lists = {list};
    ASSERT_TRUE(saveWhiteList(table, f.dir(), 0));
}

// One list of a table of its own, read from `file` and saved again.
void rereadList(const ConfigFolder& f, const std::string& file, bool extended) {
    WhiteListTable table;
    table.lists.resize(1);
    table.lists[0].file = file;
    if (extended)
        loadExtendedWhiteList(table, f.dir(), 0);
    else
        ASSERT_EQ(loadWhiteList(table, f.dir(), 0), whiteListRead);
    ASSERT_TRUE(saveWhiteList(table, f.dir(), 0));
}

void rereadMain(const ConfigFolder& f) {
    MainConfig c;
    MainConfigFolders folders;
    ASSERT_TRUE(loadConfig(installFolder, f.dir(), c, folders));
    EXPECT_EQ(c.videoStreams, (std::vector<std::string>{"vx_stream1.json", "vx_stream2.json"}));
    ASSERT_TRUE(saveConfig(f.dir(), c, {1, 2}, c.autoRunStreams));
}

RecognitionSrvConfig awayRecognition() {
    RecognitionSrvConfig c;
    c.templates = {true, false, true, false, false, false, false, false, true, true};
    c.bigSymbolModel = true;
    c.port = 4321;
    c.minSymbolsPlate = 4;
    c.maxSymbolsPlate = 9;
    c.minPlateHeight = 20;
    c.minPlateWidth = 80;
    c.modeConfig = 2;
    c.mode = 1;
    c.gpuObjects = 3;
    c.turn = false;
    c.gpu = true;
    c.detectConfThresh = 0.5f;
    c.detectConfPerson = 0.35f;
    c.detectConfVehicle = 0.05f;
    return c;
}

void rereadCamera(const ConfigFolder& f, std::int32_t id, std::int32_t recogPort, std::int32_t controlPort) {
    CameraConfig c;
    ASSERT_TRUE(loadCamera(cameraFilePath(f.dir(), id), c, 300));
    ASSERT_TRUE(saveCamera(cameraFilePath(f.dir(), id), c, recogPort, controlPort));
}

void rereadRecognition(const ConfigFolder& f) {
    RecognitionSrvConfig c;
    c.port = 1;
    ASSERT_TRUE(loadRecogGlobal(f.dir(), c));
    ASSERT_TRUE(saveRecogGlobal(f.dir(), c));
}

void rereadControl(const ConfigFolder& f) {
    ControlSrvConfig c;
    c.port = 1;
    ASSERT_TRUE(loadControlGlobal(f.dir(), c));
    ASSERT_TRUE(saveControlGlobal(f.dir(), c));
}

const GoldenFile goldenFiles[] = {
    {"vx_main_config.json",
     [](const ConfigFolder& f) {
         MainConfig c;
         const MainConfigFolders folders = derivedFolders(installFolder);
         c.systemLogPath = folders.systemLogPath;
         c.recogLogPath = folders.recogLogPath;
         c.reportsPath = folders.reportsPath;
         c.videoPath = underInstall(utf8ToCp1251("видео"));
         ASSERT_TRUE(saveConfig(f.dir(), c, {1, 2}, {true, false}));
     },
     rereadMain},
    {"vx_main_config.json",
     [](const ConfigFolder& f) {
         MainConfig c;
         c.systemLogPath = utf8ToCp1251("C:\\vx\\Лог");
         c.videoPath = "D:\\video";   // an empty one would read back as the derived folder
         c.systemLevel = c.sizeImage = 1;
         c.recogFormat = utf8ToCp1251("Номер {plate}");
         c.saveImage = c.autoRunManager = c.startStatus = c.globalRestart = true;
         c.timeLife = 30;
         c.videoChunk = 60;
         c.maxSizeVideoDirectoryMb = 4000000000u;
         c.divideLogRecog = c.display = c.perfLog = 1;
         c.xWindow = 10;
         c.yWindow = -20;
         c.wWindow = 800;
         c.hWindow = 600;
         ASSERT_TRUE(saveConfig(f.dir(), c, {1, 2}, {true, false}));
     },
     rereadMain, "vx_main_config.away.json"},
    {"vx_stream1.json",
     [](const ConfigFolder& f) {
         CameraConfig c;
         c.common.videoName = utf8ToCp1251("Въезд");
         c.common.videoPath = underInstall("videos");
         c.common.videoChunk = 600;   // a 0 would read back as the main config's
         ASSERT_TRUE(saveCamera(cameraFilePath(f.dir(), 1), c, 1234, 1235));
     },
     [](const ConfigFolder& f) { rereadCamera(f, 1, 1234, 1235); }},
    {"vx_stream7.json",
     [](const ConfigFolder& f) {
         ASSERT_TRUE(saveCamera(cameraFilePath(f.dir(), 7), awayFromDefaults(), 4000, 4001));
     },
     [](const ConfigFolder& f) { rereadCamera(f, 7, 4000, 4001); }},
    {"vx_recog_config_srv.json",
     [](const ConfigFolder& f) { ASSERT_TRUE(saveRecogGlobal(f.dir(), RecognitionSrvConfig{})); }, rereadRecognition},
    {"vx_recog_config_srv.json",
     [](const ConfigFolder& f) { ASSERT_TRUE(saveRecogGlobal(f.dir(), awayRecognition())); }, rereadRecognition,
     "vx_recog_config_srv.away.json"},
    {"vx_control_config.json",
     [](const ConfigFolder& f) { ASSERT_TRUE(saveControlGlobal(f.dir(), ControlSrvConfig{})); }, rereadControl},
    {"vx_control_config.json",
     [](const ConfigFolder& f) {
         ControlSrvConfig c;
         c.port = 8080;
         c.httpLogger = c.equalLatinCyr = c.autoUpdateListsInControl = true;
         c.modeDB = 0;
         c.notReturnServSymb = false;
         ASSERT_TRUE(saveControlGlobal(f.dir(), c));
     },
     rereadControl, "vx_control_config.away.json"},
    {"vx_mess_config.json",
     [](const ConfigFolder& f) {
         // Tokens go enciphered from their UTF-8 form.
         MessengersConfig c;
         c.port = 2000;
         c.on = true;
         MessengerChannel& bot = c.channels[0];
         bot.name = utf8ToCp1251("Охрана");
         bot.channelID = 1;
         bot.on = bot.delayAny = true;
         bot.token = "123456:ABC-def_ghi";
         bot.chatID = "-100200300";
         bot.delaySame = false;
         bot.delaySameMS = 5000;
         bot.delayAnyMS = 250;
         bot.image = 2;
         MessengerChannel& mail = c.channels[9];
         mail.channelID = 10;
         mail.typeMessenger = 2;
         mail.token = utf8ToCp1251("пароль");
         mail.server = "smtp.example.test";
         mail.port = 587;
         mail.sender = "gate@example.test";
         mail.receiver = "guard@example.test";
         ASSERT_TRUE(saveMessengers(f.dir(), c));
     },
     [](const ConfigFolder& f) {
         MessengersConfig c;
         loadMessengers(f.dir(), c, 1235);
         ASSERT_TRUE(saveMessengers(f.dir(), c));
     }},
    {"vx_stream_config_whitelists.json",
     [](const ConfigFolder& f) {
         WhiteListTable table;
         table.lists = {plainList("list1.list.csv", false), plainList("list2.list.csv", true), extendedList()};
         ASSERT_TRUE(saveWhiteListsList(table, f.dir()));
     },
     [](const ConfigFolder& f) {
         WhiteListTable table;
         ASSERT_EQ(loadWhiteListsList(table, f.dir()), ReadOutcome::done);
         ASSERT_TRUE(saveWhiteListsList(table, f.dir()));
     }},
    {"list1.list.csv", [](const ConfigFolder& f) { writeList(f, plainList("list1.list.csv", false)); },
     [](const ConfigFolder& f) { rereadList(f, "list1.list.csv", false); }},
    {"list2.list.csv", [](const ConfigFolder& f) { writeList(f, plainList("list2.list.csv", true)); },
     [](const ConfigFolder& f) { rereadList(f, "list2.list.csv", false); }},
    {"list3.list.json", [](const ConfigFolder& f) { writeList(f, extendedList()); },
     [](const ConfigFolder& f) { rereadList(f, "list3.list.json", true); }},
    {"VexlaneLog.txt", [](const ConfigFolder& f) { writeLog(f, "VexlaneLog.txt"); }},
};

// The log's time stamps are local time, which differs between machines: the
// golden file has the zero time in UTC in their place.
std::string withFixedStamps(std::string bytes) {
    const std::string stamp = maintenance::formatLocalTime(0, "%Y-%m-%d %H:%M:%S");
    const std::string fixed = "1970-01-01 00:00:00";
    for (std::size_t at = bytes.find(stamp); at != std::string::npos; at = bytes.find(stamp, at + fixed.size()))
        bytes.replace(at, stamp.size(), fixed);
    return bytes;
}

TEST(TextFileGolden, EveryFileKindIsWrittenByteForByteAsThePlatformWritesIt)
{
    const fs::path goldenDir = fs::path(VEXLANE_SOURCE_DIR) / "tests" / "config" / "golden" / platformFolder;
    const bool update = std::getenv("VEXLANE_UPDATE_GOLDEN") != nullptr;
    test::CapturedStderr quiet;   // the first save of the main config has nothing to keep as .tmp
    for (const GoldenFile& golden : goldenFiles) {
        SCOPED_TRACE(golden.goldenName());
        ConfigFolder folder;
        golden.write(folder);
        const std::string written = withFixedStamps(readFileBytes(folder.file(golden.name)));
        if (update) vx::test::writeFileBytes(goldenDir / golden.goldenName(), written);
        EXPECT_EQ(written, readFileBytes(goldenDir / golden.goldenName()));
    }
}

// The other platform's line ends: CR LF where this one writes LF, and back.
std::string withOtherLineEnds(const std::string& bytes) {
    std::string out;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        if (bytes[i] == '\r' && i + 1 < bytes.size() && bytes[i + 1] == '\n') continue;
        if (bytes[i] == '\n' && !windows) out += '\r';
        out += bytes[i];
    }
    return out;
}

// A file with either line end reads back to the same record, which the
// writer then puts on disk in this platform's bytes again.
TEST(TextFileGolden, EveryReaderTakesBothLineEnds)
{
    const fs::path goldenDir = fs::path(VEXLANE_SOURCE_DIR) / "tests" / "config" / "golden" / platformFolder;
    test::CapturedStderr quiet;
    for (const GoldenFile& golden : goldenFiles) {
        if (!golden.reread) continue;
        SCOPED_TRACE(golden.goldenName());
        const std::string expected = readFileBytes(goldenDir / golden.goldenName());
        ConfigFolder folder;
        for (const std::string& input : {expected, withOtherLineEnds(expected)}) {
            folder.put(golden.name, input);
            golden.reread(folder);
            EXPECT_EQ(readFileBytes(folder.file(golden.name)), expected);
        }
    }
}

} // namespace
} // namespace vx::config
