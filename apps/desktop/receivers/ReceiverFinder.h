// Looks for receivers on a thread of its own. Listing writes nothing to any port; asking does.
#pragma once

#include <QtCore/QObject>
#include <QtCore/QStringList>
#include <atomic>
#include <thread>
#include <vector>

#include "desktop/receivers/Receiver.h"

namespace marlune::desktop {

class ReceiverFinder : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;
    // Stops what is under way.
    ~ReceiverFinder() override;

    // Folders that count as drives; see SystemHost::addDriveFolder.
    void setDriveFolders(const QStringList& folders) { driveFolders_ = folders; }

    // Lists the ports, and asks those that something is plugged into. Nothing while one runs.
    void list(bool ask);
    // Asks one port for its family, also one of the machine's own.
    void ask(const Receiver& receiver);
    [[nodiscard]] bool isRunning() const { return thread_.joinable(); }

Q_SIGNALS:
    void listed(const std::vector<marlune::desktop::Receiver>& receivers);
    // Somebody answered on a port, or the note says why nobody did.
    void answered(const marlune::desktop::Receiver& receiver);
    void asking(const QString& path);
    void finished();

private:
    class FinderHost;
    template <class Work>
    void start(Work work);
    void join();

    QStringList driveFolders_;
    std::thread thread_;
    std::atomic<bool> stop_ = false;
};

}  // namespace marlune::desktop
