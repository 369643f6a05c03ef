// The whole window, driven as its user does it, against virtual receivers of every family.
#include <fcntl.h>
#include <unistd.h>

#include <QtCore/QElapsedTimer>
#include <QtCore/QMimeData>
#include <QtCore/QSettings>
#include <QtCore/QStandardPaths>
#include <QtCore/QTemporaryDir>
#include <QtGui/QActionGroup>
#include <QtGui/QDropEvent>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QDockWidget>
#include <QtWidgets/QListView>
#include <QtWidgets/QProgressBar>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QTableView>
#include <algorithm>
#include <cstdlib>
#include <memory>

#include "desktop/MainWindow.h"
#include "desktop/NoticeBar.h"
#include "desktop/log/LogPanel.h"
#include "desktop/map/MapPanel.h"
#include "desktop/profile/ProfileView.h"
#include "desktop/receivers/ReceiverPanel.h"
#include "desktop/records/LivePanel.h"
#include "desktop/records/RecordTabs.h"
#include "desktop/send/SendDialog.h"
#include "receivers/BuiltIn.h"

namespace marlune::desktop {
namespace {

using State = Session::State;

constexpr int kLongest = 30000;  // ms

// A window, and what its user does.
class User {
public:
    explicit User(const Options& options = {}) : window(std::make_unique<MainWindow>(options)) {
        window->show();
    }

    std::unique_ptr<MainWindow> window;

    [[nodiscard]] bool waitFor(State state) const {
        return QTest::qWaitFor([&] { return window->session().state() == state; }, kLongest);
    }
    // Of the list, as it stands there.
    [[nodiscard]] bool pick(const QString& path) const {
        return QTest::qWaitFor([&] { return window->receivers().rowOf(path) >= 0; }, kLongest) &&
               window->receiverPanel().choose(path);
    }
    void press(const char* text) const {
        for (auto* button : window->receiverPanel().findChildren<QPushButton*>()) {
            if (button->text().remove('&') == QLatin1String(text)) {
                QTest::mouseClick(button, Qt::LeftButton);
                return;
            }
        }
        QFAIL(text);
    }
    [[nodiscard]] bool connectTo(const QString& path) const {
        if (!pick(path)) {
            return false;
        }
        press("Connect");
        return waitFor(State::connected);
    }
    [[nodiscard]] bool plugIn(const receivers::BuiltIn& receiver, const char* mark) const {
        Receiver entry;
        entry.port.path = receiver.path();
        entry.mark = mark;
        window->receivers().update(entry);
        return connectTo(entry.path());
    }
    [[nodiscard]] bool download(QAction* what) const {
        what->trigger();
        return window->session().state() == State::downloading && waitFor(State::connected);
    }
    [[nodiscard]] bool open(const QString& path) const {
        QSignalSpy changed(&window->collection(), &Collection::changed);
        window->openFile(path);
        return QTest::qWaitFor([&] { return !changed.isEmpty(); }, kLongest);
    }
    [[nodiscard]] const Records& records() const { return window->collection().records(); }
    [[nodiscard]] QString notice() const { return window->notice().text(); }
};

QString unitOf(const char* mark) {
    for (const finder::PortEntry& port : finder::virtualPorts()) {
        if (port.mark == mark) {
            return QString::fromStdString(port.path);
        }
    }
    return {};
}

// A receiver that takes its time, as a real line does.
std::unique_ptr<receivers::BuiltIn> slowReceiver() {
    return std::make_unique<receivers::BuiltIn>("GRM", receivers::ReceiverOptions(), true);
}

Records threePlaces() {
    Records records;
    for (const char* name : {"LAKE", "Cabane du Lac", "SUMMIT"}) {
        WaypointRecord record;
        record.name = name;
        record.comment = "sent by the desktop";
        record.latitude = 46.1;
        record.longitude = 6.2 + static_cast<double>(records.waypoints.size()) / 100;
        records.waypoints.push_back(record);
    }
    return records;
}

class WindowTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void goesTheNewcomersPath();
    void downloadsFromEveryFamily_data();
    void downloadsFromEveryFamily();
    void downloadsFromADrive();
    void cancelsADownload();
    void survivesAnUnpluggedReceiver();
    void saysWhyAConnectionFails();
    void stopsConnectingToASilentPort();
    void sendsAfterAQuestion();
    void sendsWhatIsDropped();
    void sendsWhatWasDownloaded();
    void followsThePosition();
    void savesAndOpens_data();
    void savesAndOpens();
    void saysWhatIsWrongWithAFile();
    void showsTheTrace();
    void movesTheProfilesCursorOnTheMap();
    void remembersHowItStood();
    void closesInTheMiddleOfATransfer();

private:
    QTemporaryDir folder_;
};

void WindowTest::init() {
    QSettings().clear();
}

void WindowTest::goesTheNewcomersPath() {
    QElapsedTimer clock;
    clock.start();
    const User user;
    QVERIFY(user.connectTo(QStringLiteral("virtual:map162")));
    QVERIFY(user.window->receiverPanel().identityShown().contains(QStringLiteral("MAP 162")));
    QVERIFY(user.download(user.window->actions().downloadTracks));
    QVERIFY(!user.records().tracks.empty());
    QVERIFY2(user.window->tabs().chosenTrack() == 0, "one is chosen at once");
    QVERIFY(!user.window->profile().profile().isEmpty());
    const TrackPointRecord& point = user.records().tracks[0].points[0];
    const QRectF map(user.window->mapPanel().map().rect());
    QVERIFY(map.contains(
        user.window->mapPanel().map().view().screenOf(GeoPoint{point.latitude, point.longitude})));
    const QString file = folder_.filePath(QStringLiteral("newcomer.gpx"));
    QVERIFY(user.window->saveTo(file));
    qInfo("the newcomer's path: %lld ms", clock.elapsed());
    const User other;
    QVERIFY(other.open(file));
    QCOMPARE(other.records().tracks.size(), user.records().tracks.size());
    QCOMPARE(other.records().tracks[0].points.size(), user.records().tracks[0].points.size());
}

void WindowTest::downloadsFromEveryFamily_data() {
    QTest::addColumn<QString>("mark");
    for (const char* mark : {"GRM", "MGN", "MLR"}) {
        QTest::newRow(mark) << QString::fromLatin1(mark);
    }
}

void WindowTest::downloadsFromEveryFamily() {
    QFETCH(QString, mark);
    const User user;
    QVERIFY(user.connectTo(unitOf(qPrintable(mark))));
    QVERIFY(!user.window->receiverPanel().identityShown().isEmpty());
    QVERIFY(user.download(user.window->actions().downloadAll));
    QVERIFY2(!user.records().waypoints.empty(), qPrintable(user.window->log().text()));
    QVERIFY(!user.records().tracks.empty());
    QVERIFY(!user.records().routes.empty());
    QCOMPARE(user.window->tabs().waypoints().model()->rowCount(),
             static_cast<int>(user.records().waypoints.size()));
    user.press("Disconnect");
    QVERIFY(user.waitFor(State::free));
    QVERIFY(!user.window->actions().downloadAll->isEnabled());
    QVERIFY2(!user.records().tracks.empty(), "what came stays");
}

void WindowTest::downloadsFromADrive() {
    const QString drive = folder_.filePath(QStringLiteral("GARMIN"));
    QVERIFY(QDir(drive).mkpath(QStringLiteral("Garmin/GPX")));
    Options options;
    options.drives = QStringList{drive};
    const User user(options);
    QVERIFY(user.pick(drive));
    user.press("Connect");
    QVERIFY2(
        QTest::qWaitFor([&] { return user.notice().contains(QStringLiteral("GarminDevice.xml")); },
                        kLongest),
        "without its description it is no unit");
    QVERIFY(user.waitFor(State::free));
}

void WindowTest::cancelsADownload() {
    const auto receiver = slowReceiver();
    const User user;
    QVERIFY(user.plugIn(*receiver, "GRM"));
    QSignalSpy progressed(&user.window->session(), &Session::progressed);
    user.window->actions().downloadAll->trigger();
    QVERIFY(QTest::qWaitFor(
        [&] { return !progressed.isEmpty() && progressed.last()[0].toInt() >= 2; }, kLongest));
    QVERIFY(user.window->progress().isVisible());
    QVERIFY(user.window->progress().maximum() > 2);
    user.window->actions().cancel->trigger();
    QVERIFY(user.waitFor(State::connected));
    QVERIFY2(user.notice().contains(QStringLiteral("stopped")), qPrintable(user.notice()));
    QVERIFY2(user.notice().contains(QStringLiteral(" of ")), qPrintable(user.notice()));
    QVERIFY(user.records().waypoints.size() >= 2);
    QVERIFY2(user.records().tracks.empty(), "what waited is forgotten");
    QVERIFY2(user.download(user.window->actions().downloadRoutes), "and the next one works");
}

void WindowTest::survivesAnUnpluggedReceiver() {
    auto receiver = slowReceiver();
    const User user;
    QVERIFY(user.plugIn(*receiver, "GRM"));
    QSignalSpy progressed(&user.window->session(), &Session::progressed);
    user.window->actions().downloadAll->trigger();
    QVERIFY(QTest::qWaitFor(
        [&] { return !progressed.isEmpty() && progressed.last()[0].toInt() >= 2; }, kLongest));
    receiver.reset();
    QVERIFY(user.waitFor(State::free));
    QVERIFY2(user.notice().contains(QStringLiteral("unplugged")), qPrintable(user.notice()));
    QVERIFY2(!user.records().waypoints.empty(), "what came stays");
    QCOMPARE(user.window->receiverPanel().identityShown(), QStringLiteral("none"));
    QVERIFY2(user.connectTo(QStringLiteral("virtual:map162")), "and another one is reached");
}

void WindowTest::saysWhyAConnectionFails() {
    const User user;
    Receiver nowhere;
    nowhere.port.path = "/dev/no-such-port";
    nowhere.mark = "GRM";
    user.window->receivers().update(nowhere);
    QVERIFY(user.pick(nowhere.path()));
    user.press("Connect");
    // Behind the control's own box.
    const auto isTold = [&] {
        return user.notice().contains(QStringLiteral("there is no /dev/no-such-port"));
    };
    QVERIFY2(QTest::qWaitFor(isTold, kLongest), qPrintable(user.notice()));
    QVERIFY(user.waitFor(State::free));
}

void WindowTest::stopsConnectingToASilentPort() {
    const int master = posix_openpt(O_RDWR | O_NOCTTY);
    QVERIFY(master >= 0 && grantpt(master) == 0 && unlockpt(master) == 0);
    const User user;
    Receiver silent;
    silent.port.path = ptsname(master);
    silent.mark = "GRM";
    user.window->receivers().update(silent);
    QVERIFY(user.pick(silent.path()));
    user.press("Connect");
    QCOMPARE(user.window->session().state(), State::connecting);
    user.press("Stop connecting");
    QVERIFY(user.waitFor(State::free));
    close(master);
}

void WindowTest::sendsAfterAQuestion() {
    const receivers::BuiltIn receiver("GRM", "etrex");
    const QString file = folder_.filePath(QStringLiteral("places.gpx"));
    saveFile(threePlaces(), file, {});
    const User user;
    QVERIFY2(user.window->askToSend() == nullptr, "there is nobody to send to");
    QVERIFY(user.open(file));
    QVERIFY(!user.window->actions().send->isEnabled());
    QVERIFY(user.plugIn(receiver, "GRM"));
    const std::vector<std::string> before = receiver.lines();
    SendDialog* dialog = user.window->askToSend();
    QVERIFY(dialog != nullptr && dialog->preview() != nullptr);
    QCOMPARE(dialog->preview()->records(), 3);
    dialog->reject();
    QCOMPARE(receiver.lines(), before);

    dialog = user.window->askToSend();
    const QString kept = dialog->preview()->index(1, SendPreview::kept).data().toString();
    QSignalSpy told(&user.window->session(), &Session::told);
    dialog->accept();
    QVERIFY(QTest::qWaitFor([&] { return !told.isEmpty(); }, kLongest));
    QVERIFY2(user.notice().contains(QStringLiteral("3 of 3 waypoints sent")),
             qPrintable(user.notice()));
    // The promise of the preview, against what the receiver holds.
    const auto lines = receiver.lines();
    QVERIFY(std::any_of(lines.begin(), lines.end(), [&](const std::string& line) {
        return QString::fromStdString(line).startsWith(QStringLiteral("W;%1;").arg(kept));
    }));
    QVERIFY(receiver.complaints().empty());
}

void WindowTest::sendsWhatIsDropped() {
    const receivers::BuiltIn receiver("MGN");
    const QString file = folder_.filePath(QStringLiteral("dropped.gpx"));
    saveFile(threePlaces(), file, {});
    const User user;
    QVERIFY(user.plugIn(receiver, "MGN"));
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(file)});
    QDragEnterEvent enter({200, 200}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(user.window.get(), &enter);
    QVERIFY(enter.isAccepted());
    QDropEvent drop({200, 200}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(user.window.get(), &drop);
    const auto question = [&] { return user.window->findChild<SendDialog*>(); };
    QVERIFY(QTest::qWaitFor([&] { return question() != nullptr; }, kLongest));
    QCOMPARE(question()->preview()->records(), 3);
    question()->accept();
    QVERIFY(user.waitFor(State::connected));
    QVERIFY(QTest::qWaitFor(
        [&] {
            return user.notice().contains(QStringLiteral("3 waypoints sent")) ||
                   user.notice().contains(QStringLiteral("3 of 3 waypoints sent"));
        },
        kLongest));
}

void WindowTest::sendsWhatWasDownloaded() {
    const receivers::BuiltIn other("GRM", "etrex");
    const User user;
    QVERIFY(user.connectTo(QStringLiteral("virtual:map162")));
    QVERIFY(user.download(user.window->actions().downloadTracks));
    const std::size_t tracks = user.records().tracks.size();
    user.press("Disconnect");
    QVERIFY(user.waitFor(State::free));
    QVERIFY(user.plugIn(other, "GRM"));
    user.window->tabs().setCurrentIndex(1);
    SendDialog* dialog = user.window->askToSend();
    QCOMPARE(dialog->kind(), std::optional(GpxKind::tracks));
    QCOMPARE(dialog->preview()->records(), static_cast<int>(tracks));
    QSignalSpy told(&user.window->session(), &Session::told);
    dialog->accept();
    QVERIFY(QTest::qWaitFor([&] { return !told.isEmpty(); }, kLongest));
    QCOMPARE(told[0][0].value<Session::Tone>(), Session::Tone::good);
    QVERIFY(user.waitFor(State::connected));
}

void WindowTest::followsThePosition() {
    receivers::ReceiverOptions fast;
    fast.rate = 20;
    const receivers::BuiltIn receiver("GRM", fast, false);
    const User user;
    QVERIFY(user.plugIn(receiver, "GRM"));
    user.window->tabs().setCurrentIndex(3);
    auto* button = user.window->live().findChild<QPushButton*>();
    QTest::mouseClick(button, Qt::LeftButton);
    QCOMPARE(user.window->session().state(), State::live);
    QVERIFY(
        QTest::qWaitFor([&] { return !user.window->live().positionShown().isEmpty(); }, kLongest));
    const MapCanvas& map = user.window->mapPanel().map();
    QVERIFY2(map.view().zoom() > 10, "the map goes to where the receiver is");
    QTest::mouseClick(button, Qt::LeftButton);
    QVERIFY(user.waitFor(State::connected));
}

void WindowTest::savesAndOpens_data() {
    QTest::addColumn<QString>("suffix");
    QTest::addColumn<bool>("isRead");
    QTest::newRow("GPX") << "gpx" << true;
    QTest::newRow("CSV") << "csv" << true;
    QTest::newRow("lines") << "txt" << true;
    QTest::newRow("KML") << "kml" << false;
    QTest::newRow("GeoJSON") << "geojson" << false;
}

void WindowTest::savesAndOpens() {
    QFETCH(QString, suffix);
    QFETCH(bool, isRead);
    const QString first = folder_.filePath(QStringLiteral("first.gpx"));
    saveFile(threePlaces(), first, {});
    const User user;
    QVERIFY(user.open(first));
    const QString file = folder_.filePath(QStringLiteral("saved.") + suffix);
    QVERIFY(user.window->saveTo(file));
    QVERIFY(QFileInfo(file).size() > 100);
    const User other;
    if (isRead) {
        QVERIFY(other.open(file));
        QCOMPARE(other.records().waypoints.size(), 3U);
        QCOMPARE(other.records().waypoints[1].name, std::string("Cabane du Lac"));
    } else {
        other.window->openFile(file);
        QVERIFY(QTest::qWaitFor([&] { return other.window->notice().isVisible(); }, kLongest));
        QVERIFY(other.notice().contains(QStringLiteral("written only")));
    }
}

void WindowTest::saysWhatIsWrongWithAFile() {
    const QString file = folder_.filePath(QStringLiteral("broken.gpx"));
    QFile broken(file);
    QVERIFY(broken.open(QIODevice::WriteOnly));
    broken.write("<gpx>\n<wpt lat='46' lon=>\n");
    broken.close();
    const User user;
    user.window->openFile(file);
    QVERIFY(QTest::qWaitFor([&] { return user.window->notice().isVisible(); }, kLongest));
    QVERIFY2(user.notice().contains(QStringLiteral("line 2")), qPrintable(user.notice()));
    QVERIFY(!user.window->saveTo(QStringLiteral("/no/such/folder/x.gpx")));
    QVERIFY(user.notice().contains(QStringLiteral("/no/such/folder")));
}

void WindowTest::showsTheTrace() {
    const User user;
    user.window->findChild<QDockWidget*>()->show();
    user.window->log().findChild<QCheckBox*>()->setChecked(true);
    QVERIFY(user.connectTo(QStringLiteral("virtual:map162")));
    QVERIFY(QTest::qWaitFor(
        [&] { return user.window->log().traceText().contains(QStringLiteral("D108")); }, kLongest));
}

void WindowTest::movesTheProfilesCursorOnTheMap() {
    const User user;
    QVERIFY(user.connectTo(QStringLiteral("virtual:map162")));
    QVERIFY(user.download(user.window->actions().downloadTracks));
    QVERIFY(!user.window->mapPanel().map().cursorPosition());
    QTest::keyClick(&user.window->profile(), Qt::Key_End);
    const int mark = user.window->profile().cursorMark();
    const int number =
        user.window->profile().profile().marks()[static_cast<std::size_t>(mark)].point;
    const auto shown = user.window->mapPanel().map().cursorPosition();
    QVERIFY(shown);
    const TrackPointRecord& point =
        user.records().tracks[0].points[static_cast<std::size_t>(number)];
    QCOMPARE(shown->latitude, point.latitude);
    QCOMPARE(shown->longitude, point.longitude);
}

void WindowTest::remembersHowItStood() {
    {
        const User user;
        user.window->resize(1000, 700);
        user.window->findChild<QDockWidget*>()->show();
        user.window->tabs().setCurrentIndex(2);
        user.window->actions().units->actions().at(1)->trigger();
        QVERIFY(user.pick(QStringLiteral("virtual:etrex")));
        user.press("Connect");
        QVERIFY(user.waitFor(State::connected));
        user.window->close();
    }
    const User again;
    QCOMPARE(again.window->size(), QSize(1000, 700));
    QVERIFY(again.window->findChild<QDockWidget*>()->isVisible());
    QCOMPARE(again.window->tabs().currentIndex(), 2);
    QCOMPARE(again.window->units(), qt::Units::nautical);
    QVERIFY(QTest::qWaitFor([&] { return again.window->receiverPanel().chosen().has_value(); },
                            kLongest));
    QCOMPARE(again.window->receiverPanel().chosen()->path(), QStringLiteral("virtual:etrex"));
}

void WindowTest::closesInTheMiddleOfATransfer() {
    const auto receiver = slowReceiver();
    User user;
    QVERIFY(user.plugIn(*receiver, "GRM"));
    QSignalSpy progressed(&user.window->session(), &Session::progressed);
    user.window->actions().downloadAll->trigger();
    QVERIFY(QTest::qWaitFor(
        [&] { return !progressed.isEmpty() && progressed.last()[0].toInt() >= 1; }, kLongest));
    user.window->close();
    user.window.reset();
}

}  // namespace
}  // namespace marlune::desktop

int main(int argc, char** argv) {
    QStandardPaths::setTestModeEnabled(true);
    QApplication application(argc, argv);
    QCoreApplication::setOrganizationName(QStringLiteral("marlune-tests"));
    QCoreApplication::setApplicationName(QStringLiteral("window"));
    marlune::desktop::WindowTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "WindowTest.moc"
