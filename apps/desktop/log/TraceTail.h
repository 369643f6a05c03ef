// The lines that a growing trace file has got since one looked last.
#pragma once

#include <QtCore/QString>
#include <QtCore/QtGlobal>
#include <utility>

namespace marlune::desktop {

class TraceTail {
public:
    TraceTail() = default;
    explicit TraceTail(QString path) : path_(std::move(path)) {}

    // Whole lines only. A file that has become shorter was begun anew.
    QString next();

private:
    QString path_;
    qint64 read_ = 0;
};

}  // namespace marlune::desktop
