#include "desktop/MainWindow.h"

#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtCore/QLocale>
#include <QtCore/QMimeData>
#include <QtCore/QSettings>
#include <QtCore/QStandardPaths>
#include <QtGui/QActionGroup>
#include <QtGui/QCloseEvent>
#include <QtGui/QDragEnterEvent>
#include <QtWidgets/QDockWidget>
#include <QtWidgets/QFileDialog>
#include <QtWidgets/QLabel>
#include <QtWidgets/QMenu>
#include <QtWidgets/QMessageBox>
#include <QtWidgets/QProgressBar>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QSplitter>
#include <QtWidgets/QStatusBar>
#include <QtWidgets/QVBoxLayout>
#include <exception>
#include <utility>

#include "desktop/NoticeBar.h"
#include "desktop/log/LogPanel.h"
#include "desktop/map/MapPanel.h"
#include "desktop/map/TileDialog.h"
#include "desktop/profile/ProfileView.h"
#include "desktop/receivers/ReceiverPanel.h"
#include "desktop/records/LivePanel.h"
#include "desktop/records/RecordTabs.h"
#include "desktop/send/SendDialog.h"
#include "marlune/Version.h"

namespace marlune::desktop {
namespace {

// What the settings remember.
constexpr const char* kGeometry = "window/geometry";
constexpr const char* kState = "window/state";
constexpr const char* kColumns = "window/columns";
constexpr const char* kRight = "window/right";
constexpr const char* kTab = "window/tab";
constexpr const char* kUnits = "units";
constexpr const char* kTiles = "tiles/address";
constexpr const char* kAttribution = "tiles/attribution";
constexpr const char* kReceiver = "receiver";
constexpr const char* kFolder = "folder";

QString folderOf(QStandardPaths::StandardLocation location, const char* name) {
    return QStandardPaths::writableLocation(location) + QLatin1Char('/') + QLatin1String(name);
}

QString rememberedFolder() {
    return QSettings()
        .value(QLatin1String(kFolder),
               QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation))
        .toString();
}

void rememberFolder(const QString& path) {
    QSettings().setValue(QLatin1String(kFolder), QFileInfo(path).absolutePath());
}

// The trace goes into a folder of this run's own, which ends with it.
constexpr const char* kTraceFile = "Palimor/OcxDebug.txt";

qt::GpsControlWidget* makeControl(const QTemporaryDir& folder) {
    auto* control = new qt::GpsControlWidget;
    QDir(folder.path()).mkpath(QFileInfo(QLatin1String(kTraceFile)).path());
    control->setDocumentsFolder(folder.path());
    return control;
}

qt::Units usualUnits() {
    return QLocale::system().measurementSystem() == QLocale::MetricSystem ? qt::Units::metric
                                                                          : qt::Units::imperial;
}

}  // namespace

MainWindow::MainWindow(const Options& options)
    : say_(options.language),
      actions_(*this),
      tiles_(new TileLayer(folderOf(QStandardPaths::CacheLocation, "tiles"), this)),
      control_(makeControl(folder_)),
      session_(new Session(*control_, say_, this)),
      receiverPanel_(new ReceiverPanel(receivers_, *control_)),
      tabs_(new RecordTabs),
      live_(new LivePanel),
      map_(new MapPanel(*tiles_)),
      profile_(new ProfileView),
      log_(new LogPanel),
      notice_(new NoticeBar),
      progress_(new QProgressBar),
      cancel_(new QPushButton(tr("Cancel"))),
      columns_(new QSplitter),
      right_(new QSplitter(Qt::Vertical)) {
    setAcceptDrops(true);
    layOut();
    connectActions();
    connectReceivers();
    connectSession();
    connectControl();
    connectRecords();
    restore();
    showState(Session::State::free);
    for (const QString& folder : options.drives) {
        control_->addDriveFolder(folder);
    }
    finder_.setDriveFolders(options.drives);
    finder_.list(false);
    chooseAtStart(options);
}

// Before the parts that it tells.
MainWindow::~MainWindow() {
    delete session_;
    delete control_;
}

void MainWindow::layOut() {
    tabs_->addTab(live_, tr("&Live"));
    right_->addWidget(map_);
    right_->addWidget(profile_);
    right_->setStretchFactor(0, 1);
    columns_->addWidget(receiverPanel_);
    columns_->addWidget(tabs_);
    columns_->addWidget(right_);
    columns_->setStretchFactor(2, 1);
    columns_->setSizes({250, 400, 550});
    auto* centre = new QWidget;
    auto* column = new QVBoxLayout(centre);
    column->addWidget(notice_);
    column->addWidget(columns_, 1);
    setCentralWidget(centre);

    auto* dock = new QDockWidget(tr("Log"), this);
    dock->setObjectName(QStringLiteral("log"));
    dock->setWidget(log_);
    addDockWidget(Qt::BottomDockWidgetArea, dock);
    dock->hide();
    actions_.view->addSeparator();
    actions_.view->addAction(dock->toggleViewAction());
    dock->toggleViewAction()->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_L));

    progress_->setAccessibleName(tr("Progress"));
    progress_->setMaximumWidth(320);
    statusBar()->addPermanentWidget(progress_);
    statusBar()->addPermanentWidget(cancel_);
    resize(1240, 760);
    resizeDocks({dock}, {160}, Qt::Vertical);
}

void MainWindow::connectActions() {
    const auto on = [this](QAction* action, auto slot) {
        connect(action, &QAction::triggered, this, slot);
    };
    on(actions_.open, &MainWindow::chooseAndOpen);
    on(actions_.save, &MainWindow::chooseAndSave);
    on(actions_.quit, &QWidget::close);
    on(actions_.refresh, [this] { finder_.list(true); });
    on(actions_.downloadAll, [this] {
        session_->download({TransferKind::waypoints, TransferKind::tracks, TransferKind::routes});
    });
    on(actions_.downloadWaypoints, [this] { session_->download({TransferKind::waypoints}); });
    on(actions_.downloadTracks, [this] { session_->download({TransferKind::tracks}); });
    on(actions_.downloadRoutes, [this] { session_->download({TransferKind::routes}); });
    on(actions_.send, [this] { askToSend(); });
    on(actions_.cancel, [this] { session_->cancel(); });
    on(actions_.fit, [this] { map_->map().fit(); });
    on(actions_.tiles, &MainWindow::chooseTiles);
    on(actions_.about, &MainWindow::showAbout);
    on(actions_.aboutQt, [this] { QMessageBox::aboutQt(this); });
    connect(cancel_, &QPushButton::clicked, session_, &Session::cancel);
    connect(actions_.units, &QActionGroup::triggered, this, [this](const QAction* action) {
        setUnits(static_cast<qt::Units>(action->data().toInt()));
    });
}

void MainWindow::connectReceivers() {
    connect(receiverPanel_, &ReceiverPanel::refreshAsked, this, [this] { finder_.list(true); });
    connect(receiverPanel_, &ReceiverPanel::connectAsked, this, &MainWindow::connectTo);
    connect(receiverPanel_, &ReceiverPanel::disconnectAsked, session_, &Session::disconnect);
    connect(&finder_, &ReceiverFinder::listed, this, [this](const std::vector<Receiver>& all) {
        const auto chosen = receiverPanel_->chosen();
        receivers_.setReceivers(all);
        receiverPanel_->choose(chosen ? chosen->path()
                                      : QSettings().value(QLatin1String(kReceiver)).toString());
        receiverPanel_->setLooking(true);
    });
    connect(&finder_, &ReceiverFinder::asking, this,
            [this](const QString& path) { statusBar()->showMessage(tr("Asking %1 …").arg(path)); });
    connect(&finder_, &ReceiverFinder::answered, this, [this](const Receiver& receiver) {
        receivers_.update(receiver);
        if (wanted_ && wanted_->path() == receiver.path()) {
            wanted_.reset();
            if (receiver.mark.empty()) {
                tell(Session::Tone::bad,
                     QStringLiteral("%1: %2").arg(receiver.path(), receiver.note));
            } else {
                session_->connectTo(receiver);
            }
        }
    });
    connect(&finder_, &ReceiverFinder::finished, this, [this] {
        statusBar()->clearMessage();
        receiverPanel_->setLooking(false);
        if (wanted_) {  // asked for while another search ran
            finder_.ask(*wanted_);
        }
    });
}

void MainWindow::connectTo(const Receiver& receiver) {
    QSettings().setValue(QLatin1String(kReceiver), receiver.path());
    notice_->hide();
    if (receiver.mark.empty()) {
        wanted_ = receiver;
        finder_.ask(receiver);
    } else {
        session_->connectTo(receiver);
    }
}

void MainWindow::connectSession() {
    connect(session_, &Session::stateChanged, this, &MainWindow::showState);
    connect(session_, &Session::told, this, &MainWindow::tell);
    connect(session_, &Session::progressed, this, [this](int done, int total) {
        progress_->setRange(0, total);
        progress_->setValue(done);
        progress_->setFormat(total > 0 ? tr("%v of %m") : tr("%v"));
    });
    connect(session_, &Session::downloaded, this, [this](TransferKind kind) {
        collection_.takeDownload(kind, *control_->records(), session_->name());
    });
    connect(live_, &LivePanel::startAsked, session_, &Session::startLive);
    connect(live_, &LivePanel::stopAsked, session_, &Session::cancel);
    connect(live_, &LivePanel::followingChanged, this,
            [this](bool following) { map_->map().setFollowing(following); });
}

void MainWindow::connectControl() {
    using Control = qt::GpsControlWidget;
    connect(control_, &Control::messageBox, this, [this](const QString& text, int icon) {
        log_->add(text);
        const bool bad = icon == QMessageBox::Critical;
        notice_->show(bad ? Session::Tone::bad : Session::Tone::partly, text);
    });
    connect(control_, &Control::GpsInfo, this, [this](const QString& text) {
        log_->add(text);
        statusBar()->showMessage(text);
    });
    connect(control_, &Control::fixReceived, this, &MainWindow::showFix);
    log_->setTraceFile(folder_.filePath(QLatin1String(kTraceFile)));
    connect(log_, &LogPanel::tracingChanged, control_, &Control::setDebug);
}

void MainWindow::connectRecords() {
    connect(&collection_, &Collection::changed, this, &MainWindow::showRecords);
    connect(&reader_, &FileReader::finished, this,
            [this](const QString& path, const std::shared_ptr<Records>& records,
                   const QStringList& remarks) { takeFile(path, *records, remarks); });
    connect(&reader_, &FileReader::failed, this,
            [this](const QString& path, const QString& reason) {
                tell(Session::Tone::bad, QStringLiteral("%1: %2").arg(path, reason));
            });
    connect(tabs_, &RecordTabs::trackChosen, this, &MainWindow::showTrack);
    connect(tabs_, &RecordTabs::routeChosen, &map_->map(), &MapCanvas::chooseRoute);
    connect(tabs_, &RecordTabs::waypointChosen, &map_->map(), &MapCanvas::choosePlace);
    connect(&map_->map(), &MapCanvas::placeClicked, tabs_, &RecordTabs::chooseWaypoint);
    const auto mark = [this](int point) {
        const int track = tabs_->chosenTrack();
        if (track < 0 || point < 0) {
            map_->map().setCursorPosition(std::nullopt);
            return;
        }
        const auto& its = collection_.records().tracks[static_cast<std::size_t>(track)].points;
        const TrackPointRecord& at = its[static_cast<std::size_t>(point)];
        map_->map().setCursorPosition(GeoPoint{at.latitude, at.longitude});
    };
    connect(profile_, &ProfileView::cursorMoved, this, mark);
    connect(tabs_, &RecordTabs::trackPointChosen, this, mark);
}

void MainWindow::showState(Session::State state) {
    using State = Session::State;
    const bool idle = state == State::connected;
    const bool runs = session_->isConnected() && !idle;
    receiverPanel_->setState(state == State::free         ? ReceiverPanel::State::free
                             : state == State::connecting ? ReceiverPanel::State::connecting
                                                          : ReceiverPanel::State::connected);
    receiverPanel_->setReceiver(session_->identity(), session_->protocols());
    for (QAction* download : actions_.downloads()) {
        download->setEnabled(idle);
    }
    actions_.save->setEnabled(!collection_.isEmpty());
    actions_.send->setEnabled(idle && !collection_.isEmpty());
    actions_.cancel->setEnabled(runs || state == State::connecting);
    cancel_->setVisible(actions_.cancel->isEnabled());
    progress_->setVisible(state == State::downloading || state == State::sending);
    live_->setRunning(state == State::live);
    live_->setAvailable(idle);
}

void MainWindow::showRecords() {
    map_->map().setRecords(collection_.records());
    tabs_->setRecords(collection_.records());
    setWindowTitle(collection_.title());
    showState(session_->state());
}

void MainWindow::showTrack(int track) {
    const auto& tracks = collection_.records().tracks;
    const bool is = track >= 0 && static_cast<std::size_t>(track) < tracks.size();
    profile_->setTrack(is ? &tracks[static_cast<std::size_t>(track)] : nullptr);
    map_->map().chooseTrack(is ? track : -1);
}

void MainWindow::showFix(const FixRecord& fix) {
    live_->setFix(fix);
    map_->map().setFollowing(live_->isFollowing());
    map_->map().addToTrail({fix.latitude, fix.longitude});
}

void MainWindow::tell(Session::Tone tone, const QString& text) {
    log_->add(text);
    notice_->show(tone, text);
}

qt::Units MainWindow::units() const {
    const QAction* checked = actions_.units->checkedAction();
    return checked == nullptr ? usualUnits() : static_cast<qt::Units>(checked->data().toInt());
}

void MainWindow::setUnits(qt::Units units) {
    for (QAction* each : actions_.units->actions()) {
        each->setChecked(each->data().toInt() == static_cast<int>(units));
    }
    tabs_->setUnits(units);
    live_->setUnits(units);
    map_->map().setUnits(units);
    profile_->setUnits(units);
}

void MainWindow::openFile(const QString& path) {
    statusBar()->showMessage(tr("Reading %1 …").arg(path));
    reader_.read(path);
}

void MainWindow::takeFile(const QString& path, const Records& records, const QStringList& remarks) {
    statusBar()->clearMessage();
    collection_.setFile(path, records);
    for (const QString& each : remarks) {
        log_->add(each);
    }
    if (collection_.isEmpty()) {
        tell(Session::Tone::bad, tr("%1 holds no waypoints, tracks or routes").arg(path));
    } else if (!remarks.isEmpty()) {
        notice_->show(Session::Tone::partly, remarks.first());
    } else {
        notice_->hide();
    }
    if (std::exchange(sendsWhatIsRead_, false)) {
        askToSend();
    }
}

bool MainWindow::saveTo(const QString& path) {
    try {
        const std::size_t leftOut = saveFile(collection_.records(), path, collection_.title());
        tell(leftOut == 0 ? Session::Tone::good : Session::Tone::partly,
             leftOut == 0 ? tr("Saved as %1").arg(path)
                          : tr("Saved as %1, without %n that have no position on earth", nullptr,
                               static_cast<int>(leftOut))
                                .arg(path));
        return true;
    } catch (const std::exception& error) {
        tell(Session::Tone::bad,
             QStringLiteral("%1: %2").arg(path, QString::fromUtf8(error.what())));
        return false;
    }
}

void MainWindow::chooseAndOpen() {
    const QString path =
        QFileDialog::getOpenFileName(this, tr("Open a file"), rememberedFolder(), openFilter());
    if (!path.isEmpty()) {
        rememberFolder(path);
        openFile(path);
    }
}

void MainWindow::chooseAndSave() {
    QString filter;
    const QString path = QFileDialog::getSaveFileName(this, tr("Save as"), rememberedFolder(),
                                                      saveFilter(), &filter);
    if (!path.isEmpty()) {
        rememberFolder(path);
        saveTo(withSuffix(path, filter));
    }
}

void MainWindow::setTiles(const TileSource& source) {
    tiles_->setSource(source);
}

void MainWindow::chooseTiles() {
    TileDialog dialog(tiles_->source(), this);
    if (dialog.exec() == QDialog::Accepted) {
        setTiles(dialog.source());
    }
}

SendDialog* MainWindow::askToSend() {
    if (session_->state() != Session::State::connected) {
        return nullptr;
    }
    constexpr int kTracksTab = 1;
    constexpr int kRoutesTab = 2;
    rehearsal_ = session_->rehearsal();
    const int tab = tabs_->currentIndex();
    const GpxKind kind = tab == kTracksTab   ? GpxKind::tracks
                         : tab == kRoutesTab ? GpxKind::routes
                                             : GpxKind::waypoints;
    auto* dialog = new SendDialog(
        {collection_.records(), *rehearsal_, session_->name(), session_->isGuess(), kind}, this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QDialog::accepted, this, [this, dialog] {
        if (const auto chosen = dialog->kind()) {
            send(*chosen);
        }
    });
    dialog->open();
    return dialog;
}

// What is no file becomes one.
void MainWindow::send(GpxKind kind) {
    QString path = collection_.path();
    if (path.isEmpty()) {
        path = folder_.filePath(QStringLiteral("marlune.gpx"));
        if (!saveTo(path)) {
            return;
        }
    }
    session_->send(kind, path);
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event) {
    const QList<QUrl> urls = event->mimeData()->urls();
    if (urls.size() == 1 && urls.first().isLocalFile()) {
        event->acceptProposedAction();
    }
}

void MainWindow::dropEvent(QDropEvent* event) {
    event->acceptProposedAction();
    sendsWhatIsRead_ = session_->state() == Session::State::connected;
    openFile(event->mimeData()->urls().value(0).toLocalFile());
}

void MainWindow::changeEvent(QEvent* event) {
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) {
        update();
    }
}

void MainWindow::showAbout() {
    QMessageBox::about(
        this, tr("About Marlune"),
        tr("Marlune %1 exchanges waypoints, routes and tracks with GPS receivers.\n\n"
           "The virtual receivers in the list are part of the program: with them everything can "
           "be tried.")
            .arg(QString::fromStdString(version())));
}

void MainWindow::restore() {
    const QSettings settings;
    const auto bytes = [&](const char* key) {
        return settings.value(QLatin1String(key)).toByteArray();
    };
    restoreGeometry(bytes(kGeometry));
    restoreState(bytes(kState));
    columns_->restoreState(bytes(kColumns));
    right_->restoreState(bytes(kRight));
    tabs_->setCurrentIndex(settings.value(QLatin1String(kTab), 1).toInt());
    setUnits(static_cast<qt::Units>(
        settings.value(QLatin1String(kUnits), static_cast<int>(usualUnits())).toInt()));
    setTiles({settings.value(QLatin1String(kTiles)).toString(),
              settings.value(QLatin1String(kAttribution)).toString()});
}

void MainWindow::remember() const {
    QSettings settings;
    settings.setValue(QLatin1String(kGeometry), saveGeometry());
    settings.setValue(QLatin1String(kState), saveState());
    settings.setValue(QLatin1String(kColumns), columns_->saveState());
    settings.setValue(QLatin1String(kRight), right_->saveState());
    settings.setValue(QLatin1String(kTab), tabs_->currentIndex());
    settings.setValue(QLatin1String(kUnits), static_cast<int>(units()));
    settings.setValue(QLatin1String(kTiles), tiles_->source().address);
    settings.setValue(QLatin1String(kAttribution), tiles_->source().attribution);
}

void MainWindow::closeEvent(QCloseEvent* event) {
    remember();
    session_->disconnect();
    event->accept();
}

void MainWindow::chooseAtStart(const Options& options) {
    if (!options.file.isEmpty()) {
        openFile(options.file);
    }
    if (options.port.isEmpty()) {
        return;
    }
    Receiver receiver;
    for (const finder::PortEntry& port : finder::virtualPorts()) {
        if (port.path == options.port.toStdString()) {
            receiver.port = port;
            receiver.mark = port.mark;
        }
    }
    if (receiver.port.path.empty()) {
        receiver.port.path = options.port.toStdString();
        receiver.mark = options.mark.toStdString();
        if (options.port == QLatin1String("usb")) {
            receiver.port.kind = finder::PortKind::usb;
            receiver.mark = "GRM_USB";
        }
        receivers_.update(receiver);
    }
    connectTo(receiver);
}

}  // namespace marlune::desktop
