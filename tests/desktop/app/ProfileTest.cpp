// The altitude profile as numbers, and its cursor under the mouse and the keys.
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>
#include <algorithm>

#include "desktop/profile/Profile.h"
#include "desktop/profile/ProfileView.h"

namespace marlune::desktop {
namespace {

// Points some 111 m apart, with a summit that nobody may lose.
TrackRecord mountain(int points, int summit) {
    TrackRecord track;
    for (int i = 0; i < points; ++i) {
        TrackPointRecord point;
        point.latitude = 46 + i * 0.001;
        point.longitude = 6;
        point.altitude = i == summit ? 2000.0F : 500.0F;
        track.points.push_back(point);
    }
    return track;
}

class ProfileTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void findsTheNearestPoint();
    void passesOverPointsWithoutAltitude();
    void keepsSummitsOfLongTracks();
    void movesItsCursorByTheMouse();
    void movesItsCursorByKeys();
    void saysThatThereAreNoAltitudes();
};

void ProfileTest::findsTheNearestPoint() {
    const Profile profile(mountain(5, 2));
    QVERIFY(std::abs(profile.length() - 4 * 111.19) < 1);
    QCOMPARE(profile.nearest(-10), 0);
    QCOMPARE(profile.nearest(50), 0);
    QCOMPARE(profile.nearest(60), 1);
    QCOMPARE(profile.nearest(1e9), 4);
    QCOMPARE(profile.highest(), 2000.0);
    QCOMPARE(profile.lowest(), 500.0);
}

void ProfileTest::passesOverPointsWithoutAltitude() {
    TrackRecord track = mountain(5, 2);
    track.points[0].altitude.reset();
    track.points[3].altitude.reset();
    const Profile profile(track);
    QCOMPARE(profile.marks().size(), 3U);
    QCOMPARE(profile.marks().front().point, 1);
    QVERIFY2(profile.marks().front().distance > 100, "distances are the track's");
}

void ProfileTest::keepsSummitsOfLongTracks() {
    const Profile profile(mountain(50000, 31234));
    const std::vector<QPointF> curve = profile.curve(300);
    QVERIFY(curve.size() <= 600);
    QVERIFY(std::any_of(curve.begin(), curve.end(),
                        [](const QPointF& point) { return point.y() == 2000; }));
    QVERIFY(std::is_sorted(curve.begin(), curve.end(),
                           [](const QPointF& l, const QPointF& r) { return l.x() < r.x(); }));
}

void ProfileTest::movesItsCursorByTheMouse() {
    const TrackRecord track = mountain(101, 50);
    ProfileView view;
    view.resize(600, 200);
    view.show();
    view.setTrack(&track);
    QSignalSpy moved(&view, &ProfileView::cursorMoved);
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    QCoreApplication::processEvents();  // lays out the axes
    const QRectF plot = view.chart()->plotArea();
    QTest::mouseMove(view.viewport(), view.mapFromScene(view.chart()->mapToScene(plot.center())));
    QVERIFY(!moved.isEmpty());
    QVERIFY2(std::abs(moved.last()[0].toInt() - 50) <= 1,
             qPrintable(QStringLiteral("the middle of the curve is its middle, not %1")
                            .arg(moved.last()[0].toInt())));
    QTest::mouseMove(view.viewport(), QPoint(static_cast<int>(plot.right()), 50));
    QVERIFY(moved.last()[0].toInt() >= 99);
    view.setUnits(qt::Units::imperial);
    QTest::mouseMove(view.viewport(), plot.center().toPoint() + QPoint(1, 0));
    QVERIFY2(std::abs(moved.last()[0].toInt() - 50) <= 3, "whatever the axis counts in");
}

void ProfileTest::movesItsCursorByKeys() {
    const TrackRecord track = mountain(101, 50);
    ProfileView view;
    view.setTrack(&track);
    QTest::keyClick(&view, Qt::Key_End);
    QCOMPARE(view.cursorMark(), 100);
    QTest::keyClick(&view, Qt::Key_Right);
    QCOMPARE(view.cursorMark(), 100);
    QTest::keyClick(&view, Qt::Key_PageUp);
    QCOMPARE(view.cursorMark(), 95);
    QTest::keyClick(&view, Qt::Key_Home);
    QTest::keyClick(&view, Qt::Key_Left);
    QCOMPARE(view.cursorMark(), 0);
    view.setTrack(nullptr);
    QCOMPARE(view.cursorMark(), -1);
    QTest::keyClick(&view, Qt::Key_End);
    QCOMPARE(view.cursorMark(), -1);
}

void ProfileTest::saysThatThereAreNoAltitudes() {
    TrackRecord track = mountain(3, 1);
    for (TrackPointRecord& point : track.points) {
        point.altitude.reset();
    }
    ProfileView view;
    view.setTrack(&track);
    QVERIFY(view.profile().isEmpty());
    QVERIFY(view.accessibleDescription().contains(QStringLiteral("no altitudes")));
    QVERIFY(!view.grab().isNull());
}

}  // namespace
}  // namespace marlune::desktop

QTEST_MAIN(marlune::desktop::ProfileTest)
#include "ProfileTest.moc"
