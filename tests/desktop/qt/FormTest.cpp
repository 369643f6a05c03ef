// A form that was drawn in Designer, loaded with the plugin: it works without any code.
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>
#include <QtUiTools/QUiLoader>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPushButton>
#include <memory>

#include "receivers/BuiltIn.h"

namespace marlune::qt {

class FormTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void worksWithoutCode();
};

void FormTest::worksWithoutCode() {
    QUiLoader loader;
    loader.clearPluginPaths();
    loader.addPluginPath(MARLUNE_DESIGNER_FOLDER);
    QVERIFY(loader.availableWidgets().contains("marlune::qt::GpsControlWidget"));
    QFile file(MARLUNE_SOURCE_FOLDER "/examples/qt-form/Form.ui");
    QVERIFY(file.open(QIODevice::ReadOnly));
    const std::unique_ptr<QWidget> form(loader.load(&file));
    QVERIFY2(form != nullptr, qPrintable(loader.errorString()));
    auto* const gps = form->findChild<QWidget*>("gps");
    QVERIFY(gps != nullptr && gps->inherits("marlune::qt::GpsControlWidget"));

    // Its picture, at its size and no other.
    form->show();
    gps->resize(100, 100);
    QCOMPARE(gps->size(), QSize(32, 32));
    const QImage picture(MARLUNE_SOURCE_FOLDER "/apps/activex/picture.bmp");
    QCOMPARE(gps->grab().toImage().convertToFormat(QImage::Format_RGB32),
             picture.convertToFormat(QImage::Format_RGB32));

    const receivers::BuiltIn receiver("GRM");
    form->findChild<QLineEdit*>("device")->setText(QString::fromStdString(receiver.path()));
    auto* const stop = form->findChild<QPushButton*>("stopButton");
    form->findChild<QPushButton*>("connectButton")->click();
    // A handshake waits for a second of silence; a download may be over before one looks.
    QTRY_VERIFY(stop->isEnabled());
    QTRY_VERIFY_WITH_TIMEOUT(gps->property("connected").toBool(), 30000);
    QTRY_VERIFY(!stop->isEnabled());
    QSignalSpy ended(gps, SIGNAL(memberEnded(QString, QVariant)));
    form->findChild<QPushButton*>("waypointsButton")->click();
    QTRY_COMPARE_WITH_TIMEOUT(ended.count(), 1, 30000);
    QCOMPARE(ended.at(0).at(0).toString(), "getWaypts");
}

}  // namespace marlune::qt

QTEST_MAIN(marlune::qt::FormTest)
#include "FormTest.moc"
