#include "config/receiver_samples.h"

#include <gtest/gtest.h>

#include "config/text_codec.h"
#include "support/captured_stderr.h"
#include "support/temp_dir.h"

namespace vx::config {
namespace {

class ReceiverSamplesFile : public ::testing::Test {
protected:
    std::string dir() const { return folder_.path().string(); }

    std::vector<ReceiverSample> load(const std::string* text)
    {
        if (text) test::writeFileBytes(folder_.path() / receiverSamplesFileName, *text);
        std::vector<ReceiverSample> samples;
        test::CapturedStderr err;
        loadSignals(dir(), samples, [this] { ++clears_; });
        errors_ = err.text();
        return samples;
    }

    test::TempDir folder_;
    std::string errors_;
    int clears_ = 0;
};

TEST_F(ReceiverSamplesFile, EntriesFollowCustomInFileOrder)
{
    // The body in the file is "a\\nb \"q\" \\\\x"; the parser makes it a\nb "q" \\x
    // (a backslash and an n), the second unescape a line feed and one backslash.
    const std::string text = "{\"templates\":["
                             "{\"name\":\"Шлагбаум\",\"URL\":\"http://10.0.0.2/open?p={plate}\","
                             "\"body\":\"a\\\\nb \\\"q\\\" \\\\\\\\x\",\"type\":1,\"image\":true,"
                             "\"smallImage\":true,\"plateImage\":true,\"carImage\":true,\"contentType\":2},"
                             "{\"URL\":\"u\"},"
                             "{\"name\":\"Custom\"}]}";
    const auto samples = load(&text);
    ASSERT_EQ(samples.size(), 4u);
    EXPECT_EQ(samples[0].name, "Custom");
    EXPECT_EQ(samples[0].URL, "") << "the built-in one stays first and empty";
    EXPECT_EQ(samples[1].name, utf8ToCp1251("Шлагбаум"));
    EXPECT_EQ(samples[1].URL, "http://10.0.0.2/open?p={plate}");
    EXPECT_EQ(samples[1].body, "a\nb \"q\" \\x");
    EXPECT_EQ(samples[1].type, 1);
    EXPECT_TRUE(samples[1].image && samples[1].smallImage && samples[1].plateImage && samples[1].carImage);
    EXPECT_EQ(samples[1].contentType, 2);
    EXPECT_EQ(samples[2].name, "Corrupted name");
    EXPECT_EQ(samples[3].name, "Custom") << "a second Custom is an entry of its own";
    EXPECT_EQ(clears_, 1);
    EXPECT_EQ(errors_, "");
}

TEST_F(ReceiverSamplesFile, ReaderTable)
{
    struct Case { const char* name; std::string text; std::size_t count; std::string errors; };
    const Case cases[] = {
        {"no file: Custom alone, the white lists left alone", "", 1, ""},
        {"no templates key", "{\"other\":[]}", 1, ""},
        {"a name that isn't a string ends the reading there",
         "{\"templates\":[{\"name\":\"a\"},{\"name\":5},{\"name\":\"c\"}]}", 2,
         "[VX2S] loadSignals parse error type \n"},
        {"truncated", "{\"templates\":[{\"name\":\"a\"}", 1, "[VX2S] loadSignals parse error at byte 27\n"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        clears_ = 0;
        const bool noFile = &c == &cases[0];
        const auto samples = load(noFile ? nullptr : &c.text);
        ASSERT_EQ(samples.size(), c.count);
        EXPECT_EQ(samples.front().name, "Custom");
        EXPECT_EQ(samples.front().URL, "");
        EXPECT_EQ(errors_, c.errors);
        EXPECT_EQ(clears_, noFile ? 0 : 1) << "the white lists are emptied once the file opens";
    }
}

} // namespace
} // namespace vx::config
