// What the window does with a receiver, through the control on its form: one thing at a time, each
// told when it has ended, in words.
#pragma once

#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QTimer>
#include <deque>
#include <memory>

#include "control/Rehearsal.h"
#include "desktop/receivers/Receiver.h"
#include "marlune/Gpx.h"
#include "marlune/qt/GpsControlWidget.h"
#include "words/Speech.h"
#include "words/UploadFile.h"

namespace marlune::receivers {
class BuiltIn;
}

namespace marlune::desktop {

class Session : public QObject {
    Q_OBJECT

public:
    enum class State {
        free,        // no receiver
        connecting,  // to disconnected or connected
        connected,   // and idle
        downloading,
        sending,
        live  // positions come
    };
    Q_ENUM(State)
    // How good news are.
    enum class Tone { good, partly, bad };
    Q_ENUM(Tone)

    // Both must outlive the session.
    Session(qt::GpsControlWidget& control, const words::Speech& say, QObject* parent = nullptr);
    ~Session() override;

    [[nodiscard]] State state() const { return state_; }
    [[nodiscard]] bool isConnected() const {
        return state_ != State::free && state_ != State::connecting;
    }
    // Of the connected receiver.
    [[nodiscard]] const QString& identity() const { return identity_; }
    [[nodiscard]] const QString& protocols() const { return protocols_; }
    [[nodiscard]] QString name() const;
    // What it keeps of records; to be asked while it is connected.
    [[nodiscard]] Rehearsal rehearsal() const;
    // Its protocols are a guess, or may be misread, so that sending may spoil what it holds.
    [[nodiscard]] bool isGuess() const;

    void connectTo(const Receiver& receiver);
    void disconnect();
    // One after the other: waypoints, tracks, routes, proximities.
    void download(std::deque<TransferKind> kinds);
    // A file of any format that can be read.
    void send(GpxKind kind, const QString& path);
    void startLive();
    // Ends what runs; what came stays.
    void cancel();

Q_SIGNALS:
    void stateChanged(marlune::desktop::Session::State state);
    // total 0: nobody knows how many there are.
    void progressed(int done, int total);
    // The control's records hold what came.
    void downloaded(marlune::TransferKind kind);
    // Sentences for the user, a line each, when what was asked for has ended.
    void told(marlune::desktop::Session::Tone tone, const QString& text);

private:
    void setState(State state);
    void followEvents();
    void begin(int announced);
    void step();
    void downloadNext();
    void memberEnded(const QString& member);
    void connectEnded();
    void connectionLost();
    void transferEnded(const TransferReport& report);
    void judge(const TransferReport& report);
    void plugIn(const Receiver& receiver);
    void unplug();

    qt::GpsControlWidget& control_;
    const words::Speech& say_;
    State state_ = State::free;
    Receiver receiver_;
    std::unique_ptr<receivers::BuiltIn> virtual_;
    QString identity_;
    QString protocols_;
    std::deque<TransferKind> waiting_;
    QStringList verdicts_;  // of the transfers that belong together, and the worst of them
    Tone tone_ = Tone::good;
    std::unique_ptr<words::UploadFile> upload_;
    QTimer impatience_;  // from the polite way of ending a transfer to the other
    int done_ = 0;
    int total_ = 0;
};

}  // namespace marlune::desktop
