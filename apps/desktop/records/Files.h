// Files of records, as the window opens and saves them.
#pragma once

#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <memory>
#include <thread>

#include "marlune/RecordFiles.h"
#include "marlune/Records.h"

namespace marlune::desktop {

// What a file dialog offers: one entry a format, "GPX (*.gpx)".
QString openFilter();
QString saveFilter();
// The path with the suffix of the chosen entry, when it has none that is known.
QString withSuffix(const QString& path, const QString& filter);

// Throws std::exception with a text for the user. Returns how many records had no position on earth
// and were left out.
std::size_t saveFile(const Records& records, const QString& path, const QString& source);

// Reads files on a thread of its own: a long one keeps nobody waiting. One at a time; a file that
// is asked for meanwhile is read next, and what came before it is dropped.
class FileReader : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;
    ~FileReader() override;

    void read(const QString& path);
    [[nodiscard]] bool isReading() const { return thread_.joinable(); }

Q_SIGNALS:
    void finished(const QString& path, std::shared_ptr<marlune::Records> records,
                  const QStringList& remarks);
    // With a text for the user.
    void failed(const QString& path, const QString& reason);

private:
    struct Outcome;
    void take(const Outcome& outcome);

    std::thread thread_;
    QString next_;
};

}  // namespace marlune::desktop
