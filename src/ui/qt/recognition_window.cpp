#include "ui/qt/recognition_window.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "ui/qt/dialog_rows.h"
#include "ui/qt/message_boxes.h"
#include "ui/qt/qt_text.h"

namespace vx::ui {

namespace {

QLineEdit* shortEdit(QWidget* parent, bool digits)
{
    QLineEdit* edit = digits ? digitsEdit(parent) : new QLineEdit(parent);
    edit->setMaximumWidth(90);
    return edit;
}

} // namespace

RecognitionWindow::RecognitionWindow(dialogs::RecognitionForm& form, QWidget* parent) : FormWindow(form, parent)
{
    setWindowTitle(toQString(form.title()));
    auto* layout = new QVBoxLayout(this);
    unShowResultVideo = new QCheckBox(literal("Отключить вывод результатов распознавания в окно видео"), this);
    debugModeRecog = new QCheckBox(literal("Вывод отладочных результатов распознавания"), this);
    drawOptionsButtons = new QCheckBox(literal("Показать расширенные настройки в окне видеопотока"), this);
    for (QCheckBox* check : {unShowResultVideo, debugModeRecog, drawOptionsButtons})
        layout->addWidget(check);

    auto* columns = new QHBoxLayout;
    auto* left = new QVBoxLayout;

    auto* methodBox = new QGroupBox(literal("Метод распознавания"), this);
    auto* methodLayout = new QFormLayout(methodBox);
    method = new QComboBox(methodBox);
    methodLayout->addRow(literal("Метод:"), method);
    delaySendSame = shortEdit(methodBox, true);
    methodLayout->addRow(literal("Задержка при отправке того же номера (мс) (0,100000):"), delaySendSame);
    methodLayout->addRow(new QLabel(literal("Настройки траектории"), methodBox));
    trajTypeSpeed = new QComboBox(methodBox);
    methodLayout->addRow(literal("Тип последовательности:"), trajTypeSpeed);
    tLimitTime = shortEdit(methodBox, true);
    methodLayout->addRow(literal("Время до устаревания (с) (1,1000):"), tLimitTime);
    tLimitFrames = shortEdit(methodBox, true);
    methodLayout->addRow(literal("Кадров до устаревания (1,1000):"), tLimitFrames);
    left->addWidget(methodBox);

    auto* linesBox = new QGroupBox(literal("Линии пересечения для определения въезда/выезда по методу Траектория"), this);
    auto* linesLayout = new QFormLayout(linesBox);
    linesY = shortEdit(linesBox, false);
    linesLayout->addRow(literal("Y (0-1):"), linesY);
    lineAlfa = shortEdit(linesBox, false);
    linesLayout->addRow(literal("Угол (градусы) (-45,45):"), lineAlfa);
    lineDist = shortEdit(linesBox, false);
    linesLayout->addRow(literal("Расстояние (0-1):"), lineDist);
    invert = new QCheckBox(literal("Инвертировать направление"), linesBox);
    linesLayout->addRow(invert);
    left->addWidget(linesBox);
    left->addStretch();
    columns->addLayout(left);

    auto* extended = new QGroupBox(literal("Расширенные настройки"), this);
    auto* right = new QVBoxLayout(extended);
    auto* confRow = new QHBoxLayout;
    confRow->addWidget(wrappedLabel(
        "Минимальная достоверность распознавания номера при возвращении результата (0.1-0.9):", extended), 1);
    minConf = shortEdit(extended, false);
    confRow->addWidget(minConf);
    right->addLayout(confRow);

    square = new QCheckBox(literal("Использовать площадь номера для дополнительной фильтрации результата "), extended);
    right->addWidget(square);
    auto* areaBox = new QGroupBox(literal("Площадь номера (относительно площади изображения 0-1)"), extended);
    auto* areaLayout = new QHBoxLayout(areaBox);
    areaLayout->addWidget(new QLabel(literal("Минимальная:"), areaBox));
    minSquare = shortEdit(areaBox, false);
    areaLayout->addWidget(minSquare);
    areaLayout->addWidget(new QLabel(literal("Максимальная:"), areaBox));
    maxSquare = shortEdit(areaBox, false);
    areaLayout->addWidget(maxSquare);
    areaLayout->addStretch();
    right->addWidget(areaBox);

    useZone = new QCheckBox(literal("Использовать зону распознавания (иначе распознается во всем изображении)"),
                            extended);
    right->addWidget(useZone);
    auto* zoneBox = new QGroupBox(literal("Зона распознавания в относительных единицах (0 - 1)"), extended);
    auto* zoneLayout = new QGridLayout(zoneBox);
    const char* const zoneLabels[4] = {"X:", "Y:", "Ширина:", "Высота:"};
    QLineEdit** zoneEdits[4] = {&x, &y, &width, &height};
    for (int i = 0; i < 4; ++i) {
        zoneLayout->addWidget(new QLabel(literal(zoneLabels[i]), zoneBox), i / 2, (i % 2) * 2);
        *zoneEdits[i] = shortEdit(zoneBox, false);
        zoneLayout->addWidget(*zoneEdits[i], i / 2, (i % 2) * 2 + 1);
    }
    zoneLayout->setColumnStretch(4, 1);
    right->addWidget(zoneBox);

    deleteBorderNumbers =
        new QCheckBox(literal("Удалять краевые номера (номера на краю изображения дают мусор)"), extended);
    right->addWidget(deleteBorderNumbers);
    auto* templateRow = new QHBoxLayout;
    deleteNumbersWidthoutTemplate = new QCheckBox(literal("Не возвращать номера, которым не найден шаблон ("), extended);
    noDeleteWithChina = new QCheckBox(literal("За исключением номеров с иероглифами  )"), extended);
    templateRow->addWidget(deleteNumbersWidthoutTemplate);
    templateRow->addWidget(noDeleteWithChina);
    templateRow->addStretch();
    right->addLayout(templateRow);
    right->addStretch();
    columns->addWidget(extended, 1);
    layout->addLayout(columns);
    layout->addLayout(okCancelButtons(this, ok, cancel));

    FormBinding& b = binding();
    b.bindCheck(unShowResultVideo, form.unShowResultVideo);
    b.bindCheck(debugModeRecog, form.debugModeRecog);
    b.bindCheck(drawOptionsButtons, form.drawOptionsButtons);
    b.bindList(method, form.method);
    b.bindInteger(delaySendSame, form.delaySendSame);
    b.bindList(trajTypeSpeed, form.trajTypeSpeed);
    b.bindInteger(tLimitTime, form.tLimitTime);
    b.bindInteger(tLimitFrames, form.tLimitFrames);
    b.bindReal(minConf, form.minConf);
    b.bindCheck(square, form.square);
    b.bindReal(minSquare, form.minSquare);
    b.bindReal(maxSquare, form.maxSquare);
    b.bindCheck(useZone, form.useZone);
    b.bindReal(x, form.x);
    b.bindReal(y, form.y);
    b.bindReal(width, form.width);
    b.bindReal(height, form.height);
    b.bindReal(linesY, form.linesY);
    b.bindReal(lineAlfa, form.lineAlfa);
    b.bindReal(lineDist, form.lineDist);
    b.bindCheck(invert, form.invert);
    b.bindCheck(deleteBorderNumbers, form.deleteBorderNumbers);
    b.bindCheck(deleteNumbersWidthoutTemplate, form.deleteNumbersWidthoutTemplate);
    b.bindCheck(noDeleteWithChina, form.noDeleteWithChina);
}

bool runRecognitionDialog(QWidget* parent, core::AppState& state)
{
    QtMessages messages(parent);
    dialogs::RecognitionForm form(state.scratchRecognition, state.scratchConfig, messages);
    RecognitionWindow window(form, parent);
    return window.run() == QDialog::Accepted;
}

} // namespace vx::ui
