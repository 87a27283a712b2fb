#include "ui/qt/signal_window.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

#include "config/white_list.h"
#include "ui/qt/dialog_rows.h"
#include "ui/qt/message_boxes.h"
#include "ui/qt/qt_text.h"
#include "ui/qt/white_list_windows.h"

namespace vx::ui {

SignalWindow::SignalWindow(dialogs::SignalForm& form, QWidget* parent) : FormWindow(form, parent)
{
    setWindowTitle(toQString(form.title()));
    auto* columns = new QHBoxLayout;

    // Left: who the signal is for, and when it goes.
    auto* left = new QVBoxLayout;
    left->addWidget(new QLabel(literal("Имя сигнала (необязательно):"), this));
    name = new QLineEdit(this);
    left->addWidget(name);

    auto* policyBox = new QGroupBox(literal("Политика отправки"), this);
    auto* policyLayout = new QVBoxLayout(policyBox);
    for (const char* caption : {"Для всех номеров", "Использовать белый список", "Исключая белый список"}) {
        policy.push_back(new QRadioButton(literal(caption), policyBox));
        policyLayout->addWidget(policy.back());
    }
    auto* listRow = new QHBoxLayout;
    listRow->addWidget(new QLabel(literal("Белый список"), policyBox));
    whiteList = new QComboBox(policyBox);
    whiteList->setMinimumWidth(200);
    listRow->addWidget(whiteList, 1);
    changeWhiteLists = new QPushButton(policyBox);
    changeWhiteLists->setAutoDefault(false);
    listRow->addWidget(changeWhiteLists);
    policyLayout->addLayout(listRow);
    left->addWidget(policyBox);

    auto* typeBox = new QGroupBox(literal("Тип сигнала"), this);
    auto* typeLayout = new QVBoxLayout(typeBox);
    for (const char* caption : {"Посылать сигнал \"Открыть\" при обнаружении номера",
                                "Посылать сигнал \"Закрыть\" (отличие от \"Открыть\" - можно выставлять задержку)"}) {
        signalType.push_back(new QRadioButton(literal(caption), typeBox));
        typeLayout->addWidget(signalType.back());
    }
    auto* delayRow = new QHBoxLayout;
    delayRow->addWidget(new QLabel(literal("Задержка сигнала \"Закрыть\" (мс) (1-100000)"), typeBox));
    timeOutClose = digitsEdit(typeBox);
    timeOutClose->setMaximumWidth(100);
    delayRow->addWidget(timeOutClose);
    delayRow->addStretch();
    typeLayout->addLayout(delayRow);
    notSendClose = new QCheckBox(
        literal("Не посылать сигнал \"Закрыть\", если в период задержки был распознан автомобильный номер*"),
        typeBox);
    typeLayout->addWidget(notSendClose);
    left->addWidget(typeBox);

    auto* timing = new QFormLayout;
    timeOutSend = digitsEdit(this);
    timeOutSend->setMaximumWidth(100);
    timing->addRow(literal("Ожидание принятия (мс) (1-10000)"), timeOutSend);
    minTimeOutBWSignals = digitsEdit(this);
    minTimeOutBWSignals->setMaximumWidth(100);
    timing->addRow(literal("Минимальная пауза между сигналами (с) (0-1000)*"), minTimeOutBWSignals);
    conditions = new QComboBox(this);
    timing->addRow(literal("На какие события реагировать:"), conditions);
    left->addLayout(timing);
    allSignals = new QCheckBox(literal("Учитывать все видеопотоки и сигналы (условия со знаком *)"), this);
    left->addWidget(allSignals);
    left->addStretch();
    columns->addLayout(left);

    // Right: the request itself.
    auto* requestBox = new QGroupBox(this);
    auto* request = new QGridLayout(requestBox);
    int row = 0;
    receivers = new QComboBox(requestBox);
    receivers->setMinimumWidth(200);
    request->addWidget(receivers, row, 0, 1, 2);
    applyReceiver = new QPushButton(requestBox);
    applyReceiver->setAutoDefault(false);
    request->addWidget(applyReceiver, row++, 2);
    request->addWidget(new QLabel(literal("Тип запроса"), requestBox), row, 0);
    requestType = new QComboBox(requestBox);
    request->addWidget(requestType, row++, 1);
    request->addWidget(new QLabel(literal("URL запроса"), requestBox), row++, 0, 1, 3);
    url = new QLineEdit(requestBox);
    request->addWidget(url, row++, 0, 1, 3);
    request->addWidget(new QLabel(literal("Используемые теги: {plate} {streamIdx} {direction} {datetime} {type} "),
                                  requestBox),
                       row++, 0, 1, 3);
    request->addWidget(new QLabel(literal("Тело запроса"), requestBox), row++, 0, 1, 3);
    body = new QPlainTextEdit(requestBox);
    body->setMinimumHeight(120);
    request->addWidget(body, row++, 0, 1, 3);
    request->addWidget(new QLabel(literal("Content-Type:"), requestBox), row, 0);
    contentType = new QComboBox(requestBox);
    request->addWidget(contentType, row++, 1);
    image = new QCheckBox(literal("Изображение {image}"), requestBox);
    smallImage = new QCheckBox(literal("Уменьшенное изображение {smallImage}"), requestBox);
    plateImage = new QCheckBox(literal("Изображение номера {plateImage}"), requestBox);
    carImage = new QCheckBox(literal("Изображение автомобиля {carImage}"), requestBox);
    request->addWidget(image, row, 0, 1, 2);
    request->addWidget(smallImage, row++, 2);
    request->addWidget(plateImage, row, 0, 1, 2);
    request->addWidget(carImage, row++, 2);
    request->addWidget(new QLabel(literal("Кодировка для тела запроса:"), requestBox), row, 0);
    bodyEncoding = new QComboBox(requestBox);
    request->addWidget(bodyEncoding, row++, 1);
    request->setColumnStretch(1, 1);
    columns->addWidget(requestBox, 1);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(columns);
    layout->addLayout(okCancelButtons(this, ok, cancel));

    FormBinding& b = binding();
    b.bindText(name, form.name);
    b.bindChoice(policy, form.policy);
    b.bindList(whiteList, form.whiteList);
    b.bindButton(changeWhiteLists, form.changeWhiteLists);
    b.bindChoice(signalType, form.signalType);
    b.bindInteger(timeOutClose, form.timeOutClose);
    b.bindCheck(notSendClose, form.notSendClose);
    b.bindList(receivers, form.receivers);
    b.bindButton(applyReceiver, form.applyReceiver);
    b.bindList(requestType, form.requestType);
    b.bindText(url, form.url);
    b.bindTextArea(body, form.body);
    b.bindList(contentType, form.contentType);
    b.bindCheck(image, form.image);
    b.bindCheck(smallImage, form.smallImage);
    b.bindCheck(plateImage, form.plateImage);
    b.bindCheck(carImage, form.carImage);
    b.bindInteger(timeOutSend, form.timeOutSend);
    b.bindList(bodyEncoding, form.bodyEncoding);
    b.bindInteger(minTimeOutBWSignals, form.minTimeOutBWSignals);
    b.bindList(conditions, form.conditions);
    b.bindCheck(allSignals, form.allSignals);
    name->setFocus();
}

bool runSignalDialog(QWidget* parent, core::AppState& state, config::SignalConfig& working)
{
    QtMessages messages(parent);
    dialogs::SignalForm form(working, state.receiverSamples, config::whiteListTable(), messages, [&state] {
        // Over the signal dialog, which is the active modal window then.
        runWhiteListManager(QApplication::activeModalWidget(), state);
    });
    SignalWindow window(form, parent);
    return window.run() == QDialog::Accepted;
}

} // namespace vx::ui
