#pragma once
// "Глобальные настройки распознавания автомобильных номеров": the settings
// the recognition service runs with. Accepting always restarts the service,
// so accept asks first; the record in memory changes only after Yes.
#include <array>

#include "config/recognition_config.h"
#include "dialogs/form.h"
#include "dialogs/form_fields.h"

namespace vx::dialogs {

class RecognitionServiceForm : public Form {
public:
    RecognitionServiceForm(config::RecognitionSrvConfig& record, Messages& messages);

    // The record into the fields; the object count is locked again.
    void fill() override;
    // A fresh record from the fields: an integer that won't parse is -1, a
    // confidence -1.0, a model with nothing selected 1.
    config::RecognitionSrvConfig readBack() const;
    // The confidences first, then the integers (the last failing one speaks),
    // then the restart question.
    bool accept() override;

    std::array<CheckField, 10> countries;   // "Россия" .. "Южная Осетия", as plateTemplateCodes
    CheckField bigSymbolModel;   // "Распознавание иероглифов китайских провинций"
    IntegerField port;           // "Порт:"
    IntegerField minSymbols;     // "Минимум символов в номере:"
    IntegerField maxSymbols;     // "Максимум символов в номере:"
    IntegerField minHeight;      // "Минимум высоты номера (pix):"
    IntegerField minWidth;       // "Минимум ширины номера (pix):"
    ListField models;            // "Модели:" Max, small, micro, nano
    CheckField debugConsole;     // "Выводить отладочную консоль"
    IntegerField gpuObjects;     // "Количество объектов (СНЯТЬ БЛОК):", locked at opening
    ButtonField unlock;          // "Блок": asks, then unlocks the count for this opening
    CheckField turn;             // "Пытаться повернуть номер при распознавании"
    CheckField gpu;              // "Включить GPU  (нужна NVIDIA видеокарта)"
    RealField confThresh;        // "Достоверность(Общ,Чел,Тр):"
    RealField confPerson;
    RealField confVehicle;

private:
    config::RecognitionSrvConfig& record_;
};

// The country names in the order of the flags (UTF-8, for the window).
extern const std::array<const char*, 10> countryNames;

} // namespace vx::dialogs
