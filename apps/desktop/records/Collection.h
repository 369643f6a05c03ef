// The records that the window shows: downloaded, or read from a file.
#pragma once

#include <QtCore/QObject>
#include <QtCore/QString>
#include <memory>

#include "marlune/Records.h"
#include "marlune/Report.h"

namespace marlune::desktop {

class Collection : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    [[nodiscard]] const Records& records() const { return records_; }
    // The receiver's name, or the file's.
    [[nodiscard]] const QString& title() const { return title_; }
    // The file that the records were read from; empty once something else has joined them.
    [[nodiscard]] const QString& path() const { return path_; }
    [[nodiscard]] bool isEmpty() const;

    void setFile(const QString& path, Records records);
    // Replaces the records of that kind. What another receiver or a file gave is dropped first.
    void takeDownload(TransferKind kind, const Records& from, const QString& receiver);

Q_SIGNALS:
    void changed();

private:
    Records records_;
    QString title_;
    QString path_;
};

}  // namespace marlune::desktop
