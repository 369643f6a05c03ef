// The map as numbers: projection, view, rulers, tiles; and the canvas under the mouse and the keys.
#include <QtGui/QWheelEvent>
#include <QtTest/QTest>
#include <cmath>

#include "desktop/map/MapCanvas.h"
#include "desktop/map/Rulers.h"
#include "desktop/map/Shapes.h"
#include "desktop/map/TileLayer.h"
#include "desktop/map/Viewport.h"

namespace marlune::desktop {
namespace {

bool isNear(double left, double right, double reach = 1e-6) {
    return std::abs(left - right) <= reach;
}

TrackRecord trackThrough(std::initializer_list<std::pair<double, double>> positions) {
    TrackRecord track;
    for (const auto& [latitude, longitude] : positions) {
        TrackPointRecord point;
        point.latitude = latitude;
        point.longitude = longitude;
        point.segmentStart = track.points.empty();
        track.points.push_back(point);
    }
    return track;
}

class MapTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void projectsKnownPlaces_data();
    void projectsKnownPlaces();
    void fitsAnAreaWithItsMargin();
    void fitsASinglePointAtTheScaleOfStreets();
    void keepsWhatIsUnderTheMouse();
    void doesNotLeaveTheWorld();
    void takesTheShortWayOverTheDateLine();
    void breaksTracksAtTheirGaps();
    void drawsRoundScaleBars_data();
    void drawsRoundScaleBars();
    void drawsRoundGraticules();
    void placesTiles();
    void namesTiles();
    void pansAndZoomsByKeysAndWheel();
    void drawsTracksWhereTheyAre();
    void drawsTilesFromItsSource();
};

void MapTest::projectsKnownPlaces_data() {
    QTest::addColumn<double>("latitude");
    QTest::addColumn<double>("longitude");
    QTest::addColumn<double>("x");
    QTest::addColumn<double>("y");
    QTest::newRow("where nothing is turned") << 0.0 << 0.0 << 0.5 << 0.5;
    QTest::newRow("north-west corner") << 85.05112877980659 << -180.0 << 0.0 << 0.0;
    QTest::newRow("south-east corner") << -85.05112877980659 << 180.0 << 1.0 << 1.0;
    // From the formula of EPSG 3857, in metres: 6.11823 E is 681078.25, 46.40271 N is 5847082.8.
    QTest::newRow("by the lake") << 46.40271 << 6.11823 << 0.5 + 681078.25 / 40075016.686
                                 << 0.5 - std::log(std::tan(std::numbers::pi / 4 +
                                                            46.40271 * std::numbers::pi / 360)) /
                                              (2 * std::numbers::pi);
    QTest::newRow("a pole lies on the edge") << 90.0 << 0.0 << 0.5 << 0.0;
}

void MapTest::projectsKnownPlaces() {
    QFETCH(double, latitude);
    QFETCH(double, longitude);
    QFETCH(double, x);
    QFETCH(double, y);
    const WorldPoint world = worldOf({latitude, longitude});
    QVERIFY2(isNear(world.x, x), qPrintable(QString::number(world.x, 'g', 12)));
    QVERIFY2(isNear(world.y, y), qPrintable(QString::number(world.y, 'g', 12)));
    const GeoPoint back = positionOf(world);
    QVERIFY(isNear(std::remainder(back.longitude - longitude, 360), 0));
    QVERIFY(isNear(back.latitude, std::clamp(latitude, -kLastLatitude, kLastLatitude)));
}

void MapTest::fitsAnAreaWithItsMargin() {
    Viewport view;
    view.setSize({400, 300});
    WorldArea area = WorldArea::of(worldOf({46.0, 6.0}));
    area.include(worldOf({46.2, 6.8}));
    view.fit(area, 20);
    const QPointF southWest = view.screenOf(GeoPoint{46.0, 6.0});
    const QPointF northEast = view.screenOf(GeoPoint{46.2, 6.8});
    QVERIFY(isNear(southWest.x(), 20, 1e-3) && isNear(northEast.x(), 380, 1e-3));
    QVERIFY(southWest.y() <= 280 && northEast.y() >= 20 && southWest.y() > northEast.y());
    QVERIFY(isNear(southWest.y() + northEast.y(), 300, 1e-3));
}

void MapTest::fitsASinglePointAtTheScaleOfStreets() {
    Viewport view;
    view.setSize({400, 300});
    view.fit(WorldArea::of(worldOf({46.0, 6.0})));
    QCOMPARE(view.zoom(), 15.0);
    QVERIFY(isNear(view.screenOf(GeoPoint{46.0, 6.0}).x(), 200, 1e-3));
}

void MapTest::keepsWhatIsUnderTheMouse() {
    Viewport view;
    view.setSize({640, 480});
    view.show({46.4, 6.1}, 9);
    const QPointF mouse(100, 420);
    const GeoPoint before = view.positionAt(mouse);
    view.zoomAt(mouse, 2.5);
    QVERIFY(isNear(view.positionAt(mouse).latitude, before.latitude));
    QVERIFY(isNear(view.positionAt(mouse).longitude, before.longitude));
    view.pan({37, -12});
    QVERIFY(isNear(view.positionAt(mouse + QPointF(37, -12)).latitude, before.latitude));
}

void MapTest::doesNotLeaveTheWorld() {
    Viewport view;
    view.setSize({640, 480});
    view.show({80, 179}, 4);
    view.pan({-1e5, 1e5});
    QVERIFY(view.centre().x >= 0 && view.centre().x < 1);
    QCOMPARE(view.centre().y, 0.0);
    view.zoomAt({0, 0}, 99);
    QCOMPARE(view.zoom(), Viewport::kNearest);
    view.zoomAt({0, 0}, -99);
    QCOMPARE(view.zoom(), Viewport::kFarthest);
}

void MapTest::takesTheShortWayOverTheDateLine() {
    Records records;
    records.tracks.push_back(trackThrough({{-17, 179}, {-17.5, -179.5}, {-18, 179.9}}));
    WaypointRecord fiji;
    fiji.latitude = -17.2;
    fiji.longitude = -179;
    records.waypoints.push_back(fiji);
    const auto area = shapesOf(records).area();
    QVERIFY(area);
    QVERIFY2(isNear((area->right - area->left) * 360, 2.0), "two degrees, not the whole earth");
    Viewport view;
    view.setSize({400, 300});
    view.fit(*area);
    const QPointF east = view.screenOf(GeoPoint{-17.5, -179.5});
    QVERIFY(QRectF(0, 0, 400, 300).contains(east));
    QVERIFY(east.x() > view.screenOf(GeoPoint{-17, 179}).x());
}

void MapTest::breaksTracksAtTheirGaps() {
    Records records;
    records.tracks.push_back(trackThrough({{46, 6}, {46.1, 6}, {46.2, 6}, {46.3, 6}}));
    records.tracks[0].points[2].segmentStart = true;
    records.tracks.emplace_back();  // without points it keeps its place
    const Shapes shapes = shapesOf(records);
    QCOMPARE(shapes.tracks.size(), 2U);
    QCOMPARE(shapes.tracks[0].pieces.size(), 2U);
    QCOMPARE(shapes.tracks[0].pieces[1].size(), 2U);
    QVERIFY(!shapesOf(Records()).area());
}

void MapTest::drawsRoundScaleBars_data() {
    QTest::addColumn<double>("zoom");
    QTest::addColumn<int>("units");
    QTest::addColumn<double>("metres");
    QTest::addColumn<QString>("text");
    QTest::newRow("metric") << 10.0 << static_cast<int>(qt::Units::metric) << 20000.0 << "20 km";
    QTest::newRow("near") << 17.0 << static_cast<int>(qt::Units::metric) << 100.0 << "100 m";
    QTest::newRow("nautical") << 10.0 << static_cast<int>(qt::Units::nautical) << 10 * 1852.0
                              << "10 NM";
    QTest::newRow("imperial") << 10.0 << static_cast<int>(qt::Units::imperial) << 10 * 1609.344
                              << "10 mi";
}

// At the equator a pixel of level 10 is 152.87 m.
void MapTest::drawsRoundScaleBars() {
    QFETCH(double, zoom);
    QFETCH(int, units);
    QFETCH(double, metres);
    QFETCH(QString, text);
    Viewport view;
    view.setSize({640, 480});
    view.show({0, 0}, zoom);
    const ScaleBar bar = scaleBarOf(view, static_cast<qt::Units>(units), 140);
    QVERIFY2(isNear(bar.metres, metres, 1e-6), qPrintable(QString::number(bar.metres)));
    QCOMPARE(bar.text, text);
    QVERIFY(bar.pixels <= 140 && bar.pixels > 140 / 2.6);
    view.show({60, 0}, zoom);
    const ScaleBar north = scaleBarOf(view, static_cast<qt::Units>(units), 140);
    QVERIFY2(north.metres / north.pixels < bar.metres / bar.pixels * 0.51,
             "in the north a pixel is less ground");
}

void MapTest::drawsRoundGraticules() {
    Viewport view;
    view.setSize({640, 480});
    view.show({46.4, 6.1}, 10);
    const Graticule graticule = graticuleOf(view);
    QCOMPARE(graticule.step, 0.2);
    QVERIFY(graticule.meridians.size() >= 3 && graticule.meridians.size() <= 6);
    for (const double each : graticule.meridians) {
        QVERIFY(isNear(std::remainder(each, 0.2), 0));
        const double x = view.screenOf(GeoPoint{46.4, each}).x();
        QVERIFY(x >= -1e-6 && x <= 640 + 1e-6);
    }
    QCOMPARE(parallelText(46.4, 0.2), QStringLiteral("46.4° N"));
    QCOMPARE(parallelText(-5, 1), QStringLiteral("5° S"));
    QCOMPARE(meridianText(190, 10), QStringLiteral("170° W"));
    view.show({0, 0}, 0);
    QVERIFY(graticuleOf(view).meridians.size() >= 3);
}

void MapTest::placesTiles() {
    Viewport view;
    view.setSize({512, 512});
    view.show({0, 0}, 1);
    const std::vector<PlacedTile> tiles = tilesOf(view, 1);
    QCOMPARE(tiles.size(), 6U);  // the last column just touches the edge
    QCOMPARE(tiles.front().tile, (TileId{1, 0, 0}));
    QCOMPARE(tiles.front().at, QRectF(0, 0, 256, 256));
    QVERIFY2(tilesOf(view, 2).front().tile.z == 2, "a finer screen takes finer tiles");
    view.show({0, 179}, 3);
    for (const PlacedTile& each : tilesOf(view, 1)) {
        QVERIFY(each.tile.x >= 0 && each.tile.x < 8 && each.tile.y >= 0 && each.tile.y < 8);
    }
}

void MapTest::namesTiles() {
    const TileSource source{QStringLiteral("https://tiles.example.org/{z}/{x}/{y}.png"), {}};
    QVERIFY(source.isUsable());
    QCOMPARE(source.urlOf({12, 2117, 1450}).toString(),
             QStringLiteral("https://tiles.example.org/12/2117/1450.png"));
    QVERIFY(!TileSource().isUsable());
    QVERIFY(!(TileSource{QStringLiteral("https://tiles.example.org/{z}/{x}.png"), {}}.isUsable()));
    QVERIFY(!(TileSource{QStringLiteral("javascript:{z}{x}{y}"), {}}.isUsable()));
}

void MapTest::pansAndZoomsByKeysAndWheel() {
    QTemporaryDir folder;
    TileLayer tiles(folder.path());
    MapCanvas map(tiles);
    map.resize(400, 300);
    map.show();
    Records records;
    records.tracks.push_back(trackThrough({{46, 6}, {46.2, 6.4}}));
    map.setRecords(records);
    const Viewport fitted = map.view();
    QTest::keyClick(&map, Qt::Key_Plus);
    QCOMPARE(map.view().zoom(), fitted.zoom() + 1);
    QTest::keyClick(&map, Qt::Key_Right);
    QVERIFY(map.view().centre().x > fitted.centre().x);
    const GeoPoint before = map.view().positionAt({50, 60});
    QWheelEvent wheel({50, 60}, map.mapToGlobal(QPointF(50, 60)), {}, {0, 240}, Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(&map, &wheel);
    QVERIFY(map.view().zoom() > fitted.zoom() + 1.5);
    QVERIFY(isNear(map.view().positionAt({50, 60}).longitude, before.longitude));
    map.resize(500, 300);
    QVERIFY2(map.view().zoom() > fitted.zoom() + 1.5, "who looks elsewhere goes on looking there");
    QTest::keyClick(&map, Qt::Key_Home);
    QVERIFY(isNear(map.view().centre().x, fitted.centre().x));
}

void MapTest::drawsTracksWhereTheyAre() {
    QTemporaryDir folder;
    TileLayer tiles(folder.path());
    MapCanvas map(tiles);
    map.resize(400, 300);
    Records records;
    records.tracks.push_back(trackThrough({{46, 6}, {46, 6.4}}));
    map.setRecords(records);
    const QImage without = map.grab().toImage();
    map.chooseTrack(0);
    const QImage with = map.grab().toImage();
    const QPoint on = map.view().screenOf(GeoPoint{46, 6.2}).toPoint();
    QCOMPARE(with.pixelColor(on), map.palette().color(QPalette::Highlight));
    QVERIFY(without.pixelColor(on) != map.palette().color(QPalette::Base));
    QCOMPARE(with.pixelColor(on + QPoint(7, 30)), map.palette().color(QPalette::Base));
}

void MapTest::drawsTilesFromItsSource() {
    QTemporaryDir folder;
    QImage red(256, 256, QImage::Format_RGB32);
    red.fill(Qt::red);
    QVERIFY(QDir(folder.path()).mkpath(QStringLiteral("0/0")));
    QVERIFY(red.save(folder.filePath(QStringLiteral("0/0/0.png"))));
    TileLayer tiles(folder.filePath(QStringLiteral("cache")));
    MapCanvas map(tiles);
    map.resize(256, 256);
    map.setRecords({});
    const auto isRed = [&] { return map.grab().toImage().pixelColor(200, 160) == QColor(Qt::red); };
    QVERIFY(!isRed());
    tiles.setSource({QStringLiteral("file://%1/{z}/{x}/{y}.png").arg(folder.path()),
                     QStringLiteral("by nobody")});
    QTRY_VERIFY_WITH_TIMEOUT(isRed(), 10000);
    tiles.setSource({});
    QVERIFY2(!isRed(), "without a source there is nothing of it");
}

}  // namespace
}  // namespace marlune::desktop

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QLocale::setDefault(QLocale::c());
    marlune::desktop::MapTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "MapTest.moc"
