// The window: puts its parts together, and hands on what each of them tells the others.
#pragma once

#include <QtCore/QTemporaryDir>
#include <QtWidgets/QMainWindow>
#include <optional>

#include "desktop/Actions.h"
#include "desktop/Options.h"
#include "desktop/map/TileLayer.h"
#include "desktop/receivers/ReceiverFinder.h"
#include "desktop/receivers/ReceiverModel.h"
#include "desktop/records/Collection.h"
#include "desktop/records/Files.h"
#include "desktop/session/Session.h"
#include "marlune/qt/Units.h"
#include "words/Speech.h"

class QProgressBar;
class QPushButton;
class QSplitter;

namespace marlune::desktop {

class LivePanel;
class LogPanel;
class MapPanel;
class NoticeBar;
class ProfileView;
class ReceiverPanel;
class RecordTabs;
class SendDialog;

class MainWindow : public QMainWindow {
    Q_OBJECT

public:
    explicit MainWindow(const Options& options);
    ~MainWindow() override;

    // Its parts, for whoever drives it.
    [[nodiscard]] const Actions& actions() const { return actions_; }
    [[nodiscard]] Session& session() const { return *session_; }
    [[nodiscard]] Collection& collection() { return collection_; }
    [[nodiscard]] ReceiverModel& receivers() { return receivers_; }
    [[nodiscard]] ReceiverPanel& receiverPanel() const { return *receiverPanel_; }
    [[nodiscard]] RecordTabs& tabs() const { return *tabs_; }
    [[nodiscard]] LivePanel& live() const { return *live_; }
    [[nodiscard]] MapPanel& mapPanel() const { return *map_; }
    [[nodiscard]] ProfileView& profile() const { return *profile_; }
    [[nodiscard]] LogPanel& log() const { return *log_; }
    [[nodiscard]] NoticeBar& notice() const { return *notice_; }
    [[nodiscard]] QProgressBar& progress() const { return *progress_; }
    [[nodiscard]] qt::Units units() const;

    void openFile(const QString& path);
    // False after saying why.
    bool saveTo(const QString& path);
    // The question whether to send what is shown; it stays open.
    SendDialog* askToSend();
    void setTiles(const TileSource& source);

protected:
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void layOut();
    void connectActions();
    void connectReceivers();
    void connectSession();
    void connectRecords();
    void connectControl();
    void restore();
    void remember() const;
    void chooseAtStart(const Options& options);

    void connectTo(const Receiver& receiver);
    void showState(Session::State state);
    void showRecords();
    void showTrack(int track);
    void showFix(const FixRecord& fix);
    void tell(Session::Tone tone, const QString& text);
    void setUnits(qt::Units units);
    void takeFile(const QString& path, const Records& records, const QStringList& remarks);
    void chooseAndOpen();
    void chooseAndSave();
    void chooseTiles();
    void send(GpxKind kind);
    void showAbout();

    words::Speech say_;
    Actions actions_;
    ReceiverModel receivers_;
    ReceiverFinder finder_;
    Collection collection_;
    FileReader reader_;
    QTemporaryDir folder_;  // the trace's, and of what is sent without being a file
    TileLayer* tiles_;
    qt::GpsControlWidget* control_;
    Session* session_;
    ReceiverPanel* receiverPanel_;
    RecordTabs* tabs_;
    LivePanel* live_;
    MapPanel* map_;
    ProfileView* profile_;
    LogPanel* log_;
    NoticeBar* notice_;
    QProgressBar* progress_;
    QPushButton* cancel_;
    QSplitter* columns_;
    QSplitter* right_;
    std::optional<Receiver> wanted_;      // to connect to when its family is known
    std::optional<Rehearsal> rehearsal_;  // of the question that is open
    bool sendsWhatIsRead_ = false;        // the file that is being read was dropped to be sent
};

}  // namespace marlune::desktop
