#include "config/messenger_config.h"

#include <gtest/gtest.h>

#include "config/text_codec.h"
#include "config/token_cipher.h"
#include "config_folder.h"

namespace vx::config {
namespace {

class MessengerConfigFile : public test::ConfigFileTest {
protected:
    std::string written() const { return folder_.bytes(messengersConfigFileName); }
    void loadText(const std::string& text, MessengersConfig& config, std::int32_t controlPort = 1235)
    {
        loadWith(messengersConfigFileName, text, [&] { loadMessengers(dir(), config, controlPort); });
    }
};

TEST_F(MessengerConfigFile, FirstReadWritesTheDefaultFile)
{
    MessengersConfig config;
    test::CapturedStderr err;
    loadMessengers(dir(), config, 1235);
    EXPECT_EQ(err.text(), "");
    EXPECT_EQ(written(), messengersConfigText(MessengersConfig{}));   // the golden file's shape
    EXPECT_EQ(config.port, 1236);
    EXPECT_FALSE(config.on);
    EXPECT_TRUE(config.channels[0].delaySame);
    EXPECT_EQ(config.channels[9].port, 0);
}

// A full record, its tokens enciphered, is the golden vx_mess_config.json.

// Known answers under the program's key: both cipher backends must give
// these bytes, or a token saved by one build can't be read by the other.
TEST(TokenCipher, KnownAnswersInLowerCaseHexOfWholeBlocks)
{
    const struct {
        std::string plain;
        std::string hex;
    } cases[] = {
        {"bot-token", "715610f478c8193b962b904fe83b4021"},   // 9 bytes pad to one block
        {std::string(16, 'x'),                                // a full block gains a padding block
         "0a546e697ffaf9ab2ac0042a01ec8c98cd0511c758a631f1a73d38cde14c4159"},
        {"\xd0\xbf\xd0\xb0\xd1\x80\xd0\xbe\xd0\xbb\xd1\x8c", "090c0f2b8b2a60ec956a3cff54739971"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(encipherToken(c.plain), c.hex);
        EXPECT_EQ(decipherToken(c.hex), c.plain);
    }
    EXPECT_EQ(encipherToken(""), "");
    std::string badPadding = cases[0].hex;
    badPadding.back() = badPadding.back() == '0' ? '1' : '0';
    EXPECT_EQ(decipherToken(badPadding), "");
    EXPECT_EQ(decipherToken("abcd"), "");   // not a whole block
}

TEST_F(MessengerConfigFile, TokenTable)
{
    const std::string good = encipherToken("secret");
    std::string upper = good;
    for (char& ch : upper) ch = static_cast<char>(std::toupper(static_cast<unsigned char>(ch)));
    std::string nonHex = good;
    nonHex[5] = 'g';
    const std::string noMessage;
    const std::string decodeMessage = "[VX2S] loadMessengers cann't decode token\n";
    struct Case { const char* name; std::string stored; std::string token; std::string errors; };
    const Case cases[] = {
        {"good", good, "secret", noMessage},
        {"upper-case digits are read too", upper, "secret", noMessage},
        {"15 hex digits: dropped silently", good.substr(0, 15), "", noMessage},
        {"16 hex digits: half a block, doesn't decipher", good.substr(0, 16), "", decodeMessage},
        {"a character that isn't hex", nonHex, "", decodeMessage},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        MessengersConfig config;
        config.channels[0].token = "was here";
        loadText("{\"channels\":[{\"token\":\"" + c.stored + "\",\"chatID\":\"after\"}]}", config);
        EXPECT_EQ(config.channels[0].token, c.token);
        EXPECT_EQ(config.channels[0].chatID, "after") << "the reading goes on";
        EXPECT_EQ(errors_, c.errors);
    }
}

TEST_F(MessengerConfigFile, UndecipherableTokenIsLostAtTheNextSave)
{
    MessengersConfig config;
    loadText("{\"channels\":[{\"token\":\"" + std::string(32, 'a') + "\"}]}", config);
    saveMessengers(dir(), config);
    EXPECT_NE(written().find("\t\t\"token\":\"\",\n"), std::string::npos);
}

TEST_F(MessengerConfigFile, ReaderTable)
{
    struct Case {
        const char* name;
        std::string text;
        std::int32_t controlPort;
        std::string errors;
        std::function<void(const MessengersConfig&)> check;
    };
    const Case cases[] = {
        {"old file: port and on from the control service, slot defaults of the reader",
         "{\"channels\":[{},{\"name\":\"b\"}]}", 1300, "",
         [](const MessengersConfig& c) {
             EXPECT_EQ(c.port, 1300);
             EXPECT_TRUE(c.on);
             EXPECT_FALSE(c.channels[0].delaySame);
             EXPECT_EQ(c.channels[0].port, 465);
             EXPECT_EQ(c.channels[1].name, "b");
             EXPECT_EQ(c.channels[2].port, 7) << "a slot beyond the array stays";
         }},
        {"old file with a control port of 0 stays off", "{}", 0, "",
         [](const MessengersConfig& c) {
             EXPECT_EQ(c.port, 0);
             EXPECT_FALSE(c.on);
         }},
        {"elements beyond ten are ignored",
         "{\"channels\":[{},{},{},{},{},{},{},{},{},{\"name\":\"ten\"},{\"name\":\"eleven\"}]}", 1235, "",
         [](const MessengersConfig& c) { EXPECT_EQ(c.channels[9].name, "ten"); }},
        {"wrong type ends the read at its key", "{\"channels\":[{\"name\":\"a\",\"on\":true,\"channelID\":\"x\"}]}",
         1235, "[VX2S] loadMessengers parse error type \n",
         [](const MessengersConfig& c) {
             EXPECT_EQ(c.channels[0].name, "a");
             EXPECT_TRUE(c.channels[0].on);
             EXPECT_EQ(c.channels[0].port, 7);
         }},
        {"truncated", "{\"port\":1400,", 1235, "[VX2S] loadMessengers parse error at byte 14\n",
         [](const MessengersConfig& c) { EXPECT_EQ(c.port, 1236); }},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        MessengersConfig config;
        for (auto& channel : config.channels) channel.port = 7;
        loadText(c.text, config, c.controlPort);
        EXPECT_EQ(errors_, c.errors);
        c.check(config);
        EXPECT_EQ(written(), c.text) << "a read never rewrites an existing file";
    }
}

} // namespace
} // namespace vx::config
