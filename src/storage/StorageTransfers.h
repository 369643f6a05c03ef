// Transfers with a unit that is a drive of GPX files. A download reads every GPX file of the folder
// that the unit fills; an upload writes one GPX file into the folder that the unit reads.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

#include "family/ConnectionState.h"
#include "family/Upload.h"
#include "family/UploadFormat.h"
#include "garmin/records/Route.h"
#include "garmin/records/TrackItem.h"
#include "garmin/records/Waypoint.h"
#include "host/Services.h"
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

    // True when everything was written. The host's upload file names the file on the unit. A file
    // of that name on the unit is replaced, and is left as it was when that fails, which a critical
    // box tells in the system's words.
    bool SendWaypts(const Upload<Waypoint>& upload);
    bool SendRoutes(const Upload<Route>& upload);
    bool SendTraces(const Upload<TrackItem>& upload);

private:
    struct Kind;
    static const Kind kWaypoints;
    static const Kind kTracks;
    static const Kind kRoutes;

    class Delivery;

    bool download(const Kind& kind);
    Records readFolders(const Kind& kind, TransferLog& log);
    [[nodiscard]] std::vector<std::filesystem::path> files() const;
    void addFiles(const std::filesystem::path& folder,
                  std::vector<std::filesystem::path>& files) const;
    bool send(const Kind& kind, const std::vector<std::string>& lines, const Records& records,
              const std::string& path, const FileReading& reading);
    [[nodiscard]] std::optional<std::filesystem::path> target(const std::string& path,
                                                              TransferLog& log) const;
    [[nodiscard]] bool save(const Records& records, const std::filesystem::path& file,
                            TransferLog& log, std::size_t& leftOut) const;
    void showError(const std::system_error& error, TransferLog& log) const;
    [[nodiscard]] Ending endingOfStop() const;
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
