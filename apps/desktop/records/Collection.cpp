#include "desktop/records/Collection.h"

#include <QtCore/QFileInfo>
#include <utility>

namespace marlune::desktop {

bool Collection::isEmpty() const {
    return records_.waypoints.empty() && records_.tracks.empty() && records_.routes.empty() &&
           records_.proximities.empty();
}

void Collection::setFile(const QString& path, Records records) {
    records_ = std::move(records);
    path_ = path;
    title_ = QFileInfo(path).fileName();
    Q_EMIT changed();
}

void Collection::takeDownload(TransferKind kind, const Records& from, const QString& receiver) {
    if (title_ != receiver || !path_.isEmpty()) {
        records_ = Records();
        path_.clear();
        title_ = receiver;
    }
    switch (kind) {
        case TransferKind::waypoints:
            records_.waypoints = from.waypoints;
            break;
        case TransferKind::tracks:
            records_.tracks = from.tracks;
            break;
        case TransferKind::routes:
            records_.routes = from.routes;
            break;
        case TransferKind::proximities:
            records_.proximities = from.proximities;
            break;
        default:
            break;
    }
    Q_EMIT changed();
}

}  // namespace marlune::desktop
