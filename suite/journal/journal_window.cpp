#include "journal_window.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QDir>
#include <QFontDatabase>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QMenu>
#include <QPushButton>
#include <QScrollBar>
#include <QStatusBar>
#include <QTimer>
#include <QToolBar>
#include <QVBoxLayout>
#include <algorithm>

#include "journal_model.h"

namespace vx::journal {

namespace {

QString literal(const char* utf8)
{
    return QString::fromUtf8(utf8);
}

const char* const systemLogName = "VexlaneLog.txt";

} // namespace

JournalWindow::JournalWindow(const QString& logFolder, QWidget* parent) : QMainWindow(parent), folder_(logFolder)
{
    setWindowTitle(literal("Журнал Vexlane"));
    model_ = new JournalModel(this);
    filter_ = new JournalFilter(this);
    filter_->setSourceModel(model_);

    auto* bar = addToolBar(literal("Журнал"));
    bar->setMovable(false);
    bar->addWidget(new QLabel(literal(" Файл: "), bar));
    files_ = new QComboBox(bar);
    files_->setMinimumContentsLength(22);
    bar->addWidget(files_);
    bar->addWidget(new QLabel(literal("  Уровень: "), bar));
    level_ = new QComboBox(bar);
    level_->addItem(literal("Все записи"), 0);
    level_->addItem(literal("DEBUG и выше"), 1);
    level_->addItem(literal("INFO и выше"), 2);
    level_->addItem(literal("WARNING и выше"), 3);
    level_->addItem(literal("ERROR и выше"), 4);
    level_->addItem(literal("Только CRITICAL"), 5);
    bar->addWidget(level_);
    bar->addWidget(new QLabel(literal("  "), bar));
    search_ = new QLineEdit(bar);
    search_->setPlaceholderText(literal("Поиск по тексту…"));
    search_->setClearButtonEnabled(true);
    search_->setMinimumWidth(240);
    bar->addWidget(search_);
    auto* copyButton = new QPushButton(literal("Копировать"), bar);
    bar->addWidget(copyButton);

    view_ = new QListView(this);
    view_->setModel(filter_);
    view_->setUniformItemSizes(true);
    view_->setSelectionMode(QAbstractItemView::ExtendedSelection);
    view_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    view_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    view_->setContextMenuPolicy(Qt::ActionsContextMenu);
    auto* copy = new QAction(literal("Копировать"), view_);
    copy->setShortcut(QKeySequence::Copy);
    copy->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    auto* all = new QAction(literal("Выделить всё"), view_);
    all->setShortcut(QKeySequence::SelectAll);
    all->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    view_->addAction(copy);
    view_->addAction(all);
    setCentralWidget(view_);
    counts_ = new QLabel(this);
    statusBar()->addWidget(counts_, 1);

    connect(copy, &QAction::triggered, this, &JournalWindow::copySelection);
    connect(copyButton, &QPushButton::clicked, this, &JournalWindow::copySelection);
    connect(all, &QAction::triggered, view_, &QListView::selectAll);
    connect(level_, &QComboBox::currentIndexChanged, this, [this] {
        filter_->setLowestLevel(level_->currentData().toInt());
        view_->scrollToBottom();
        updateCounts();
    });
    connect(search_, &QLineEdit::textChanged, this, [this](const QString& text) {
        filter_->setSearchText(text);
        view_->scrollToBottom();
        updateCounts();
    });
    connect(files_, &QComboBox::currentTextChanged, this, &JournalWindow::openFile);

    fillFileList();
    timer_ = new QTimer(this);
    timer_->setInterval(500);
    connect(timer_, &QTimer::timeout, this, &JournalWindow::refresh);
    timer_->start();
    resize(1100, 650);
}

JournalWindow::~JournalWindow() = default;

void JournalWindow::fillFileList()
{
    // The system log first, then the other logs of the folder (perf.txt, the
    // streams' logs).
    QStringList names = QDir(folder_).entryList({"*.txt"}, QDir::Files, QDir::Name);
    names.removeAll(systemLogName);
    names.prepend(systemLogName);
    files_->addItems(names);
}

void JournalWindow::openFile(const QString& name)
{
    follower_ = std::make_unique<LogFollower>(std::filesystem::path(QDir(folder_).filePath(name).toStdString()));
    model_->clear();
    setWindowTitle(literal("Журнал Vexlane - ") + QDir(folder_).filePath(name));
    refresh();
}

void JournalWindow::refresh()
{
    if (!follower_)
        return;
    LogFollower::Batch batch = follower_->readNew();
    if (batch.restarted)
        model_->clear();
    if (batch.lines.empty() && !batch.restarted)
        return;
    // The newest lines stay in view unless the operator scrolled away.
    QScrollBar* scroll = view_->verticalScrollBar();
    const bool atEnd = batch.restarted || scroll->value() >= scroll->maximum() - 1;
    model_->append(batch.lines);
    if (atEnd)
        view_->scrollToBottom();
    updateCounts();
}

QString JournalWindow::selectedText() const
{
    QModelIndexList rows = view_->selectionModel()->selectedRows();
    std::sort(rows.begin(), rows.end(), [](const QModelIndex& a, const QModelIndex& b) { return a.row() < b.row(); });
    QStringList lines;
    for (const QModelIndex& index : rows)
        lines << index.data(Qt::DisplayRole).toString();
    return lines.join('\n');
}

void JournalWindow::copySelection()
{
    const QString text = selectedText();
    if (!text.isEmpty())
        QApplication::clipboard()->setText(text + '\n');
}

void JournalWindow::updateCounts()
{
    counts_->setText(literal("Показано строк: %1 из %2").arg(filter_->rowCount()).arg(model_->rowCount()));
}

} // namespace vx::journal
