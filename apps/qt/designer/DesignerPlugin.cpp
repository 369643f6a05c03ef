#include "DesignerPlugin.h"

#include <QtGui/QIcon>

#include "marlune/qt/GpsControlWidget.h"

namespace marlune::qt {

QString DesignerPlugin::name() const {
    return GpsControlWidget::staticMetaObject.className();
}

QString DesignerPlugin::includeFile() const {
    return "marlune/qt/GpsControlWidget.h";
}

QString DesignerPlugin::group() const {
    return "Marlune";
}

QString DesignerPlugin::toolTip() const {
    return tr("Transfers waypoints, routes and tracks with a GPS receiver");
}

QString DesignerPlugin::whatsThis() const {
    return toolTip();
}

QIcon DesignerPlugin::icon() const {
    QIcon icon(":/marlune/qt/designer/picture.bmp");
    icon.addFile(":/marlune/qt/designer/toolbox.bmp");
    return icon;
}

// A form's first one is called gps.
QString DesignerPlugin::domXml() const {
    return QString(R"(<ui language="c++"><widget class="%1" name="gps"/></ui>)").arg(name());
}

QWidget* DesignerPlugin::createWidget(QWidget* parent) {
    return new GpsControlWidget(parent);
}

}  // namespace marlune::qt
