// The GPS transfer control on a Qt form.
//
// The widget shows the control's picture, at its size and no other. The control behind it runs on a
// thread of the widget's own, so that no member keeps the user interface waiting: a member's slot
// returns at once, members run one after the other in the order in which they were called, and what
// one gives comes with memberEnded(). The four that end others (StopTransfert, StopPvtData,
// StopNMEA, gpsDisconnect) act inside the member that runs, at its next yield.
//
// Thread: the widget, its slots and its signals belong to the user interface's thread. Nothing
// happens inside a slot: every signal comes from the event loop.
//
// Message boxes of the control, in French, come as messageBox(). When nothing is connected to that
// signal, a QMessageBox is shown, and the control waits for its answer.
//
// The widget may be destroyed at any time outside its signals' handlers; deleteLater() may be
// called anywhere. A member that runs is ended first, as by stop().
#pragma once

#include <QtCore/QString>
#include <QtCore/QVariant>
#include <QtWidgets/QWidget>
#include <memory>
#include <optional>

#include "marlune/Records.h"
#include "marlune/Report.h"
#include "marlune/qt/Export.h"

namespace marlune::qt {

class MARLUNE_QT_EXPORT GpsControlWidget : public QWidget {
    Q_OBJECT
    // "GRM" (at first), "GRM_USB", "MGN", "MGN;9600", "MLR": see GpsControl::SetGpsMark.
    Q_PROPERTY(QString gpsMark READ gpsMark WRITE SetGpsMark NOTIFY gpsMarkChanged)
    // The COM port, 1 (at first) to 40; other numbers are not taken.
    Q_PROPERTY(int numPort READ numPort WRITE setNumPort NOTIFY numPortChanged)
    // What numPort means: "/dev/ttyUSB0". Empty, as at first, for the system's own meaning.
    Q_PROPERTY(QString device READ device WRITE setDevice NOTIFY deviceChanged)
    // Whether the trace file is written: see GpsControl::SetDebug.
    Q_PROPERTY(bool debug READ debug WRITE setDebug NOTIFY debugChanged)
    // What numbers in the text lines are written with: "." or ","; empty, as at first, for the
    // locale's. Other texts are not taken.
    Q_PROPERTY(QString decimalSeparator READ decimalSeparator WRITE setDecimalSeparator NOTIFY
                   decimalSeparatorChanged)
    // Seconds that a member waits in vain for the receiver, 30 at first; 0 for ever.
    Q_PROPERTY(double patience READ patience WRITE setPatience NOTIFY patienceChanged)
    Q_PROPERTY(bool connected READ isConnected NOTIFY connectionChanged)
    // Whether a member runs or waits for its turn.
    Q_PROPERTY(bool busy READ isBusy NOTIFY busyChanged)

public:
    explicit GpsControlWidget(QWidget* parent = nullptr);
    ~GpsControlWidget() override;

    [[nodiscard]] QString gpsMark() const;
    [[nodiscard]] int numPort() const;
    [[nodiscard]] QString device() const;
    [[nodiscard]] bool debug() const;
    [[nodiscard]] QString decimalSeparator() const;
    [[nodiscard]] double patience() const;
    [[nodiscard]] bool isConnected() const;
    [[nodiscard]] bool isBusy() const;

    // As they were when the last member ended; see GpsControl for their life. A copy that is shared
    // with nobody else's changes.
    [[nodiscard]] std::shared_ptr<const Records> records() const;
    [[nodiscard]] TransferReport lastTransfer() const;
    [[nodiscard]] ConnectionReport lastConnection() const;
    // What the last getIdent and getProtocoles gave.
    [[nodiscard]] QString ident() const;
    [[nodiscard]] QString protocols() const;

    // A folder that counts as a mounted drive: see SystemHost::addDriveFolder.
    void addDriveFolder(const QString& folder);
    // Where the trace file is written: its folder Palimor must exist. To be called before the first
    // member and the first property.
    void setDocumentsFolder(const QString& folder);
    // See GpsControl::setDateReference, seconds since 1970-01-01 00:00:00 UTC.
    void setDateReference(std::optional<double> reference);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

public Q_SLOTS:
    // The 22 members under their own names; GpsControl.h is their manual.
    void GetTime();
    void SetDebug(const QString& value);
    void SetGpsMark(const QString& value);
    void StartPvtData();
    void gpsConnect();
    void gpsDisconnect();
    void getTracks();
    void getWaypts();
    void GetRoutes();
    void getIdent();
    void getProximites();
    void getPosition();
    void setNumPort(int value);
    void StopPvtData();
    void StopTransfert();
    void SendWaypts(const QString& Fic);
    void getProtocoles();
    void SendRoutes(const QString& Fic);
    void SendTraces(const QString& Fic);
    void StartNMEA(const QString& NMEACode, int Delai);
    void StopNMEA();
    void ResetComBuffers();

    void setDevice(const QString& device);
    void setDebug(bool on);
    void setDecimalSeparator(const QString& separator);
    void setPatience(double seconds);
    // Ends the member that runs within 200 ms, whatever it waits for, and forgets those that wait
    // for their turn: these end with an invalid result.
    void stop();

Q_SIGNALS:
    // The sixteen events under their own names; GpsControlEvents.h is their manual.
    void StartDownload(const QString& DataType, int nbitem, const QString& Entete);
    void StartUpload(const QString& DataType, int nbitem, const QString& Entete);
    void EndDownload(const QString& DataType);
    void EndUpload(const QString& DataType);
    void GpsInfo(const QString& txtInfo);
    void TrackData(int numitem, const QString& trackItem, const QString& sens);
    void TrackHeader(int numitem, const QString& TrkHeader, const QString& sens);
    void WayptData(int numitem, const QString& WayptItem, const QString& sens);
    void RouteHeader(int numitem, const QString& HeaderItem, const QString& sens);
    void RouteData(int numitem, const QString& RouteItem, const QString& sens);
    void RouteLink(int numitem, const QString& RouteLinkItem, const QString& sens);
    void ProxData(int numitem, const QString& ProxItem, const QString& sens);
    void Startpvt(const QString& Entete);
    void PvtData(const QString& PvtItem);
    void EndPvt();
    void PhraseNMEA(const QString& Chaine);

    // The records beside the events' texts, directly behind them. Of tracks and routes the head
    // comes without points.
    void waypointReceived(const marlune::WaypointRecord& waypoint);
    void proximityReceived(const marlune::WaypointRecord& waypoint);
    void trackReceived(const marlune::TrackRecord& track);
    void trackPointReceived(const marlune::TrackPointRecord& point);
    void routeReceived(const marlune::RouteRecord& route);
    void routePointReceived(const marlune::RoutePointRecord& point);
    void fixReceived(const marlune::FixRecord& fix);

    // A transfer (see GpsControl::lastTransfer) has ended; records() is up to date.
    void transferFinished(const marlune::TransferReport& report);
    // gpsConnect has ended, or the connection has; lastConnection() tells how it went.
    void connectionChanged(bool connected);
    // A member has ended: its name and what it gave (bool, double, QString), invalid for members
    // that give nothing and for those that stop() kept from running.
    void memberEnded(const QString& member, const QVariant& result);
    // A box of the control's: its icon as QMessageBox::Icon.
    void messageBox(const QString& text, int icon);
    void busyChanged(bool busy);
    // The control shows or hides its hourglass.
    void waitingChanged(bool waiting);

    void gpsMarkChanged(const QString& gpsMark);
    void numPortChanged(int numPort);
    void deviceChanged(const QString& device);
    void debugChanged(bool debug);
    void decimalSeparatorChanged(const QString& decimalSeparator);
    void patienceChanged(double patience);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    class Engine;
    std::unique_ptr<Engine> engine_;
};

}  // namespace marlune::qt
