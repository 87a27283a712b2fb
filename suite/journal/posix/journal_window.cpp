#include "journal_window.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QFontDatabase>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QPushButton>
#include <QScrollBar>
#include <QStatusBar>
#include <QTimer>
#include <QToolBar>

#include "config/text_codec.h"
#include "journal_model.h"

namespace vx::journal {

namespace {

std::filesystem::path pathOf(const QString& text)
{
    const std::u16string utf16 = text.toStdU16String();
    return std::filesystem::path(utf16);
}

QString textOf(const std::filesystem::path& path)
{
    return QString::fromStdU16String(path.u16string());
}

} // namespace

JournalWindow::JournalWindow(const QString& logFolder, QWidget* parent) : QMainWindow(parent), folder_(logFolder)
{
    const JournalCaptions& texts = captions();
    setWindowTitle(qtText(texts.title));
    model_ = new JournalModel(this);
    filter_ = new JournalFilter(model_, this);

    auto* bar = addToolBar(qtText(texts.toolBar));
    bar->setMovable(false);
    bar->addWidget(new QLabel(qtText(texts.fileLabel), bar));
    files_ = new QComboBox(bar);
    files_->setMinimumContentsLength(22);
    bar->addWidget(files_);
    bar->addWidget(new QLabel(qtText(texts.levelLabel), bar));
    level_ = new QComboBox(bar);
    for (const LevelChoice& choice : levelChoices())
        level_->addItem(qtText(choice.caption), choice.lowestLevel);
    bar->addWidget(level_);
    bar->addWidget(new QLabel(QStringLiteral("  "), bar));
    search_ = new QLineEdit(bar);
    search_->setPlaceholderText(qtText(texts.searchHint));
    search_->setClearButtonEnabled(true);
    search_->setMinimumWidth(240);
    bar->addWidget(search_);
    auto* copyButton = new QPushButton(qtText(texts.copy), bar);
    bar->addWidget(copyButton);

    view_ = new QListView(this);
    view_->setModel(filter_);
    view_->setUniformItemSizes(true);
    view_->setSelectionMode(QAbstractItemView::ExtendedSelection);
    view_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    view_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    view_->setContextMenuPolicy(Qt::ActionsContextMenu);
    auto* copy = new QAction(qtText(texts.copy), view_);
    copy->setShortcut(QKeySequence::Copy);
    copy->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    auto* all = new QAction(qtText(texts.selectAll), view_);
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
    connect(files_, &QComboBox::currentIndexChanged, this, &JournalWindow::openFile);

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
    names_ = logFileNames(pathOf(folder_));
    for (const std::filesystem::path& name : names_)
        files_->addItem(textOf(name));
}

void JournalWindow::openFile(int index)
{
    if (index < 0 || index >= static_cast<int>(names_.size()))
        return;
    const std::filesystem::path file = pathOf(folder_) / names_[static_cast<std::size_t>(index)];
    follower_ = std::make_unique<LogFollower>(file);
    model_->clear();
    setWindowTitle(qtText(journal::windowTitle(config::utf16ToCp1251(file.u16string()))));
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
    std::vector<std::size_t> entries;
    for (const QModelIndex& index : view_->selectionModel()->selectedRows())
        entries.push_back(static_cast<std::size_t>(filter_->mapToSource(index).row()));
    return qtText(model_->lines().copyText(std::move(entries)));
}

void JournalWindow::copySelection()
{
    const QString text = selectedText();
    if (!text.isEmpty())
        QApplication::clipboard()->setText(text);
}

void JournalWindow::updateCounts()
{
    counts_->setText(qtText(model_->lines().countsText()));
}

} // namespace vx::journal
