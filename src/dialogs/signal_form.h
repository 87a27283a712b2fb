#pragma once
// "Настройка сигнала N": one signal of a stream, on the working copy the
// signals dialog hands over. When an event about a plate becomes an HTTP
// request to a receiver, and what that request looks like.
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "config/camera_config.h"
#include "config/receiver_sample.h"
#include "config/white_list.h"
#include "dialogs/form.h"
#include "dialogs/form_fields.h"

namespace vx::dialogs {

// Choices of "Политика отправки".
inline constexpr std::int32_t sendToAll = 0;
inline constexpr std::int32_t sendToWhiteList = 1;
inline constexpr std::int32_t sendExceptWhiteList = 2;

// Choices of "Тип сигнала".
inline constexpr std::int32_t signalOpens = 0;
inline constexpr std::int32_t signalCloses = 1;

class SignalForm : public Form {
public:
    // `working` is the signal edited; `samples` the receiver templates,
    // "Custom" first; `lists` the white lists whose names are offered.
    // `openWhiteListManager` runs the manager over this dialog ("Изменить").
    SignalForm(config::SignalConfig& working, const std::vector<config::ReceiverSample>& samples,
               const config::WhiteListTable& lists, Messages& messages,
               std::function<void()> openWhiteListManager);

    // "Настройка сигнала " followed by the signal's number.
    std::string title() const;

    void fill() override;
    // A fresh signal with the form's values; the number and the on flag are
    // a fresh record's.
    config::SignalConfig readBack() const;
    // The three checks; on success all but the number and the on flag of
    // the working signal are replaced.
    bool accept() override;

    TextField name;                 // "Имя сигнала (необязательно):"
    ChoiceField policy;             // "Политика отправки"
    ListField whiteList;            // "Белый список"
    ButtonField changeWhiteLists;   // "Изменить"
    ChoiceField signalType;         // "Тип сигнала"
    IntegerField timeOutClose;      // "Задержка сигнала "Закрыть" (мс) (1-100000)"
    CheckField notSendClose;
    ListField receivers;
    ButtonField applyReceiver;      // "Применить приемник"
    ListField requestType;          // "Тип запроса"
    TextField url;                  // "URL запроса"
    TextField body;                 // "Тело запроса", several lines
    ListField contentType;          // "Content-Type:"
    CheckField image;
    CheckField smallImage;
    CheckField plateImage;
    CheckField carImage;
    IntegerField timeOutSend;       // "Ожидание принятия (мс) (1-10000)"
    ListField bodyEncoding;         // "Кодировка для тела запроса:"
    IntegerField minTimeOutBWSignals;   // "Минимальная пауза между сигналами (с) (0-1000)*"
    ListField conditions;           // "На какие события реагировать:"
    CheckField allSignals;          // "Учитывать все видеопотоки и сигналы (условия со знаком *)"

private:
    void enableByPolicy();
    void enableByType();
    void enableByRequest();
    void listWhiteLists();
    void applySelectedReceiver();
    void changeLists();

    config::SignalConfig& working_;
    const std::vector<config::ReceiverSample>& samples_;
    const config::WhiteListTable& lists_;
    std::function<void()> openWhiteListManager_;
};

} // namespace vx::dialogs
