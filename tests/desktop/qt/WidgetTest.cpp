// The control on a form, against the virtual receivers of every family.
#include <QtCore/QTemporaryDir>

#include "Gps.h"
#include "control/Surface.h"

namespace marlune::qt {

class WidgetTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void hasASlotForEveryMember();
    void hasASignalForEveryEvent();
    void downloads_data() { families(); }
    void downloads();
    void uploads_data() { families(); }
    void uploads();
    void follows_data() { families(); }
    void follows();

private:
    static void families();
};

namespace {

// "int" or "QString", as moc writes them.
const char* typeOf(surface::Type type) {
    return type == surface::Type::integer || type == surface::Type::port ? "int" : "QString";
}

// "void StartNMEA(QString NMEACode, int Delai)" without the blanks of a declaration.
QString declared(const QMetaMethod& method) {
    QStringList parameters;
    for (int i = 0; i < method.parameterCount(); ++i) {
        parameters << method.parameterTypeName(i) + " " + method.parameterNames().at(i);
    }
    return method.name() + "(" + parameters.join(", ") + ")";
}

template <class Row>
QString expected(const Row& row) {
    QStringList parameters;
    for (const surface::Parameter& parameter : row.parameters) {
        parameters << QString(typeOf(parameter.type)) + " " +
                          QString::fromStdString(std::string(parameter.name));
    }
    return QString::fromStdString(std::string(row.name)) + "(" + parameters.join(", ") + ")";
}

QStringList declaredMethods(QMetaMethod::MethodType type) {
    QStringList all;
    const QMetaObject& meta = GpsControlWidget::staticMetaObject;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        if (meta.method(i).methodType() == type) {
            all << declared(meta.method(i));
        }
    }
    return all;
}

qsizetype linesOf(const receivers::BuiltIn& receiver, char kind) {
    qsizetype count = 0;
    bool inRoute = false;
    for (const std::string& line : receiver.lines()) {
        inRoute = line[0] == 'R' || line[0] == 'L' || (inRoute && line[0] == 'W');
        count += line[0] == kind && !(kind == 'W' && inRoute) ? 1 : 0;
    }
    return count;
}

}  // namespace

void WidgetTest::families() {
    QTest::addColumn<QString>("mark");
    for (const receivers::Family& family : receivers::receiverFamilies()) {
        if (!family.code.empty()) {
            const std::string code(family.code);
            QTest::newRow(code.c_str()) << QString::fromStdString(code);
        }
    }
}

void WidgetTest::hasASlotForEveryMember() {
    const QStringList slotList = declaredMethods(QMetaMethod::Slot);
    for (const surface::Member& member : surface::kMembers) {
        QVERIFY2(slotList.contains(expected(member)), qPrintable(expected(member)));
    }
}

void WidgetTest::hasASignalForEveryEvent() {
    const QStringList signalList = declaredMethods(QMetaMethod::Signal);
    for (const surface::Event& event : surface::kEvents) {
        QVERIFY2(signalList.contains(expected(event)), qPrintable(expected(event)));
    }
}

// Everything that the receiver holds comes, as texts and as records.
void WidgetTest::downloads() {
    QFETCH(QString, mark);
    const receivers::BuiltIn receiver(mark.toStdString());
    Gps gps(receiver, mark);
    QCOMPARE(gps.run("gpsConnect"), true);
    QVERIFY(gps.isConnected());
    QVERIFY(!gps.run("getIdent").toString().isEmpty());
    QVERIFY(gps.ident().startsWith("Marlune Version"));

    const QSignalSpy texts(&gps, &GpsControlWidget::WayptData);
    const QSignalSpy waypoints(&gps, &GpsControlWidget::waypointReceived);
    gps.run("getWaypts");
    QVERIFY(gps.lastTransfer().isWhole());
    QCOMPARE(waypoints.size(), linesOf(receiver, 'W'));
    QCOMPARE(texts.size(), waypoints.size());
    QCOMPARE(gps.records()->waypoints.size(), static_cast<std::size_t>(waypoints.size()));
    for (qsizetype i = 0; i < texts.size(); ++i) {
        const auto record = waypoints[i][0].value<WaypointRecord>();
        QVERIFY(texts[i][1].toString().startsWith("W;" + QString::fromStdString(record.name)));
    }

    const QSignalSpy points(&gps, &GpsControlWidget::trackPointReceived);
    gps.run("getTracks");
    QVERIFY(gps.lastTransfer().isWhole());
    QVERIFY(!points.isEmpty());

    const QSignalSpy routes(&gps, &GpsControlWidget::routeReceived);
    gps.run("GetRoutes");
    QVERIFY(gps.lastTransfer().isWhole());
    QCOMPARE(routes.size(), linesOf(receiver, 'R'));
    QCOMPARE(gps.finished.size(), 3);
    QVERIFY(receiver.complaints().empty());
}

void WidgetTest::uploads() {
    QFETCH(QString, mark);
    const receivers::BuiltIn receiver(mark.toStdString());
    const QTemporaryDir folder;
    QFile file(folder.filePath("waypoints.txt"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("W;HUT;46.25;7.5;hut;2000;18;0\nW;PASS;46.5;7.25;pass;2500;18;0\n");
    file.close();

    Gps gps(receiver, mark);
    QCOMPARE(gps.run("gpsConnect"), true);
    const QSignalSpy sent(&gps, &GpsControlWidget::WayptData);
    gps.run("SendWaypts", {file.fileName()});
    QCOMPARE(sent.size(), 2);
    QCOMPARE(sent[0][2].toString(), "U");
    QVERIFY(gps.lastTransfer().isWhole());
    QTRY_VERIFY(std::ranges::any_of(receiver.lines(), [](const std::string& line) {
        return line.starts_with("W;PASS;46.5;7.25;");
    }));
}

// Until it is stopped; then the receiver answers the next member.
void WidgetTest::follows() {
    QFETCH(QString, mark);
    receivers::ReceiverOptions options;
    options.rate = 20;
    const receivers::BuiltIn receiver(mark.toStdString(), options, false);
    Gps gps(receiver, mark);
    QCOMPARE(gps.run("gpsConnect"), true);
    const QSignalSpy fixes(&gps, &GpsControlWidget::fixReceived);
    const QSignalSpy texts(&gps, &GpsControlWidget::PvtData);
    gps.call("StartPvtData");
    if (!QTest::qWaitFor([&] { return fixes.size() >= 3 || !gps.ended.isEmpty(); },
                         Gps::kLongest) ||
        fixes.isEmpty()) {
        QSKIP("the family follows no position");
    }
    gps.call("StopPvtData");
    gps.resultOf("StartPvtData");
    QCOMPARE(gps.lastTransfer().ending, Ending::complete);
    QCOMPARE(fixes.size(), texts.size());
    gps.run("getWaypts");
    QVERIFY(gps.lastTransfer().isWhole());
}

}  // namespace marlune::qt

QTEST_MAIN(marlune::qt::WidgetTest)
#include "WidgetTest.moc"
