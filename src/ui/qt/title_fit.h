#pragma once
// Dialogs wide enough for their titles: a title bar shows the title beside
// the window's icon and its buttons, and cuts whatever doesn't fit.
class QWidget;

namespace vx::ui {

// The width a window needs for its whole title: the title's text in the
// title bar's (bold) font, plus room for the icon and the bar's buttons.
int titleWidth(const QWidget& window);

// Lays the window out and widens it, and its minimum width, to `titleWidth`
// where its fields alone would leave it narrower. Every dialog calls it just
// before it shows.
void fitTitle(QWidget& window);

} // namespace vx::ui
