// The signal dialog driven without a window: fill, templates,
// the white list refresh, the checks and what accept keeps.
#include <gtest/gtest.h>

#include "dialogs/signal_form.h"
#include "form_test.h"

using namespace vx;
using namespace vx::dialogs;
using vx::dialogs::test::cp;
using vx::dialogs::test::acceptMessage;

namespace {

config::ReceiverSample sample(const std::string& name, std::int32_t type, bool image, std::int32_t contentType)
{
    config::ReceiverSample s;
    s.name = name;
    s.type = type;
    s.URL = "http://127.0.0.1/" + name + "?p={plate}";
    s.body = "{\"plate\":\"{plate}\"}";
    s.bodyEncoding = 1;
    s.image = image;
    s.carImage = image;
    s.contentType = contentType;
    return s;
}

class SignalFormTest : public ::testing::Test {
protected:
    SignalFormTest()
    {
        samples = {config::ReceiverSample{}, sample("Gate", 1, true, 1), sample("Odd", 7, false, 9)};
        for (const char* name : {"Empty", "Staff", "Guests"}) {
            config::WhiteList list;
            list.name = name;
            lists.lists.push_back(list);
        }
        working.numSignal = 3;
        working.on = true;
    }
    SignalForm& form()
    {
        form_ = std::make_unique<SignalForm>(working, samples, lists, messages, [this] {
            if (onManager)
                onManager();
        });
        form_->fill();
        return *form_;
    }

    config::SignalConfig working;
    std::vector<config::ReceiverSample> samples;
    config::WhiteListTable lists;
    ScriptedMessages messages;
    std::function<void()> onManager;

private:
    std::unique_ptr<SignalForm> form_;
};

} // namespace

TEST_F(SignalFormTest, DisabledImageMarksAndThePolicyAreStored)
{
    SignalForm& f = form();
    f.policy.choose(sendExceptWhiteList);
    // POST then PUT: the image checks go off and keep their marks, which are stored.
    f.requestType.select(1);
    f.image.click();
    f.requestType.select(2);
    EXPECT_FALSE(f.image.enabled);
    ASSERT_TRUE(f.accept());
    EXPECT_TRUE(working.signal.image);
    EXPECT_EQ(working.signal.type, 2);
    EXPECT_FALSE(working.typeSendAll);
    EXPECT_TRUE(working.noWhiteSignal);
}

TEST_F(SignalFormTest, ApplyingATemplateOverwritesTheRequestButNotTheEncoding)
{
    SignalForm& f = form();
    f.requestType.select(2);
    f.receivers.select(1);
    f.applyReceiver.press();
    EXPECT_EQ(f.requestType.selected, 1);
    EXPECT_EQ(f.body.text, "{\"plate\":\"{plate}\"}");
    EXPECT_TRUE(f.carImage.checked);
    EXPECT_EQ(f.contentType.selected, 1);
    EXPECT_EQ(f.bodyEncoding.selected, 0);

    // A template of type 7 sets PUT and its content type 9 is clamped.
    f.receivers.select(2);
    f.applyReceiver.press();
    EXPECT_EQ(f.requestType.selected, 2);
    EXPECT_EQ(f.contentType.selected, 2);
}

TEST_F(SignalFormTest, AMissingListShowsTheFirstAndChangeSelectsTheStoredName)
{
    working.typeSendAll = false;
    working.nameWhiteList = "Gone";
    SignalForm& f = form();
    EXPECT_EQ(f.whiteList.selected, 0);
    ASSERT_TRUE(f.accept());
    EXPECT_EQ(working.nameWhiteList, "Empty");

    working.nameWhiteList = "Guests";
    SignalForm& g = form();
    g.whiteList.select(1);   // the operator picked "Staff"
    onManager = [this] { lists.lists.erase(lists.lists.begin()); };
    g.changeWhiteLists.press();
    EXPECT_EQ(g.whiteList.items, (std::vector<std::string>{"Staff", "Guests"}));
    EXPECT_EQ(g.whiteList.selected, 1);   // "Guests", the stored one
}

TEST_F(SignalFormTest, ChecksUseTheirOwnLimitsAndTheLastFailureSpeaks)
{
    const std::string pause = cp("Неправильно задано время минимальной паузы между сигналами [0 - 1000] секунд!");
    const std::string wait = cp("Неправильно задано время ожидания соединения для сигнала [1 - 10000]!");
    const std::string close = cp("Неправильно задано время таймаута для сигнала \"Закрытие\" [0 - 100000]!");
    struct Case {
        const char* pause;
        const char* wait;
        const char* close;
        std::string message;   // empty: accepted
    };
    const Case cases[] = {
        {"1000", "100000", "0", ""},        // the labels say 10000 and 1-100000
        {"1001", "1", "100000", pause},
        {"", "500", "10000", pause},        // empty reads -1, a huge unsigned number
        {"0", "0", "10000", wait},
        {"0", "100001", "10000", wait},
        {"0", "500", "100001", close},
        {"", "", "", close},                // all three fail: the last one speaks
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.pause) + "/" + c.wait + "/" + c.close);
        SignalForm& f = form();
        f.minTimeOutBWSignals.type(c.pause);
        f.timeOutSend.type(c.wait);
        f.timeOutClose.text = c.close;   // disabled for "Открыть", still checked
        EXPECT_EQ(acceptMessage(f, messages), c.message);
    }
}

TEST_F(SignalFormTest, NameAndUrlRefuseQuoteAndBackslashTheBodyTakesBoth)
{
    const std::string nameText = cp("Имя сигнала не может содержать символы \" и \\!");
    const std::string urlText = cp("URL запроса не может содержать символы \" и \\!");
    struct Case {
        const char* name;
        const char* url;
        std::string message;
    };
    const Case cases[] = {
        {"Gate\\1", "http://127.0.0.1/open", nameText},
        {"Gate", "http://127.0.0.1/open?p=\"{plate}\"", urlText},
        {"Gate\"", "http://127.0.0.1\\open", urlText},   // the URL's test comes last
        {"Gate", "http://127.0.0.1/open", ""},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.name) + " / " + c.url);
        SignalForm& f = form();
        f.name.type(c.name);
        f.url.type(c.url);
        f.body.text = "{\"plate\":\"\\{plate}\"}";   // escaped in full by its writer
        EXPECT_EQ(acceptMessage(f, messages), c.message);
    }
    EXPECT_EQ(working.signal.body, "{\"plate\":\"\\{plate}\"}");
}

TEST_F(SignalFormTest, StoredValuesShowAsTheRulesSayAndAcceptKeepsTheNumberAndOnFlag)
{
    working.numSignal = 2;
    working.signal.type = 5;          // no item: rule as for GET, read back as 0
    working.signal.contentType = 9;   // clamped to application/xml
    working.signal.name = "Gate";
    working.typeSendAll = false;
    working.nameWhiteList = "Staff";
    working.timeOutClose = 200000;   // stored long ago: blocks even an "Открыть" signal
    SignalForm& f = form();
    EXPECT_EQ(f.requestType.selected, -1);
    EXPECT_EQ(f.contentType.selected, 2);
    EXPECT_EQ(f.receivers.selected, 1);
    EXPECT_EQ(f.whiteList.selected, 1);
    EXPECT_FALSE(f.accept());
    f.timeOutClose.text = "0";
    ASSERT_TRUE(f.accept());
    EXPECT_EQ(working.numSignal, 2);
    EXPECT_TRUE(working.on);
    EXPECT_EQ(working.timeOutClose, 0);
    EXPECT_EQ(working.signal.type, 0);
    EXPECT_EQ(working.signal.contentType, 2);
    EXPECT_EQ(working.signal.name, "Custom");   // the receiver list isn't read back
    EXPECT_EQ(working.nameWhiteList, "Staff");
}
