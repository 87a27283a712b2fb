#include "ui/qt/form_binding.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QEvent>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTableWidget>
#include <QTextCursor>
#include <QTimeEdit>

#include "ui/qt/qt_text.h"

namespace vx::ui {

namespace {

QDate qDate(const config::DateTime& value)
{
    const QDate date(value.year, value.month, value.day);
    return date.isValid() ? date : QDate(2000, 1, 1);
}

QTime qTime(const config::DateTime& value)
{
    const QTime time(value.hour, value.minute, value.second);
    return time.isValid() ? time : QTime(0, 0);
}

// Keeps a report view's columns at their shares when the view changes size.
class ColumnSizer : public QObject {
public:
    ColumnSizer(QTableWidget* view, dialogs::TableField& field) : QObject(view), view_(view), field_(field)
    {
        view->viewport()->installEventFilter(this);
    }
    void apply()
    {
        const std::vector<int> widths = field_.widths(view_->viewport()->width());
        for (std::size_t i = 0; i + 1 < widths.size() && static_cast<int>(i) < view_->columnCount(); ++i)
            view_->setColumnWidth(static_cast<int>(i), widths[i]);
    }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::Resize)
            apply();
        return QObject::eventFilter(watched, event);
    }

private:
    QTableWidget* view_;
    dialogs::TableField& field_;
};

// A one-line edit over a field that holds its text: the field's text,
// limit, state and visibility go to the edit; typing only changes the text
// (no pull, so the cursor stays put).
template <typename Field>
void bindLineEdit(QLineEdit* edit, Field& field, std::vector<std::function<void()>>& pulls, bool& pulling)
{
    pulls.push_back([edit, &field] {
        if constexpr (requires { field.maxLength; })
            edit->setMaxLength(static_cast<int>(field.maxLength));
        const QString text = toQString(field.text);
        if (edit->text() != text)
            edit->setText(text);
        edit->setEnabled(field.enabled);
        if constexpr (requires { field.visible; })
            edit->setVisible(field.visible);
    });
    QObject::connect(edit, &QLineEdit::textChanged, edit, [&pulling, &field](const QString& text) {
        if (!pulling)
            field.type(fromQString(text));
    });
}

} // namespace

void FormBinding::pull()
{
    pulling_ = true;
    for (const auto& pull : pulls_)
        pull();
    pulling_ = false;
}

void FormBinding::act(const std::function<void()>& action)
{
    if (pulling_)
        return;
    action();
    pull();
}

void FormBinding::bindText(QLineEdit* edit, dialogs::TextField& field)
{
    bindLineEdit(edit, field, pulls_, pulling_);
}

void FormBinding::bindTextArea(QPlainTextEdit* edit, dialogs::TextField& field)
{
    pulls_.push_back([edit, &field] {
        const QString text = toQString(field.text);
        if (edit->toPlainText() != text)
            edit->setPlainText(text);
        edit->setEnabled(field.enabled);
    });
    QObject::connect(edit, &QPlainTextEdit::textChanged, edit, [this, edit, &field] {
        if (pulling_)
            return;
        field.type(fromQString(edit->toPlainText()));
        // Beyond the limit the edit takes no more, as a limited edit control.
        const QString kept = toQString(field.text);
        if (field.enabled && edit->toPlainText() != kept) {
            pulling_ = true;
            edit->setPlainText(kept);
            edit->moveCursor(QTextCursor::End);
            pulling_ = false;
        }
    });
}

void FormBinding::bindInteger(QLineEdit* edit, dialogs::IntegerField& field)
{
    bindLineEdit(edit, field, pulls_, pulling_);
}

void FormBinding::bindReal(QLineEdit* edit, dialogs::RealField& field)
{
    bindLineEdit(edit, field, pulls_, pulling_);
}

void FormBinding::bindCheck(QCheckBox* check, dialogs::CheckField& field)
{
    pulls_.push_back([check, &field] {
        check->setChecked(field.checked);
        check->setEnabled(field.enabled);
    });
    QObject::connect(check, &QCheckBox::clicked, check, [this, &field] { act([&field] { field.click(); }); });
}

void FormBinding::bindChoice(const std::vector<QRadioButton*>& buttons, dialogs::ChoiceField& field)
{
    if (buttons.empty())
        return;
    auto* group = new QButtonGroup(buttons.front());
    for (std::size_t i = 0; i < buttons.size(); ++i) {
        group->addButton(buttons[i], static_cast<int>(i));
        const auto index = static_cast<std::int32_t>(i);
        QObject::connect(buttons[i], &QRadioButton::clicked, buttons[i],
                         [this, &field, index] { act([&field, index] { field.choose(index); }); });
    }
    field.count = static_cast<std::int32_t>(buttons.size());
    pulls_.push_back([group, buttons, &field] {
        // With no choice, no button is checked.
        group->setExclusive(field.chosen >= 0);
        for (std::size_t i = 0; i < buttons.size(); ++i) {
            buttons[i]->setChecked(static_cast<std::int32_t>(i) == field.chosen);
            buttons[i]->setEnabled(field.enabled);
        }
        group->setExclusive(true);
    });
}

void FormBinding::bindList(QComboBox* box, dialogs::ListField& field)
{
    pulls_.push_back([box, &field] {
        QStringList items;
        for (const std::string& item : field.items)
            items << toQString(item);
        QStringList shown;
        for (int i = 0; i < box->count(); ++i)
            shown << box->itemText(i);
        if (shown != items) {
            box->clear();
            box->addItems(items);
        }
        box->setCurrentIndex(field.selected);
        box->setEnabled(field.enabled);
    });
    QObject::connect(box, &QComboBox::activated, box,
                     [this, &field](int index) { act([&field, index] { field.select(index); }); });
}

void FormBinding::bindDate(QDateEdit* edit, dialogs::DateField& field)
{
    pulls_.push_back([edit, &field] {
        edit->setDate(qDate(field.value));
        edit->setEnabled(field.enabled);
    });
    QObject::connect(edit, &QDateEdit::dateChanged, edit, [this, &field](const QDate& date) {
        config::DateTime value{};
        value.year = static_cast<std::uint16_t>(date.year());
        value.month = static_cast<std::uint16_t>(date.month());
        value.day = static_cast<std::uint16_t>(date.day());
        act([&field, value] { field.pick(value); });
    });
}

void FormBinding::bindTime(QTimeEdit* edit, dialogs::TimeField& field)
{
    pulls_.push_back([edit, &field] {
        edit->setTime(qTime(field.value));
        edit->setEnabled(field.enabled);
    });
    QObject::connect(edit, &QTimeEdit::timeChanged, edit, [this, &field](const QTime& time) {
        config::DateTime value{};
        value.hour = static_cast<std::uint16_t>(time.hour());
        value.minute = static_cast<std::uint16_t>(time.minute());
        value.second = static_cast<std::uint16_t>(time.second());
        act([&field, value] { field.pick(value); });
    });
}

void FormBinding::bindButton(QPushButton* button, dialogs::ButtonField& field)
{
    pulls_.push_back([button, &field] {
        button->setText(toQString(field.caption));
        button->setEnabled(field.enabled);
        // Pure green of half brightness under white text.
        button->setStyleSheet(field.marked ? QStringLiteral("QPushButton { color: rgb(255, 255, 255); "
                                                            "background-color: rgb(0, 128, 0); }")
                                           : QString());
    });
    QObject::connect(button, &QPushButton::clicked, button, [this, &field] { act([&field] { field.press(); }); });
}

void FormBinding::bindLabel(QLabel* label, dialogs::LabelField& field)
{
    pulls_.push_back([label, &field] {
        label->setText(toQString(field.text));
        label->setVisible(field.visible);
    });
}

void FormBinding::bindTable(QTableWidget* view, dialogs::TableField& field)
{
    view->setShowGrid(true);
    view->setSelectionBehavior(QAbstractItemView::SelectRows);
    view->setSelectionMode(QAbstractItemView::SingleSelection);
    view->setEditTriggers(QAbstractItemView::NoEditTriggers);
    view->verticalHeader()->hide();
    view->horizontalHeader()->setStretchLastSection(true);
    view->horizontalHeader()->setSectionsClickable(true);
    auto* sizer = new ColumnSizer(view, field);
    pulls_.push_back([view, sizer, &field] {
        view->setColumnCount(static_cast<int>(field.columns.size()));
        for (std::size_t c = 0; c < field.columns.size(); ++c) {
            auto* header = new QTableWidgetItem(toQString(field.columns[c].title));
            header->setTextAlignment(field.columns[c].centred ? Qt::AlignCenter : Qt::AlignLeft | Qt::AlignVCenter);
            view->setHorizontalHeaderItem(static_cast<int>(c), header);
        }
        view->setRowCount(static_cast<int>(field.rows.size()));
        for (std::size_t r = 0; r < field.rows.size(); ++r)
            for (std::size_t c = 0; c < field.columns.size(); ++c) {
                const QString text = c < field.rows[r].size() ? toQString(field.rows[r][c]) : QString();
                auto* item = new QTableWidgetItem(text);
                item->setTextAlignment(field.columns[c].centred ? Qt::AlignCenter : Qt::AlignLeft | Qt::AlignVCenter);
                view->setItem(static_cast<int>(r), static_cast<int>(c), item);
            }
        if (field.selectedRow >= 0)
            view->selectRow(field.selectedRow);
        else
            view->clearSelection();
        view->setEnabled(field.enabled);
        sizer->apply();
    });
    QObject::connect(view->horizontalHeader(), &QHeaderView::sectionClicked, view,
                     [this, &field](int column) { act([&field, column] { field.clickHeader(column); }); });
    QObject::connect(view, &QTableWidget::cellDoubleClicked, view,
                     [this, &field](int row, int) { act([&field, row] { field.doubleClick(row); }); });
    QObject::connect(view, &QTableWidget::itemSelectionChanged, view, [this, view, &field] {
        if (pulling_)
            return;
        const auto selected = view->selectionModel()->selectedRows();
        field.select(selected.isEmpty() ? -1 : selected.front().row());
    });
}

} // namespace vx::ui
