#include "desktop/session/Session.h"

#include <algorithm>
#include <exception>
#include <utility>

#include "finder/Finder.h"
#include "receivers/BuiltIn.h"
#include "words/Advice.h"
#include "words/Phrases.h"
#include "words/Verdict.h"

namespace marlune::desktop {
namespace {

constexpr const char* kConnect = "gpsConnect";
constexpr const char* kIdent = "getIdent";
constexpr const char* kProtocols = "getProtocoles";

bool isOf(const QString& member, const char* name) {
    return member == QLatin1String(name);
}

Session::Tone toneOf(const words::Verdict& verdict) {
    switch (verdict.success) {
        case words::Success::whole:
            return verdict.doubtful ? Session::Tone::partly : Session::Tone::good;
        case words::Success::partly:
            return Session::Tone::partly;
        case words::Success::none:
            break;
    }
    return Session::Tone::bad;
}

QString joined(const std::vector<std::string>& sentences) {
    QStringList lines;
    for (const std::string& each : sentences) {
        lines.append(QString::fromStdString(each));
    }
    return lines.join(QLatin1Char('\n'));
}

}  // namespace

Session::Session(qt::GpsControlWidget& control, const words::Speech& say, QObject* parent)
    : QObject(parent), control_(control), say_(say) {
    constexpr int kImpatience = 1500;
    impatience_.setSingleShot(true);
    impatience_.setInterval(kImpatience);
    connect(&impatience_, &QTimer::timeout, &control_, &qt::GpsControlWidget::stop);
    // Texts of the receiver's go into files with a point, wherever the user lives.
    control_.setDecimalSeparator(QStringLiteral("."));
    followEvents();
}

Session::~Session() = default;

void Session::followEvents() {
    using Control = qt::GpsControlWidget;
    connect(&control_, &Control::StartDownload, this,
            [this](const QString& /*type*/, int count) { begin(count); });
    connect(&control_, &Control::StartUpload, this,
            [this](const QString& /*type*/, int count) { begin(count); });
    for (const auto item :
         {&Control::WayptData, &Control::TrackHeader, &Control::TrackData, &Control::RouteHeader,
          &Control::RouteData, &Control::RouteLink, &Control::ProxData}) {
        connect(&control_, item, this, &Session::step);
    }
    connect(&control_, &Control::memberEnded, this, &Session::memberEnded);
    connect(&control_, &Control::transferFinished, this, &Session::transferEnded);
    connect(&control_, &Control::connectionChanged, this, [this](bool connected) {
        if (!connected && isConnected()) {
            connectionLost();
        }
    });
}

void Session::setState(State state) {
    if (state != state_) {
        state_ = state;
        Q_EMIT stateChanged(state);
    }
}

QString Session::name() const {
    return receiver_.isVirtual() ? receiver_.title() : identity_.section(QLatin1Char('\n'), 0, 0);
}

Rehearsal Session::rehearsal() const {
    return {control_.lastConnection().protocolCode, protocols_.toStdString()};
}

bool Session::isGuess() const {
    const ConnectionReport report = control_.lastConnection();
    return report.capabilities == CapabilitySource::generic || report.damaged > 0;
}

void Session::plugIn(const Receiver& receiver) {
    QString device = receiver.path();
    if (receiver.isVirtual()) {
        virtual_ = std::make_unique<receivers::BuiltIn>(
            receiver.mark, receiver.path().section(QLatin1Char(':'), 1).toStdString());
        device = QString::fromStdString(virtual_->path());
    }
    const bool isSerial = receiver.isVirtual() || receiver.port.kind == finder::PortKind::serial;
    control_.setNumPort(1);
    control_.setDevice(isSerial ? device : QString());
    control_.SetGpsMark(QString::fromStdString(receiver.mark));
}

void Session::connectTo(const Receiver& receiver) {
    if (state_ != State::free) {
        return;
    }
    receiver_ = receiver;
    try {
        plugIn(receiver);
    } catch (const std::exception& error) {
        Q_EMIT told(Tone::bad, QString::fromUtf8(error.what()));
        return;
    }
    setState(State::connecting);
    control_.gpsConnect();
}

void Session::connectEnded() {
    const ConnectionReport report = control_.lastConnection();
    if (report.isConnected()) {
        control_.getIdent();
        control_.getProtocoles();
        return;
    }
    const bool isWanted = report.outcome != ConnectionOutcome::abandoned;
    unplug();
    if (isWanted) {
        Q_EMIT told(Tone::bad, joined(words::adviceOn(report, receiver_.mark, say_)));
    }
}

void Session::disconnect() {
    waiting_.clear();
    if (state_ == State::connecting) {
        control_.stop();
    }
    if (state_ != State::free) {
        control_.gpsDisconnect();
    }
}

// Behind the end of the connection, so that a virtual receiver hears it.
void Session::connectionLost() {
    waiting_.clear();
    unplug();
}

void Session::unplug() {
    virtual_.reset();
    identity_.clear();
    protocols_.clear();
    setState(State::free);
}

void Session::memberEnded(const QString& member) {
    if (isOf(member, kConnect)) {
        connectEnded();
    } else if (isOf(member, kIdent)) {
        identity_ =
            QString::fromStdString(finder::aboutReceiver(control_.ident().toStdString())).trimmed();
    } else if (isOf(member, kProtocols) && state_ == State::connecting) {
        protocols_ = control_.protocols();
        setState(State::connected);
    }
}

void Session::begin(int announced) {
    done_ = 0;
    total_ = std::max(announced, 0);
    Q_EMIT progressed(done_, total_);
}

void Session::step() {
    ++done_;
    Q_EMIT progressed(done_, total_);
}

void Session::download(std::deque<TransferKind> kinds) {
    if (state_ == State::connected && !kinds.empty()) {
        waiting_ = std::move(kinds);
        setState(State::downloading);
        downloadNext();
    }
}

void Session::downloadNext() {
    const TransferKind kind = waiting_.front();
    waiting_.pop_front();
    begin(0);
    switch (kind) {
        case TransferKind::tracks:
            control_.getTracks();
            return;
        case TransferKind::routes:
            control_.GetRoutes();
            return;
        case TransferKind::proximities:
            control_.getProximites();
            return;
        default:
            control_.getWaypts();
    }
}

void Session::send(GpxKind kind, const QString& path) {
    if (state_ != State::connected) {
        return;
    }
    try {
        upload_ = std::make_unique<words::UploadFile>(path.toStdString(), kind, say_);
    } catch (const std::exception& error) {
        Q_EMIT told(Tone::bad, QString::fromUtf8(error.what()));
        return;
    }
    setState(State::sending);
    begin(0);
    const QString file = QString::fromStdString(upload_->path());
    switch (kind) {
        case GpxKind::waypoints:
            control_.SendWaypts(file);
            break;
        case GpxKind::routes:
            control_.SendRoutes(file);
            break;
        case GpxKind::tracks:
            control_.SendTraces(file);
            break;
    }
}

void Session::startLive() {
    if (state_ == State::connected) {
        setState(State::live);
        control_.StartPvtData();
    }
}

void Session::cancel() {
    waiting_.clear();
    if (state_ == State::live) {
        control_.StopPvtData();
        impatience_.start();
    } else if (state_ == State::connecting) {
        control_.stop();
    } else if (state_ == State::downloading || state_ == State::sending) {
        control_.StopTransfert();
        impatience_.start();
    }
}

void Session::judge(const TransferReport& report) {
    const bool linesSent = upload_ && upload_->keepsLines();
    const words::Verdict verdict = words::judge(report, say_, linesSent);
    tone_ = verdicts_.isEmpty() ? toneOf(verdict) : std::max(tone_, toneOf(verdict));
    verdicts_.append(QString::fromStdString(verdict.text));
}

void Session::transferEnded(const TransferReport& report) {
    impatience_.stop();
    judge(report);
    upload_.reset();
    if (state_ == State::downloading) {
        Q_EMIT downloaded(report.kind);
    }
    const bool gone = report.ending == Ending::deviceGone;
    if (state_ == State::downloading && !waiting_.empty() && !gone) {
        downloadNext();
        return;
    }
    Q_EMIT told(tone_, verdicts_.join(QLatin1Char('\n')));
    verdicts_.clear();
    if (isConnected() && gone) {
        control_.gpsDisconnect();
    } else if (isConnected()) {
        setState(State::connected);
    }
}

}  // namespace marlune::desktop
