#include "ui/qt/signals_reports_window.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTimeEdit>
#include <QVBoxLayout>

#include "ui/qt/dialog_rows.h"
#include "ui/qt/message_boxes.h"
#include "ui/qt/qt_text.h"
#include "ui/qt/signal_window.h"

namespace vx::ui {

SignalsReportsWindow::SignalsReportsWindow(dialogs::SignalsReportsForm& form, QWidget* parent)
    : FormWindow(form, parent)
{
    setWindowTitle(toQString(form.title()));
    auto* layout = new QVBoxLayout(this);
    FormBinding& b = binding();

    // The four signals, two by two.
    auto* signalGrid = new QGridLayout;
    for (std::size_t slot = 0; slot < 4; ++slot) {
        const QString number = QString::number(static_cast<int>(slot) + 1);
        auto* box = new QGroupBox(literal("Сигнал ") + number, this);
        auto* boxLayout = new QGridLayout(box);
        signalOn[slot] = new QCheckBox(literal("Включить отправку сигнала ") + number, box);
        boxLayout->addWidget(signalOn[slot], 0, 0, 1, 3);
        boxLayout->addWidget(new QLabel(literal("Имя:"), box), 1, 0);
        signalName[slot] = new QLineEdit(box);
        signalName[slot]->setReadOnly(true);
        boxLayout->addWidget(signalName[slot], 1, 1);
        editSignal[slot] = new QPushButton(box);
        editSignal[slot]->setAutoDefault(false);
        boxLayout->addWidget(editSignal[slot], 1, 2);
        boxLayout->setColumnStretch(1, 1);
        signalGrid->addWidget(box, static_cast<int>(slot) / 2, static_cast<int>(slot) % 2);
        b.bindCheck(signalOn[slot], form.signalOn[slot]);
        b.bindText(signalName[slot], form.signalName[slot]);
        b.bindButton(editSignal[slot], form.editSignal[slot]);
    }
    layout->addLayout(signalGrid);

    auto* reports = new QGroupBox(literal("Отчеты для единственного автомобиля в кадре"), this);
    auto* grid = new QGridLayout(reports);
    int row = 0;
    grid->addWidget(new QLabel(literal("Минимальное время между повторами автомобиля (мин) (1-1500)"), reports), row, 0,
                    1, 3);
    timeMinBetweenSimilarCar = digitsEdit(reports);
    timeMinBetweenSimilarCar->setMaximumWidth(90);
    grid->addWidget(timeMinBetweenSimilarCar, row++, 3);
    grid->addWidget(new QLabel(literal("Минимальное время стояния (сек) (1-36000)"), reports), row, 0, 1, 3);
    timeMinStop = digitsEdit(reports);
    timeMinStop->setMaximumWidth(90);
    grid->addWidget(timeMinStop, row++, 3);
    notDelMoveGroup = new QCheckBox(literal("Исключить для движущихся с достоверностью:"), reports);
    grid->addWidget(notDelMoveGroup, row, 0, 1, 3);
    notDelMoveGroupQualThresh = new QLineEdit(reports);
    notDelMoveGroupQualThresh->setMaximumWidth(90);
    grid->addWidget(notDelMoveGroupQualThresh, row++, 3);
    onlyOneNumber = new QCheckBox(literal("Использовать одно появление номера (пересечение траектории)"), reports);
    grid->addWidget(onlyOneNumber, row++, 0, 1, 4);
    whiteLists = new QCheckBox(literal("Учет белых списков"), reports);
    grid->addWidget(whiteLists, row++, 0, 1, 4);
    dailyReport = new QCheckBox(literal("Ежедневный отчет за  сутки"), reports);
    grid->addWidget(dailyReport, row, 0, 1, 3);
    timeDailyReport = timePickerEdit(reports);
    grid->addWidget(timeDailyReport, row++, 3);

    grid->addWidget(new QLabel(literal("Немедленная генерация произвольного отчета"), reports), row++, 0, 1, 4);
    auto* periodGrid = new QGridLayout;
    auto period = [&](int line, const char* label, QDateEdit*& date, QTimeEdit*& time) {
        periodGrid->addWidget(new QLabel(literal(label), reports), line, 0);
        date = datePickerEdit(reports);
        time = timePickerEdit(reports);
        periodGrid->addWidget(date, line, 1);
        periodGrid->addWidget(time, line, 2);
    };
    period(0, "Начало", startDate, startTime);
    period(1, "Конец", endDate, endTime);
    periodGrid->setColumnStretch(3, 1);
    grid->addLayout(periodGrid, row++, 0, 1, 4);
    auto* generateRow = new QHBoxLayout;
    generateReport = new QPushButton(reports);
    generateReport->setAutoDefault(false);
    generateRow->addWidget(generateReport);
    generateRow->addWidget(new QLabel(literal("<-- При нажатии окно будет закрыто"), reports));
    generateRow->addStretch();
    grid->addLayout(generateRow, row++, 0, 1, 4);
    grid->setColumnStretch(2, 1);
    layout->addWidget(reports);

    auto* buttonsRow = new QHBoxLayout;
    auto manualButton = [this, buttonsRow](const char* title, QCheckBox*& check, QComboBox*& list) {
        auto* box = new QGroupBox(literal(title), this);
        auto* boxLayout = new QHBoxLayout(box);
        check = new QCheckBox(literal("Включить и выбрать сигнал"), box);
        list = new QComboBox(box);
        boxLayout->addWidget(check);
        boxLayout->addWidget(list);
        buttonsRow->addWidget(box);
    };
    manualButton("Кнопка ручного открытия", buttonOpen, buttonOpenSignal);
    manualButton("Кнопка ручного закрытия", buttonClose, buttonCloseSignal);
    layout->addLayout(buttonsRow);
    layout->addLayout(okCancelButtons(this, ok, cancel));

    b.bindInteger(timeMinBetweenSimilarCar, form.timeMinBetweenSimilarCar);
    b.bindInteger(timeMinStop, form.timeMinStop);
    b.bindCheck(notDelMoveGroup, form.notDelMoveGroup);
    b.bindReal(notDelMoveGroupQualThresh, form.notDelMoveGroupQualThresh);
    b.bindCheck(onlyOneNumber, form.onlyOneNumber);
    b.bindCheck(whiteLists, form.whiteLists);
    b.bindCheck(dailyReport, form.dailyReport);
    b.bindTime(timeDailyReport, form.timeDailyReport);
    b.bindDate(startDate, form.startDate);
    b.bindTime(startTime, form.startTime);
    b.bindDate(endDate, form.endDate);
    b.bindTime(endTime, form.endTime);
    b.bindButton(generateReport, form.generateReport);
    b.bindCheck(buttonOpen, form.buttonOpen);
    b.bindList(buttonOpenSignal, form.buttonOpenSignal);
    b.bindCheck(buttonClose, form.buttonClose);
    b.bindList(buttonCloseSignal, form.buttonCloseSignal);
    // "Генерация" that passes closes the window with OK, as "ОК" does.
    form.closeWithOk = [this] { done(QDialog::Accepted); };
}

bool runSignalsReportsDialog(QWidget* parent, core::AppState& state)
{
    QtMessages messages(parent);
    dialogs::SignalsReportsForm form(
        state.scratchControl, state.scratchConfig.videoName, state.reportRequested, messages,
        [&state](config::SignalConfig& working) {
            return runSignalDialog(QApplication::activeModalWidget(), state, working);
        });
    SignalsReportsWindow window(form, parent);
    return window.run() == QDialog::Accepted;
}

} // namespace vx::ui
