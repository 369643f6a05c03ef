// What is told of records before they are sent.
#include <QtTest/QTest>
#include <QtWidgets/QDialogButtonBox>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QRadioButton>

#include "desktop/send/SendDialog.h"
#include "desktop/send/SendPreview.h"

namespace marlune::desktop {
namespace {

Records someRecords() {
    Records records;
    for (const char* name : {"A long name", "HOME", "Another long one"}) {
        WaypointRecord record;
        record.name = name;
        record.latitude = 46;
        record.symbol = 150;
        records.waypoints.push_back(record);
    }
    TrackRecord track;
    track.name = "T";
    track.points.resize(2);
    records.tracks.push_back(track);
    return records;
}

QPushButton* sendButton(const SendDialog& dialog) {
    auto* box = dialog.findChild<QDialogButtonBox*>();
    for (QAbstractButton* each : box->buttons()) {
        if (box->buttonRole(each) == QDialogButtonBox::AcceptRole) {
            return qobject_cast<QPushButton*>(each);
        }
    }
    return nullptr;
}

class SendTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void showsWhatChanges();
    void showsWhatCannotBeSent();
    void offersWhatTheReceiverTakes();
    void sendsNothingThatNobodyTakes();
};

void SendTest::showsWhatChanges() {
    const Records records = someRecords();
    SendPreview preview(records, GpxKind::waypoints, Rehearsal("GRM", "A100 D100"));
    QCOMPARE(preview.rowCount(), 3);
    const auto text = [&](int row, int column) {
        return preview.index(row, column).data().toString();
    };
    QCOMPARE(text(0, SendPreview::name), QStringLiteral("A long name"));
    QCOMPARE(text(0, SendPreview::kept), QStringLiteral("A-long"));
    QCOMPARE(text(0, SendPreview::lost), QStringLiteral("name, symbol"));
    QCOMPARE(text(1, SendPreview::lost), QStringLiteral("symbol"));
    QCOMPARE(preview.changed(), 3);
    QVERIFY(preview.summary().contains(QStringLiteral("2 name")));
    QVERIFY(preview.summary().contains(QStringLiteral("3 symbol")));
    const SendPreview lossless(records, GpxKind::waypoints, Rehearsal("GRM", "A100 D108"));
    QVERIFY2(lossless.summary().isEmpty(), qPrintable(lossless.summary()));
}

void SendTest::showsWhatCannotBeSent() {
    SendPreview preview(someRecords(), GpxKind::waypoints, Rehearsal("GRM", "A100 D154"));
    QCOMPARE(preview.unsendable(), 3);
    QVERIFY(preview.index(0, SendPreview::kept).data().toString().contains("cannot"));
}

void SendTest::offersWhatTheReceiverTakes() {
    const Records records = someRecords();
    const Rehearsal rehearsal("MLR", "");
    SendDialog dialog({records, rehearsal, QStringLiteral("an MLR"), false, GpxKind::tracks});
    QCOMPARE(dialog.kind(), std::optional(GpxKind::waypoints));
    int enabled = 0;
    for (const QRadioButton* each : dialog.findChildren<QRadioButton*>()) {
        enabled += each->isEnabled() ? 1 : 0;
    }
    QCOMPARE(enabled, 1);
    QVERIFY(sendButton(dialog)->isEnabled());
}

void SendTest::sendsNothingThatNobodyTakes() {
    Records records = someRecords();
    records.waypoints.clear();
    const Rehearsal rehearsal("MLR", "");
    SendDialog dialog({records, rehearsal, QStringLiteral("an MLR"), false, GpxKind::tracks});
    QVERIFY(!dialog.kind());
    QVERIFY(!sendButton(dialog)->isEnabled());
}

}  // namespace
}  // namespace marlune::desktop

QTEST_MAIN(marlune::desktop::SendTest)
#include "SendTest.moc"
