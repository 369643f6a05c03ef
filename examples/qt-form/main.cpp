// The control on a form that was drawn in Qt Designer: what its buttons do stands in Form.ui.
#include <QApplication>

#include "marlune/qt/GpsControlWidget.h"
#include "ui_Form.h"

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    QWidget window;
    Ui::Form form;
    form.setupUi(&window);

    const auto show = [&](int, const QString& line) { form.lines->appendPlainText(line); };
    using Gps = marlune::qt::GpsControlWidget;
    QObject::connect(form.gps, &Gps::WayptData, form.lines, show);
    QObject::connect(form.gps, &Gps::TrackData, form.lines, show);

    window.show();
    return QApplication::exec();
}
