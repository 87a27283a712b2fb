#include "dialogs/signal_form.h"

#include <algorithm>
#include <initializer_list>

#include "config/text_codec.h"
#include "dialogs/form_numbers.h"

namespace vx::dialogs {

using config::utf8ToCp1251;

namespace {

constexpr std::int32_t requestPost = 1;
constexpr std::int32_t requestPut = 2;

// A stored index shown in a list: one outside the items selects nothing.
std::int32_t shownIndex(std::int32_t value, const ListField& list)
{
    return value >= 0 && static_cast<std::size_t>(value) < list.items.size() ? value : -1;
}

std::vector<std::string> items(std::initializer_list<const char*> utf8)
{
    std::vector<std::string> result;
    for (const char* item : utf8)
        result.push_back(utf8ToCp1251(item));
    return result;
}

} // namespace

SignalForm::SignalForm(config::SignalConfig& working, const std::vector<config::ReceiverSample>& samples,
                       const config::WhiteListTable& lists, Messages& messages,
                       std::function<void()> openWhiteListManager)
    : Form(messages), working_(working), samples_(samples), lists_(lists),
      openWhiteListManager_(std::move(openWhiteListManager))
{
    name.maxLength = 255;
    url.maxLength = 1023;
    body.maxLength = 1023;
    policy.count = 3;
    signalType.count = 2;
    changeWhiteLists.caption = utf8ToCp1251("Изменить");
    applyReceiver.caption = utf8ToCp1251("Применить приемник");
    requestType.items = {"GET", "POST", "PUT"};
    contentType.items = {"multipart/form-data", "application/json", "application/xml"};
    bodyEncoding.items = {"Windows-1251", "UTF-8"};
    conditions.items = items({"Любой", "Въезд (Траектория-пересечение)", "Выезд (Траектория-пересечение)"});

    // A choice takes effect at the moment it is made.
    policy.onChoose = [this] { enableByPolicy(); };
    signalType.onChoose = [this] { enableByType(); };
    requestType.onSelect = [this] { enableByRequest(); };
    applyReceiver.onPress = [this] { applySelectedReceiver(); };
    changeWhiteLists.onPress = [this] { changeLists(); };
}

std::string SignalForm::title() const
{
    return utf8ToCp1251("Настройка сигнала ") + std::to_string(working_.numSignal);
}

void SignalForm::fill()
{
    const config::SignalConfig& s = working_;
    name.set(s.name);
    policy.chosen = s.typeSendAll ? sendToAll : (s.noWhiteSignal ? sendExceptWhiteList : sendToWhiteList);
    signalType.chosen = s.typeOpen ? signalOpens : signalCloses;
    enableByPolicy();
    enableByType();
    timeOutClose.set(s.timeOutClose);
    notSendClose.checked = s.notSendClose;

    requestType.selected = shownIndex(s.signal.type, requestType);
    enableByRequest();

    receivers.clear();
    for (const config::ReceiverSample& sample : samples_)
        receivers.items.push_back(sample.name);
    if (!receivers.items.empty()) {
        const auto found = std::find(receivers.items.begin(), receivers.items.end(), s.signal.name);
        receivers.selected =
            found == receivers.items.end() ? 0 : static_cast<std::int32_t>(found - receivers.items.begin());
    }

    url.set(s.signal.URL);
    body.set(s.signal.body);
    image.checked = s.signal.image;
    smallImage.checked = s.signal.smallImage;
    plateImage.checked = s.signal.plateImage;
    carImage.checked = s.signal.carImage;
    contentType.selected = clampIndex(s.signal.contentType, 3);

    listWhiteLists();

    bodyEncoding.selected = shownIndex(s.signal.bodyEncoding, bodyEncoding);
    conditions.selected = shownIndex(s.conditionsSignals, conditions);
    timeOutSend.set(s.timeOutSend);
    minTimeOutBWSignals.set(s.minTimeOutBWSignals);
    allSignals.checked = s.allSignalsFlag;
}

config::SignalConfig SignalForm::readBack() const
{
    config::SignalConfig s;
    s.name = name.text;
    s.typeSendAll = policy.chosen == sendToAll;
    if (!s.typeSendAll)
        s.noWhiteSignal = policy.chosen == sendExceptWhiteList;
    if (whiteList.selected >= 0)
        s.nameWhiteList = whiteList.items[static_cast<std::size_t>(whiteList.selected)];
    s.typeOpen = signalType.chosen == signalOpens;
    s.timeOutClose = readInt32(timeOutClose, -1);
    s.notSendClose = notSendClose.checked;
    if (requestType.selected >= 0)
        s.signal.type = requestType.selected;
    s.signal.URL = url.text;
    s.signal.body = body.text;
    if (contentType.selected >= 0)
        s.signal.contentType = contentType.selected;
    s.signal.image = image.checked;
    s.signal.smallImage = smallImage.checked;
    s.signal.plateImage = plateImage.checked;
    s.signal.carImage = carImage.checked;
    s.timeOutSend = readInt32(timeOutSend, -1);
    if (bodyEncoding.selected >= 0)
        s.signal.bodyEncoding = bodyEncoding.selected;
    s.minTimeOutBWSignals = readInt32(minTimeOutBWSignals, -1);
    if (conditions.selected >= 0)
        s.conditionsSignals = conditions.selected;
    s.allSignalsFlag = allSignals.checked;
    return s;
}

bool SignalForm::accept()
{
    config::SignalConfig s = readBack();
    // The checks compare as unsigned numbers: a failed read (-1) is too large.
    const auto pause = static_cast<std::uint32_t>(s.minTimeOutBWSignals);
    const auto wait = static_cast<std::uint32_t>(s.timeOutSend);
    const auto closeDelay = static_cast<std::uint32_t>(s.timeOutClose);
    FormChecks checks;
    checks.test(pause <= 1000,
                utf8ToCp1251("Неправильно задано время минимальной паузы между сигналами [0 - 1000] секунд!"));
    checks.test(wait >= 1 && wait <= 100000,
                utf8ToCp1251("Неправильно задано время ожидания соединения для сигнала [1 - 10000]!"));
    checks.test(closeDelay <= 100000,
                utf8ToCp1251("Неправильно задано время таймаута для сигнала \"Закрытие\" [0 - 100000]!"));
    // The stream's file writes the name and the URL as they stand; the body
    // is escaped in full.
    checks.plainText(s.name, "Имя сигнала");
    checks.plainText(s.signal.URL, "URL запроса");
    if (!checks.report(messages()))
        return false;
    s.numSignal = working_.numSignal;
    s.on = working_.on;
    working_ = s;
    return true;
}

void SignalForm::enableByPolicy()
{
    const bool byList = policy.chosen != sendToAll;
    whiteList.enabled = byList;
    changeWhiteLists.enabled = byList;
}

void SignalForm::enableByType()
{
    const bool closes = signalType.chosen != signalOpens;
    timeOutClose.enabled = closes;
    notSendClose.enabled = closes;
}

void SignalForm::enableByRequest()
{
    const std::int32_t type = requestType.selected;
    const bool withBody = type == requestPost || type == requestPut;
    body.enabled = withBody;
    contentType.enabled = withBody;
    const bool withImages = type == requestPost;
    for (CheckField* check : {&image, &smallImage, &plateImage, &carImage})
        check->enabled = withImages;
}

void SignalForm::listWhiteLists()
{
    whiteList.clear();
    for (const config::WhiteList& list : lists_.lists)
        whiteList.items.push_back(list.name);
    if (whiteList.items.empty())
        return;
    // The stored name, not what the form showed before; a list deleted since
    // shows the first one.
    const auto found = std::find(whiteList.items.begin(), whiteList.items.end(), working_.nameWhiteList);
    whiteList.selected =
        found == whiteList.items.end() ? 0 : static_cast<std::int32_t>(found - whiteList.items.begin());
}

void SignalForm::applySelectedReceiver()
{
    if (receivers.selected < 0 || static_cast<std::size_t>(receivers.selected) >= samples_.size())
        return;
    const config::ReceiverSample& sample = samples_[static_cast<std::size_t>(receivers.selected)];
    requestType.selected = clampIndex(sample.type, 3);
    enableByRequest();
    url.set(sample.URL);
    body.set(sample.body);
    image.checked = sample.image;
    smallImage.checked = sample.smallImage;
    plateImage.checked = sample.plateImage;
    carImage.checked = sample.carImage;
    contentType.selected = clampIndex(sample.contentType, 3);
    // The template's encoding is not applied.
}

void SignalForm::changeLists()
{
    if (openWhiteListManager_)
        openWhiteListManager_();
    listWhiteLists();
}

} // namespace vx::dialogs
