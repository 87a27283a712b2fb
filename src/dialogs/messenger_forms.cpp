#include "dialogs/messenger_forms.h"

#include "config/text_codec.h"
#include "dialogs/form_numbers.h"

namespace vx::dialogs {

namespace {

constexpr std::int32_t emailType = 2;

std::string cp1251(const char* utf8)
{
    return config::utf8ToCp1251(utf8);
}

} // namespace

MessengerChannelForm::MessengerChannelForm(config::MessengerChannel& record, int slot, Messages& messages)
    : Form(messages), record_(record), slot_(slot)
{
    typeMessenger.items = {"Telegram", "MAX", "Email"};
    typeMessenger.onSelect = [this] { showType(); };
    image.items = {cp1251("Без изображения"), cp1251("Оригинальное изображение"), cp1251("Уменьшенное изображение"),
                   cp1251("Изображение номера")};
    delaySame.onClick = [this] { delaySameMS.enabled = delaySame.checked; };
    delayAny.onClick = [this] { delayAnyMS.enabled = delayAny.checked; };
    chatIDLabel.text = cp1251("ID канала:");
    serverLabel.text = cp1251("Почтовый сервер:");
    portLabel.text = cp1251("Порт:");
    senderLabel.text = cp1251("Отправитель:");
    receiverLabel.text = cp1251("Получатель");
}

std::string MessengerChannelForm::title() const
{
    return cp1251("Слот ") + std::to_string(slot_ + 1);
}

void MessengerChannelForm::showType()
{
    const bool mail = typeMessenger.selected == emailType;
    tokenLabel.text = mail ? cp1251("Пароль (на диске хранится в зашифрованном виде):")
                           : cp1251("Токен бота (на диске хранится в зашифрованном виде):");
    chatIDLabel.visible = chatID.visible = !mail;
    for (LabelField* label : {&serverLabel, &portLabel, &senderLabel, &receiverLabel})
        label->visible = mail;
    server.visible = port.visible = sender.visible = receiver.visible = mail;
}

void MessengerChannelForm::fill()
{
    const config::MessengerChannel& r = record_;
    name.set(r.name);
    on.checked = r.on;
    typeMessenger.selected = r.typeMessenger >= 0 && r.typeMessenger <= emailType ? r.typeMessenger : 0;
    token.set(r.token);
    chatID.set(r.chatID);
    delaySame.checked = r.delaySame;
    delaySameMS.set(r.delaySameMS);
    delaySameMS.enabled = r.delaySame;
    delayAny.checked = r.delayAny;
    delayAnyMS.set(r.delayAnyMS);
    delayAnyMS.enabled = r.delayAny;
    image.selected = r.image >= 0 && r.image <= 3 ? r.image : -1;
    server.set(r.server);
    port.set(r.port);
    sender.set(r.sender);
    receiver.set(r.receiver);
    showType();
}

config::MessengerChannel MessengerChannelForm::readBack() const
{
    config::MessengerChannel r;
    r.name = name.text;
    r.on = on.checked;
    if (typeMessenger.selected >= 0)
        r.typeMessenger = typeMessenger.selected;
    r.token = token.text;
    r.chatID = chatID.text;
    r.delaySame = delaySame.checked;
    r.delaySameMS = readInt32(delaySameMS, -1);
    r.delayAny = delayAny.checked;
    r.delayAnyMS = readInt32(delayAnyMS, -1);
    if (image.selected >= 0)
        r.image = image.selected;
    r.server = server.text;
    r.port = readInt32(port, 465);
    r.sender = sender.text;
    r.receiver = receiver.text;
    return r;
}

bool MessengerChannelForm::accept()
{
    config::MessengerChannel r = readBack();
    // Tested as unsigned numbers, so a failed parse (-1) fails too, and
    // whether the check is set or not.
    FormChecks checks;
    checks.test(static_cast<std::uint32_t>(r.delaySameMS) <= 100000u && static_cast<std::uint32_t>(r.delayAnyMS) <= 100000u,
                cp1251("Время пропуска должно быть в пределах от 0 до 100000 миллисекунд!"));
    // The messenger file writes its texts as they stand; the token goes
    // enciphered, as hexadecimal digits.
    checks.plainText(r.name, "Имя канала");
    checks.plainText(r.chatID, "ID канала");
    checks.plainText(r.server, "Почтовый сервер");
    checks.plainText(r.sender, "Отправитель");
    checks.plainText(r.receiver, "Получатель");
    if (!checks.report(messages()))
        return false;
    r.channelID = slot_ + 1;
    record_ = std::move(r);
    return true;
}

MessengerServiceForm::MessengerServiceForm(config::MessengersConfig& working,
                                           std::function<bool(int slot)> openChannel, Messages& messages)
    : Form(messages), working_(working), openChannel_(std::move(openChannel))
{
    port.minimum = 1000;
    port.maximum = 65535;
    for (std::size_t i = 0; i < slotButtons.size(); ++i) {
        slotButtons[i].caption = cp1251("Слот ") + std::to_string(i + 1);
        const int slot = static_cast<int>(i);
        slotButtons[i].onPress = [this, slot] {
            if (openChannel_ && openChannel_(slot))
                channelsChanged = true;
            markSlots();
        };
    }
}

void MessengerServiceForm::markSlots()
{
    for (std::size_t i = 0; i < slotButtons.size(); ++i)
        slotButtons[i].marked = working_.channels[i].on;
}

void MessengerServiceForm::fill()
{
    port.set(working_.port);
    on.checked = working_.on;
    markSlots();
}

bool MessengerServiceForm::accept()
{
    if (!port.inRange()) {
        showError(messages(), cp1251("Неправильно задан порт [1000 - 65535]!"));
        return false;
    }
    working_.port = readInt32(port, -1);
    working_.on = on.checked;
    return true;
}

} // namespace vx::dialogs
