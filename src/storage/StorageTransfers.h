// Transfers with a unit that is a drive of GPX files. A download reads every GPX file of the folder
// that the unit fills; an upload writes one GPX file into the folder that the unit reads.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

#include "family/ConnectionState.h"
#include "garmin/UploadFiles.h"
#include "host/Services.h"
#include "marlune/Gpx.h"
#include "storage/StorageUnit.h"

namespace marlune {

class StorageTransfers {
public:
    StorageTransfers(Services& services, StorageUnit& unit, ConnectionState& state)
        : services_(services), unit_(unit), state_(state) {}

    // True when something was delivered. A file that is no GPX is traced and left out.
    bool getWaypts();
    bool getTracks();
    bool GetRoutes();

    // True when everything was written. `path` is the host's upload file, which names the file on
    // the unit; the records were read from it. A file of that name on the unit is replaced, and is
    // left as it was when that fails, which a critical box tells in the system's words.
    bool SendWaypts(std::vector<Waypoint> waypoints, const std::string& path);
    bool SendRoutes(std::vector<Route> routes, const std::string& path);
    bool SendTraces(std::vector<TrackItem> items, const std::string& path);

private:
    struct Kind;
    static const Kind kWaypoints;
    static const Kind kTracks;
    static const Kind kRoutes;

    bool download(const Kind& kind);
    std::vector<std::string> readFolder(GpxKind kind);
    void readFile(GpxReader& reader, const std::filesystem::path& file,
                  std::vector<std::string>& lines);
    bool upload(const Kind& kind, const std::vector<std::string>& lines, const std::string& path);
    [[nodiscard]] std::optional<std::filesystem::path> target(const std::string& path) const;
    [[nodiscard]] bool save(const GpxWriter& writer, const std::filesystem::path& file) const;
    void showError(const std::system_error& error) const;
    void raise(const Kind& kind, std::size_t number, const std::string& line,
               const std::string& sens);
    [[nodiscard]] bool mayGoOn() const;

    Services& services_;
    StorageUnit& unit_;
    ConnectionState& state_;
};

// How upload files are read for such units: they announce no types, and keep track headers.
UploadFormat storageUploadFormat(const std::string& protocolCode,
                                 const std::string& decimalSeparator);

// "Donnees au format GPX - " and the unit's description.
std::string storageProtocols(const ConnectionState& state);

}  // namespace marlune
