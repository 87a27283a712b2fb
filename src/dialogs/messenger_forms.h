#pragma once
// "Сервис мессенджеров" with its port, its on switch and ten slot buttons,
// and "Слот N", the channel behind one slot. Both work on the working copy
// the messenger command hands in; a slot accepted with OK replaces its
// channel there at once, whatever the outer dialog does later.
#include <array>
#include <cstdint>
#include <functional>

#include "config/messenger_config.h"
#include "dialogs/form.h"
#include "dialogs/form_fields.h"

namespace vx::dialogs {

class MessengerChannelForm : public Form {
public:
    // `slot` is 0 to 9.
    MessengerChannelForm(config::MessengerChannel& record, int slot, Messages& messages);

    // The record into the fields; a type of 3 or above shows as Telegram.
    void fill() override;
    // A fresh channel from the fields: delays -1 when they won't parse, the
    // mail port 465, a list with nothing selected keeps the fresh value.
    config::MessengerChannel readBack() const;
    bool accept() override;

    // "Слот " and the slot's number from 1 (1251).
    std::string title() const;

    TextField name;             // "Имя канала (необязательно):"
    CheckField on;              // "Включить канал"
    ListField typeMessenger;    // "Тип канала:" Telegram, MAX, Email
    LabelField tokenLabel;      // the bot token's or the password's label
    TextField token;            // shown in clear
    LabelField chatIDLabel;     // "ID канала:"
    TextField chatID;
    CheckField delaySame;       // "Пропуск при отправке такого же номера (мс):"
    IntegerField delaySameMS;   // enabled while its check is set
    CheckField delayAny;        // "Пропуск при отправке любого номера (мс):"
    IntegerField delayAnyMS;
    ListField image;            // "Посылать ли изображение:"
    LabelField serverLabel;     // "Почтовый сервер:"
    TextField server;
    LabelField portLabel;       // "Порт:"
    IntegerField port;
    LabelField senderLabel;     // "Отправитель:"
    TextField sender;
    LabelField receiverLabel;   // "Получатель"
    TextField receiver;

private:
    // Shows the fields of the chosen type; hidden fields keep their text.
    void showType();

    config::MessengerChannel& record_;
    int slot_;
};

class MessengerServiceForm : public Form {
public:
    // `openChannel` runs the channel dialog of a slot (0 to 9) on the
    // working copy's channel; true when it ended with OK.
    MessengerServiceForm(config::MessengersConfig& working, std::function<bool(int slot)> openChannel,
                         Messages& messages);

    void fill() override;
    // The port must be 1000 to 65535; then port and on go into the working copy.
    bool accept() override;

    IntegerField port;                   // "Порт:"
    CheckField on;                       // "Включить сервис мессенджеров"
    std::array<ButtonField, 10> slotButtons;   // "Слот 1" .. "Слот 10", marked while the channel is on
    bool channelsChanged = false;        // a slot was accepted with OK

private:
    void markSlots();

    config::MessengersConfig& working_;
    std::function<bool(int slot)> openChannel_;
};

} // namespace vx::dialogs
