#include "desktop/receivers/ReceiverFinder.h"

#include <utility>

#include "finder/Finder.h"
#include "marlune/SystemHost.h"

namespace marlune::desktop {
namespace {

Receiver receiverAt(const finder::PortEntry& port) {
    Receiver receiver;
    receiver.port = port;
    receiver.mark = port.mark;
    return receiver;
}

std::vector<Receiver> allReceivers(Host& host) {
    std::vector<Receiver> receivers;
    for (const finder::PortEntry& port : finder::listPorts(host)) {
        if (port.pluggedIn) {
            receivers.push_back(receiverAt(port));
        }
    }
    for (const finder::PortEntry& port : finder::virtualPorts()) {
        receivers.push_back(receiverAt(port));
    }
    return receivers;
}

// The receiver, as it or its silence was heard.
Receiver askOne(finder::Finder& finder, const finder::PortEntry& port) {
    Receiver receiver = receiverAt(port);
    QString skipped;
    finder.onSkip = [&](const finder::PortEntry& /*port*/, const std::string& reason) {
        skipped = QString::fromStdString(reason);
    };
    if (const auto found = finder.ask(port)) {
        receiver.mark = found->mark;
        receiver.identity = QString::fromStdString(found->identity).trimmed();
    } else {
        receiver.note = skipped.isEmpty() ? ReceiverFinder::tr("no receiver answers") : skipped;
    }
    return receiver;
}

}  // namespace

// The system's, which a window that closes can stop.
class ReceiverFinder::FinderHost : public SystemHost {
public:
    FinderHost(const std::atomic<bool>& stop, const QStringList& driveFolders) : stop_(stop) {
        for (const QString& folder : driveFolders) {
            addDriveFolder(folder.toStdString());
        }
    }
    void messageBox(const std::string& /*text*/, BoxIcon /*icon*/) override {}
    bool stopRequested() override { return stop_ || SystemHost::stopRequested(); }

private:
    const std::atomic<bool>& stop_;
};

ReceiverFinder::~ReceiverFinder() {
    stop_ = true;
    if (thread_.joinable()) {
        thread_.join();
    }
}

template <class Work>
void ReceiverFinder::start(Work work) {
    if (isRunning()) {
        return;
    }
    thread_ = std::thread([this, work, folders = driveFolders_] {
        FinderHost host(stop_, folders);
        work(host);
        QMetaObject::invokeMethod(this, [this] { join(); });
    });
}

void ReceiverFinder::join() {
    thread_.join();
    Q_EMIT finished();
}

void ReceiverFinder::list(bool ask) {
    start([this, ask](Host& host) {
        const auto receivers = allReceivers(host);
        QMetaObject::invokeMethod(this, [this, receivers] { Q_EMIT listed(receivers); });
        finder::Finder finder(host);
        finder.onAsk = [this](const finder::PortEntry& port, const std::string& /*mark*/) {
            const QString path = QString::fromStdString(port.path);
            QMetaObject::invokeMethod(this, [this, path] { Q_EMIT asking(path); });
        };
        for (const Receiver& each : receivers) {
            if (ask && !each.isVirtual() && !stop_) {
                const Receiver answer = askOne(finder, each.port);
                QMetaObject::invokeMethod(this, [this, answer] { Q_EMIT answered(answer); });
            }
        }
    });
}

void ReceiverFinder::ask(const Receiver& receiver) {
    start([this, port = receiver.port](Host& host) {
        finder::Finder finder(host);
        finder.all = true;
        const Receiver answer = askOne(finder, port);
        QMetaObject::invokeMethod(this, [this, answer] { Q_EMIT answered(answer); });
    });
}

}  // namespace marlune::desktop
