// marlune-desktop: the control in a window.
#include <QtWidgets/QApplication>

#include "desktop/MainWindow.h"
#include "desktop/Options.h"
#include "marlune/Version.h"

int main(int argc, char** argv) {
    using namespace marlune::desktop;
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("marlune-desktop"));
    QApplication::setApplicationDisplayName(QStringLiteral("Marlune"));
    QApplication::setApplicationVersion(QString::fromStdString(marlune::version()));
    QApplication::setOrganizationName(QStringLiteral("marlune"));
    QApplication::setDesktopFileName(QStringLiteral("marlune-desktop"));
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/icons/marlune-desktop.svg")));
    const Options options = readOptions(application);
    speak(options.language, application);
    MainWindow window(options);
    window.show();
    return QApplication::exec();
}
