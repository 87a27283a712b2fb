// vxJournal: the journal viewer the manager's "Журнал" button starts as
//   vxJournal "<log folder>" "<config folder>" hide
// It shows the system log of the log folder and follows it as it grows. The
// config folder is taken and not needed; "hide" asked the first platform's
// viewer to hide its console, which a program here doesn't have.
#include <QApplication>

#include "journal_window.h"

int main(int argc, char* argv[])
{
    QApplication app(argc, argv);
    const QStringList arguments = QApplication::arguments();
    // Without arguments: the logs folder beside the program.
    const QString folder =
        arguments.size() > 1 ? arguments.at(1) : QApplication::applicationDirPath() + QStringLiteral("/logs");
    vx::journal::JournalWindow window(folder);
    window.show();
    return app.exec();
}
