// The control among Designer's widgets.
#pragma once

#include <QtUiPlugin/QDesignerCustomWidgetInterface>

namespace marlune::qt {

class DesignerPlugin : public QObject, public QDesignerCustomWidgetInterface {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "org.qt-project.Qt.QDesignerCustomWidgetInterface")
    Q_INTERFACES(QDesignerCustomWidgetInterface)

public:
    [[nodiscard]] QString name() const override;
    [[nodiscard]] QString includeFile() const override;
    [[nodiscard]] QString group() const override;
    [[nodiscard]] QString toolTip() const override;
    [[nodiscard]] QString whatsThis() const override;
    [[nodiscard]] QIcon icon() const override;
    [[nodiscard]] QString domXml() const override;
    [[nodiscard]] bool isContainer() const override { return false; }
    QWidget* createWidget(QWidget* parent) override;
};

}  // namespace marlune::qt
