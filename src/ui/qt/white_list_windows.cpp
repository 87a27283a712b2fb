#include "ui/qt/white_list_windows.h"

#include "ui/qt/dialog_rows.h"

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
#include <QRadioButton>
#include <QTableWidget>
#include <QTimeEdit>
#include <QVBoxLayout>

#include "config/white_list.h"
#include "ui/qt/message_boxes.h"
#include "ui/qt/qt_text.h"

namespace vx::ui {

namespace {


} // namespace

WhiteListManagerWindow::WhiteListManagerWindow(dialogs::WhiteListManagerForm& form, QWidget* parent)
    : FormWindow(form, parent)
{
    setWindowTitle(literal("Менеджер белых списков"));
    auto* layout = new QVBoxLayout(this);

    auto* top = new QHBoxLayout;
    top->addWidget(new QLabel(literal("Выбрать белый список"), this));
    lists = new QComboBox(this);
    lists->setMinimumWidth(280);
    lists->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    top->addWidget(lists);
    kindText = new QLabel(this);
    kindText->setWordWrap(true);
    top->addWidget(kindText, 1);
    layout->addLayout(top);

    auto* listButtons = new QHBoxLayout;
    deleteList = new QPushButton(this);
    addList = new QPushButton(this);
    saveList = new QPushButton(this);
    addRow = new QPushButton(this);
    deleteRow = new QPushButton(this);
    for (QPushButton* button : {deleteList, addList, saveList, addRow, deleteRow}) {
        button->setAutoDefault(false);
        listButtons->addWidget(button);
    }
    listButtons->addStretch();
    layout->addLayout(listButtons);

    view = new QTableWidget(this);
    layout->addWidget(view, 1);

    auto* foot = new QHBoxLayout;
    foot->addStretch();
    close = new QPushButton(literal("Закрыть"), this);
    close->setDefault(true);
    QObject::connect(close, &QPushButton::clicked, this, &FormWindow::accept);
    foot->addWidget(close);
    layout->addLayout(foot);

    FormBinding& b = binding();
    b.bindList(lists, form.lists);
    b.bindLabel(kindText, form.kindText);
    b.bindButton(deleteList, form.deleteList);
    b.bindButton(addList, form.addList);
    b.bindButton(saveList, form.saveList);
    b.bindButton(addRow, form.addRow);
    b.bindButton(deleteRow, form.deleteRow);
    b.bindTable(view, form.rows);
    resize(980, 560);
}

NewWhiteListWindow::NewWhiteListWindow(dialogs::NewWhiteListForm& form, QWidget* parent)
    : FormWindow(form, parent)
{
    setWindowTitle(literal("Добавление нового белого списка"));
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(new QLabel(literal("Имя списка, например, \"Белый список для парадного шлагбаума\""), this));
    name = new QLineEdit(this);
    layout->addWidget(name);
    for (const char* caption : {"Обычный список", "Список для разовых пропусков",
                                "Расширенный список (комбинация из нескольких списков)"}) {
        auto* button = new QRadioButton(literal(caption), this);
        kinds.push_back(button);
        layout->addWidget(button);
    }
    layout->addLayout(okCancelButtons(this, ok, cancel));
    binding().bindText(name, form.name);
    binding().bindChoice(kinds, form.kind);
    name->setFocus();
    setMinimumWidth(520);
}

ListEntryWindow::ListEntryWindow(dialogs::ListEntryForm& form, QWidget* parent) : FormWindow(form, parent)
{
    setWindowTitle(literal("Добавить номер"));
    auto* layout = new QGridLayout(this);
    int row = 0;
    auto addEdit = [&](const char* label, QLineEdit*& edit) {
        layout->addWidget(new QLabel(literal(label), this), row, 0, 1, 2);
        edit = new QLineEdit(this);
        layout->addWidget(edit, row + 1, 0, 1, 2);
        row += 2;
    };
    addEdit("Автомобильный номер (обязательно к заполнению)", num);
    addEdit("Марка автомобиля (информационное поле)", car);
    addEdit("Дополнительная информация (информационное поле)", add);
    auto addPickers = [&](const char* label, QDateEdit*& date, QTimeEdit*& time) {
        layout->addWidget(new QLabel(literal(label), this), row, 0, 1, 2);
        date = datePickerEdit(this);
        time = timePickerEdit(this);
        layout->addWidget(date, row + 1, 0);
        layout->addWidget(time, row + 1, 1);
        row += 2;
    };
    addPickers("Начальная дата и время", date1, time1);
    addPickers("Конечная дата и время", date2, time2);
    layout->addLayout(okCancelButtons(this, ok, cancel), row, 0, 1, 2);

    FormBinding& b = binding();
    b.bindText(num, form.num);
    b.bindText(car, form.car);
    b.bindText(add, form.add);
    b.bindDate(date1, form.date1);
    b.bindTime(time1, form.time1);
    b.bindDate(date2, form.date2);
    b.bindTime(time2, form.time2);
    num->setFocus();
    setMinimumWidth(460);
}

NestedListWindow::NestedListWindow(dialogs::NestedListForm& form, QWidget* parent) : FormWindow(form, parent)
{
    setWindowTitle(literal("Добавить список в расширенный список"));
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(new QLabel(literal("Выберите обычный список"), this));
    list = new QComboBox(this);
    layout->addWidget(list);
    for (const char* caption : {"Список действует каждый день", "Список действует выбранные дни недели",
                                "Список действует в конкретную дату"}) {
        auto* button = new QRadioButton(literal(caption), this);
        dayRules.push_back(button);
        layout->addWidget(button);
    }
    auto* group = new QGroupBox(literal("Выбрать разрешенные дни"), this);
    auto* dayRow = new QHBoxLayout(group);
    const char* const dayNames[7] = {"ПН", "ВТ", "СР", "ЧТ", "ПТ", "СБ", "ВС"};
    for (std::size_t d = 0; d < days.size(); ++d) {
        days[d] = new QCheckBox(literal(dayNames[d]), group);
        dayRow->addWidget(days[d]);
    }
    layout->addWidget(group);
    date = datePickerEdit(this);
    layout->addWidget(date);
    auto* timeLabel = new QLabel(literal("Время, которое действует список (00 - начало и 24 -  конец означает все сутки)"), this);
    timeLabel->setWordWrap(true);
    layout->addWidget(timeLabel);
    auto* times = new QHBoxLayout;
    time1 = timePickerEdit(this);
    time2 = timePickerEdit(this);
    times->addWidget(time1);
    times->addWidget(time2);
    times->addStretch();
    layout->addLayout(times);
    layout->addLayout(okCancelButtons(this, ok, cancel));

    FormBinding& b = binding();
    b.bindList(list, form.list);
    b.bindChoice(dayRules, form.dayRule);
    for (std::size_t d = 0; d < days.size(); ++d)
        b.bindCheck(days[d], form.days[d]);
    b.bindDate(date, form.date);
    b.bindTime(time1, form.time1);
    b.bindTime(time2, form.time2);
    setMinimumWidth(460);
}

dialogs::WhiteListCompanions windowCompanions()
{
    dialogs::WhiteListCompanions companions;
    companions.newList = [](dialogs::NewWhiteListForm& form) {
        NewWhiteListWindow window(form, QApplication::activeModalWidget());
        return window.run() == QDialog::Accepted;
    };
    companions.entry = [](dialogs::ListEntryForm& form) {
        ListEntryWindow window(form, QApplication::activeModalWidget());
        return window.run() == QDialog::Accepted;
    };
    companions.nested = [](dialogs::NestedListForm& form) {
        NestedListWindow window(form, QApplication::activeModalWidget());
        return window.run() == QDialog::Accepted;
    };
    return companions;
}

void runWhiteListManager(QWidget* parent, core::AppState& state)
{
    QtMessages messages(parent);
    dialogs::WhiteListManagerForm form(config::whiteListTable(), state.ConfigDirectory,
                                       dialogs::whiteListManagerState(), messages, windowCompanions());
    WhiteListManagerWindow window(form, parent);
    window.run();
}

} // namespace vx::ui
