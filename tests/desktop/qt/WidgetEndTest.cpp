// What goes on and ends early: waits, transfers, connections, boxes, and the widget itself. The
// user interface is never kept waiting.
#include <QtCore/QDir>
#include <QtCore/QTemporaryFile>
#include <QtWidgets/QMessageBox>
#include <cerrno>

#include "Gps.h"
#include "Metronome.h"

namespace marlune::qt {

class WidgetEndTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void keepsTimersGoingWhileAPortIsSilent();
    void keepsTimersGoingInAFlood();
    void stopsAnyWait();
    void forgetsWhatWaitsForItsTurn();
    void disconnectsInTheMiddleOfASilence();
    void cancels();
    void toldThatTheReceiverIsUnplugged();
    void isDestroyedInTheMiddleOfATransfer();
    void isDestroyedInAnEventLoopOfAHandler();
    void waitsForTheAnswerToABox();
    void closesABoxThatIsStopped();
    void isDestroyedWithABox();
    void handsBoxesToTheForm();
};

namespace {

receivers::ReceiverOptions silentFrom(const char* fault) {
    receivers::ReceiverOptions options;
    options.faults = {fault};
    return options;
}

// Calls the action once that many track points have come.
template <class Action>
void atTrackPoint(Gps& gps, int number, Action action) {
    QObject::connect(&gps, &GpsControlWidget::TrackData, &gps, [=, count = 0]() mutable {
        if (++count == number) {
            action();
        }
    });
}

// Of a family that asks nobody: boxes tell at once that there is no such port.
void connectToNowhere(GpsControlWidget& widget) {
    widget.SetGpsMark("ANY");
    widget.setDevice("/nowhere");
    widget.gpsConnect();
}

QMessageBox* boxOf(GpsControlWidget& widget) {
    QMessageBox* box = nullptr;
    (void)QTest::qWaitFor([&] { return (box = widget.findChild<QMessageBox*>()) != nullptr; },
                          Gps::kLongest);
    return box;
}

// Tracks of that many points, as a receiver's data file.
void writePoints(QFile& file, int count) {
    file.write("N;FLOOD\n");
    for (int i = 0; i < count; ++i) {
        file.write("T;" + QByteArray::number(45 + i * 0.0001, 'f', 4) + ";7;0;1000;0\n");
    }
    file.flush();
}

}  // namespace

void WidgetEndTest::keepsTimersGoingWhileAPortIsSilent() {
    const receivers::BuiltIn receiver("GRM", silentFrom("silence:packet=1"), false);
    IdleMetronome idle;
    const UiMetronome timer;
    {
        Gps gps(receiver);
        gps.call("gpsConnect");
        QTRY_VERIFY(timer.ticks() >= 50);
        QVERIFY(gps.isBusy());
    }  // destroyed in the middle of it
    const qint64 slip = timer.longest();
    const qint64 machine = idle.stop();
    qInfo("a timer slipped by %lld ms, an idle thread's by %lld ms", slip, machine);
    QVERIFY(slip < 200 + machine);
}

void WidgetEndTest::keepsTimersGoingInAFlood() {
    constexpr int kPoints = 5000;
    QTemporaryFile data;
    QVERIFY(data.open());
    writePoints(data, kPoints);
    receivers::ReceiverOptions options;
    options.dataFile = data.fileName().toStdString();
    const receivers::BuiltIn receiver("GRM", options, false);
    Gps gps(receiver);
    QCOMPARE(gps.run("gpsConnect"), true);

    QList<int> numbers;
    QList<double> latitudes;
    connect(&gps, &GpsControlWidget::TrackData, this, [&](int number) { numbers << number; });
    connect(&gps, &GpsControlWidget::trackPointReceived, this, [&](const TrackPointRecord& point) {
        QCOMPARE(numbers.size(), latitudes.size() + 1);  // behind its event
        latitudes << point.latitude;
    });
    IdleMetronome idle;
    const UiMetronome timer;
    gps.run("getTracks");
    const qint64 slip = timer.longest();
    const qint64 machine = idle.stop();
    qInfo("a timer slipped by %lld ms, an idle thread's by %lld ms", slip, machine);
    QVERIFY(slip < 50 + machine);
    QVERIFY(gps.lastTransfer().isWhole());
    QCOMPARE(latitudes.size(), kPoints);
    QVERIFY(std::ranges::is_sorted(numbers));
    QVERIFY(std::ranges::is_sorted(latitudes));
}

// A read of a second, the waits between Magellan sentences, a box: each ends soon.
void WidgetEndTest::stopsAnyWait() {
    for (const char* const mark : {"GRM", "MGN", "MLR"}) {
        const receivers::BuiltIn receiver(mark, silentFrom("silence:packet=1"), false);
        Gps gps(receiver, mark);
        gps.call("gpsConnect");
        const UiMetronome timer;
        QTRY_VERIFY(timer.ticks() >= 5);  // it waits, then
        QVERIFY(gps.isBusy());
        IdleMetronome idle;
        QElapsedTimer since;
        since.start();
        gps.stop();
        QCOMPARE(gps.resultOf("gpsConnect"), false);
        const qint64 took = since.elapsed();
        const qint64 machine = idle.stop();
        qInfo("%s: ended after %lld ms, an idle thread was late by %lld ms", mark, took, machine);
        QVERIFY(took < 200 + 2 * machine);
        QVERIFY(!gps.isBusy());
    }
}

void WidgetEndTest::forgetsWhatWaitsForItsTurn() {
    const receivers::BuiltIn receiver("GRM", silentFrom("silence:packet=1"), false);
    Gps gps(receiver);
    gps.call("gpsConnect");
    gps.call("getWaypts");
    gps.call("SetGpsMark", {"MLR"});
    gps.stop();
    QCOMPARE(gps.resultOf("getWaypts"), QVariant());
    QVERIFY(gps.finished.isEmpty());  // it did not run
    gps.resultOf("SetGpsMark");
    QCOMPARE(gps.gpsMark(), "MLR");  // and that is what the control has, too
    const receivers::BuiltIn other("MLR");
    gps.setDevice(QString::fromStdString(other.path()));
    QCOMPARE(gps.run("gpsConnect"), true);
}

void WidgetEndTest::disconnectsInTheMiddleOfASilence() {
    const receivers::BuiltIn receiver("GRM", silentFrom("silence:packet=20"), false);
    Gps gps(receiver);
    QCOMPARE(gps.run("gpsConnect"), true);
    atTrackPoint(gps, 3, [&] { gps.gpsDisconnect(); });
    gps.call("getTracks");
    gps.resultOf("getTracks");
    QTRY_VERIFY(!gps.isBusy());
    QVERIFY(!gps.isConnected());
    QVERIFY(!gps.lastTransfer().isWhole());
}

void WidgetEndTest::cancels() {
    const receivers::BuiltIn receiver("GRM", receivers::ReceiverOptions(), true);
    Gps gps(receiver);
    QCOMPARE(gps.run("gpsConnect"), true);
    atTrackPoint(gps, 2, [&] { gps.StopTransfert(); });
    gps.run("getTracks");
    QCOMPARE(gps.lastTransfer().ending, Ending::cancelled);
    QVERIFY(gps.lastTransfer().transferred < *gps.lastTransfer().announced);
    QVERIFY(!gps.records()->tracks.empty());  // what came is there
    gps.run("getWaypts");
    QVERIFY(gps.lastTransfer().isWhole());
}

void WidgetEndTest::toldThatTheReceiverIsUnplugged() {
    auto receiver = std::make_unique<receivers::BuiltIn>("GRM", receivers::ReceiverOptions(), true);
    Gps gps(*receiver);
    QCOMPARE(gps.run("gpsConnect"), true);
    gps.connection.clear();
    atTrackPoint(gps, 2, [&] { receiver.reset(); });
    gps.run("getTracks");
    QCOMPARE(gps.lastTransfer().ending, Ending::deviceGone);
    QCOMPARE(gps.finished.size(), 1);
    QCOMPARE(gps.connection.size(), 1);
    QVERIFY(!gps.isConnected());
}

void WidgetEndTest::isDestroyedInTheMiddleOfATransfer() {
    const receivers::BuiltIn receiver("GRM", receivers::ReceiverOptions(), true);
    auto gps = std::make_unique<Gps>(receiver);
    QCOMPARE(gps->run("gpsConnect"), true);
    int points = 0;
    connect(gps.get(), &GpsControlWidget::TrackData, this, [&] { ++points; });
    gps->call("getTracks");
    QTRY_VERIFY(points >= 3);
    QElapsedTimer since;
    since.start();
    gps.reset();
    qInfo("destroyed in %lld ms", since.elapsed());
    // Nothing of it comes any more, and the receiver has another listener.
    points = 0;
    Gps next(receiver);
    QCOMPARE(next.run("gpsConnect"), true);
    QCOMPARE(points, 0);
}

// A dialogue in a handler, and somebody who closes the form meanwhile.
void WidgetEndTest::isDestroyedInAnEventLoopOfAHandler() {
    const receivers::BuiltIn receiver("GRM");
    auto* const gps = new Gps(receiver);
    const QPointer<Gps> alive(gps);
    int dialogues = 0;
    int behind = 0;
    connect(gps, &GpsControlWidget::WayptData, this, [&] {
        if (dialogues++ > 0) {
            return;
        }
        QEventLoop loop;
        connect(gps, &QObject::destroyed, &loop, &QEventLoop::quit);
        QTimer::singleShot(0, &loop, [gps] { gps->deleteLater(); });
        loop.exec();
        ++behind;
    });
    gps->gpsConnect();
    gps->getWaypts();
    QTRY_VERIFY_WITH_TIMEOUT(alive.isNull() && behind > 0, Gps::kLongest);
}

void WidgetEndTest::waitsForTheAnswerToABox() {
    GpsControlWidget widget;
    QSignalSpy ended(&widget, &GpsControlWidget::connectionChanged);
    connectToNowhere(widget);
    QMessageBox* const box = boxOf(widget);
    QVERIFY(box != nullptr);
    QCOMPARE(box->text(), "No such file or directory");
    QCOMPARE(box->icon(), QMessageBox::Critical);
    QVERIFY(ended.isEmpty());
    QVERIFY(widget.isBusy());
    box->accept();
    QStringList texts;  // of the boxes behind it
    while (ended.isEmpty()) {
        if (auto* const next = widget.findChild<QMessageBox*>();
            next != nullptr && next->isVisible()) {
            texts << next->text();
            next->accept();
        }
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    QVERIFY(texts.contains("Connexion Impossible"));
    QCOMPARE(widget.lastConnection().systemError, ENOENT);
}

void WidgetEndTest::closesABoxThatIsStopped() {
    GpsControlWidget widget;
    QSignalSpy ended(&widget, &GpsControlWidget::connectionChanged);
    connectToNowhere(widget);
    const QPointer<QMessageBox> box(boxOf(widget));
    QVERIFY(!box.isNull());
    widget.stop();
    QTRY_VERIFY(!ended.isEmpty());
    QTRY_VERIFY(box.isNull());
}

void WidgetEndTest::isDestroyedWithABox() {
    auto widget = std::make_unique<GpsControlWidget>();
    connectToNowhere(*widget);
    const QPointer<QMessageBox> box(boxOf(*widget));
    QVERIFY(!box.isNull());
    widget.reset();
    QVERIFY(box.isNull());
}

void WidgetEndTest::handsBoxesToTheForm() {
    GpsControlWidget widget;
    QSignalSpy boxes(&widget, &GpsControlWidget::messageBox);
    QSignalSpy ended(&widget, &GpsControlWidget::connectionChanged);
    connectToNowhere(widget);
    QTRY_VERIFY(!ended.isEmpty());
    QVERIFY(boxes.size() >= 2);
    QCOMPARE(boxes[1][0].toString(), "Connexion Impossible");
    QCOMPARE(boxes[1][1].toInt(), int(QMessageBox::Critical));
    QVERIFY(widget.findChildren<QMessageBox*>().isEmpty());
}

}  // namespace marlune::qt

QTEST_MAIN(marlune::qt::WidgetEndTest)
#include "WidgetEndTest.moc"
