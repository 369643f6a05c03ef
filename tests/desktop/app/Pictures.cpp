// Drives the window through its main states, and takes a picture of each.
#include <QtCore/QDir>
#include <QtCore/QSettings>
#include <QtCore/QStandardPaths>
#include <QtGui/QPainter>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QDockWidget>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QStyleFactory>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <numbers>
#include <utility>

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

// A walk around a lake, which is more to look at than the receivers' few points.
Records walk() {
    Records records;
    TrackRecord track;
    track.name = "Tour du lac";
    constexpr int kPoints = 720;
    for (int i = 0; i < kPoints; ++i) {
        const double turn = 2 * std::numbers::pi * i / kPoints;
        const double radius = 0.03 + 0.006 * std::sin(3 * turn) + 0.002 * std::sin(11 * turn);
        TrackPointRecord point;
        point.latitude = 46.42 + radius * std::sin(turn) * 0.7;
        point.longitude = 6.55 + radius * std::cos(turn);
        point.altitude = static_cast<float>(640 + 260 * std::sin(turn * 1.5) * std::sin(turn) +
                                            25 * std::sin(17 * turn));
        point.time = 1751180400.0 + i * 22;
        point.segmentStart = i == 0;
        track.points.push_back(point);
    }
    records.tracks.push_back(track);
    const std::pair<const char*, int> places[] = {
        {"Auberge du Port", 20}, {"Cabane forestière", 190}, {"Col", 330}, {"Fontaine", 520}};
    for (const auto& [name, at] : places) {
        WaypointRecord record;
        record.name = name;
        record.comment = "sur le chemin";
        record.latitude = track.points[static_cast<std::size_t>(at)].latitude;
        record.longitude = track.points[static_cast<std::size_t>(at)].longitude;
        record.altitude = track.points[static_cast<std::size_t>(at)].altitude;
        record.symbol = 150;
        records.waypoints.push_back(record);
    }
    return records;
}

QPalette darkPalette() {
    QPalette palette(QColor(45, 49, 54), QColor(35, 38, 41));
    palette.setColor(QPalette::Base, QColor(27, 30, 32));
    palette.setColor(QPalette::AlternateBase, QColor(35, 38, 41));
    palette.setColor(QPalette::Highlight, QColor(61, 174, 233));
    palette.setColor(QPalette::Text, QColor(239, 240, 241));
    palette.setColor(QPalette::WindowText, QColor(239, 240, 241));
    palette.setColor(QPalette::ButtonText, QColor(239, 240, 241));
    for (const auto role : {QPalette::Text, QPalette::WindowText, QPalette::ButtonText}) {
        palette.setColor(QPalette::Disabled, role, QColor(125, 128, 131));
    }
    return palette;
}

class Photographer {
public:
    explicit Photographer(const QDir& folder) : folder_(folder) {}

    void take(QWidget& window, const char* name) const {
        QTest::qWait(150);  // what is under way on the screen comes to rest
        const QString file = folder_.filePath(QLatin1String(name) + QLatin1String(".png"));
        if (!window.grab().save(file)) {
            std::perror(name);
            std::exit(1);
        }
    }

private:
    QDir folder_;
};

// What does not happen in time makes no pictures.
template <class Condition>
void waitUntil(const char* what, Condition condition) {
    constexpr int kLongest = 30000;
    if (!QTest::qWaitFor(condition, kLongest)) {
        std::fprintf(stderr, "%s did not happen\n", what);
        std::exit(1);
    }
}

void waitFor(const MainWindow& window, State state) {
    waitUntil("a state", [&] { return window.session().state() == state; });
}

void connectTo(MainWindow& window, const QString& port) {
    waitUntil("the list", [&] { return window.receivers().rowOf(port) >= 0; });
    window.receiverPanel().choose(port);
    Q_EMIT window.receiverPanel().connectAsked(*window.receiverPanel().chosen());
    waitFor(window, State::connected);
}

void takeReceiver(const Photographer& photographer) {
    MainWindow window{Options()};
    window.show();
    connectTo(window, QStringLiteral("virtual:map162"));
    photographer.take(window, "connected");
    window.actions().downloadAll->trigger();
    waitFor(window, State::connected);
    window.tabs().setCurrentIndex(1);
    photographer.take(window, "tracks");
    window.tabs().setCurrentIndex(3);
    QTest::mouseClick(window.live().findChild<QPushButton*>(), Qt::LeftButton);
    waitUntil("a position", [&] { return !window.live().positionShown().isEmpty(); });
    photographer.take(window, "live");
    window.session().cancel();
    waitFor(window, State::connected);
}

void takeCancelled(const Photographer& photographer) {
    const receivers::BuiltIn slow("GRM", receivers::ReceiverOptions(), true);
    MainWindow window{Options()};
    window.show();
    Receiver receiver;
    receiver.port.path = slow.path();
    receiver.mark = "GRM";
    window.receivers().update(receiver);
    connectTo(window, receiver.path());
    QSignalSpy progressed(&window.session(), &Session::progressed);
    window.actions().downloadTracks->trigger();
    waitUntil("progress",
              [&] { return !progressed.isEmpty() && progressed.last()[0].toInt() >= 3; });
    window.findChild<QDockWidget*>()->show();
    photographer.take(window, "download");
    window.session().cancel();
    waitFor(window, State::connected);
    photographer.take(window, "cancelled");
}

void takeFile(const Photographer& photographer, const char* name, words::Language language,
              const char* dialogName) {
    Options options;
    options.language = language;
    MainWindow window(options);
    window.show();
    connectTo(window, QStringLiteral("virtual:gps12xl"));
    window.collection().setFile(QStringLiteral("tour-du-lac.gpx"), walk());
    window.tabs().setCurrentIndex(1);
    QTest::qWait(150);
    window.profile().setCursorMark(200);
    photographer.take(window, name);
    if (dialogName != nullptr) {
        window.tabs().setCurrentIndex(0);
        SendDialog* dialog = window.askToSend();
        photographer.take(*dialog, dialogName);
        dialog->reject();
    }
}

void takeAll(QApplication& application, const Photographer& photographer) {
    const QPalette light = QApplication::palette();
    takeReceiver(photographer);
    takeCancelled(photographer);
    takeFile(photographer, "file", words::Language::english, "send");
    QApplication::setPalette(darkPalette());
    takeFile(photographer, "dark", words::Language::english, nullptr);
    QApplication::setPalette(light);
    speak(words::Language::french, application);
    takeFile(photographer, "french", words::Language::french, "send-french");
}

}  // namespace
}  // namespace marlune::desktop

int main(int argc, char** argv) {
    using namespace marlune::desktop;
    QStandardPaths::setTestModeEnabled(true);
    QApplication application(argc, argv);
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    QCoreApplication::setOrganizationName(QStringLiteral("marlune-tests"));
    QCoreApplication::setApplicationName(QStringLiteral("pictures"));
    QSettings().clear();
    speak(marlune::words::Language::english, application);
    takeAll(application, Photographer(QDir(QString::fromLocal8Bit(argc > 1 ? argv[1] : "."))));
    return 0;
}
