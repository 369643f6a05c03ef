// Map tiles from a server that the user named, kept on disk between runs. Off until there is an
// address; without a network the tiles that are on disk are drawn, and the others are missing.
#pragma once

#include <QtCore/QCache>
#include <QtCore/QObject>
#include <QtCore/QRectF>
#include <QtCore/QSet>
#include <QtCore/QUrl>
#include <QtGui/QPixmap>
#include <vector>

#include "desktop/map/Viewport.h"

class QNetworkAccessManager;
class QNetworkReply;
class QPainter;

namespace marlune::desktop {

// One tile of the square world: column x and row y of the level z.
struct TileId {
    int z = 0;
    int x = 0;
    int y = 0;

    friend bool operator==(const TileId&, const TileId&) = default;
};
size_t qHash(const TileId& tile, size_t seed = 0);

struct PlacedTile {
    TileId tile;
    QRectF at;  // on the screen
};

// The tiles that cover the view, at the level whose pixels come nearest to the screen's.
std::vector<PlacedTile> tilesOf(const Viewport& view, double pixelRatio, int deepest = 19);

// Where tiles come from. {z}, {x} and {y} in the address stand for the tile.
struct TileSource {
    QString address;      // "https://tiles.example.org/{z}/{x}/{y}.png"; empty for no tiles
    QString attribution;  // what the maker of the map wants to be read beside it

    // An address of http or https, or of a local file, with the three marks in it.
    [[nodiscard]] bool isUsable() const;
    [[nodiscard]] QUrl urlOf(const TileId& tile) const;
};

class TileLayer : public QObject {
    Q_OBJECT

public:
    // folder: where tiles are kept.
    explicit TileLayer(const QString& folder, QObject* parent = nullptr);

    [[nodiscard]] const TileSource& source() const { return source_; }
    // One that is not usable switches the tiles off.
    void setSource(TileSource source);
    // Draws what is there, and asks for what is not.
    void paint(QPainter& painter, const Viewport& view, double pixelRatio);

Q_SIGNALS:
    // A tile has come, or the source is another.
    void changed();

private:
    void ask(const TileId& tile);
    void take(const TileId& tile, QNetworkReply& reply);
    void paintTile(QPainter& painter, const PlacedTile& placed);

    QNetworkAccessManager* network_;
    TileSource source_;
    QCache<TileId, QPixmap> tiles_;
    QSet<TileId> asked_;  // under way, or failed: asked for once
};

}  // namespace marlune::desktop
