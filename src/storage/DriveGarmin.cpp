#include "storage/DriveGarmin.h"

#include "base/FilePath.h"
#include "storage/Messages.h"

namespace marlune {

Family::Opening DriveGarmin::open() {
    if (!unit_.find(services())) {
        return Opening::absent;
    }
    services().reports.connection.device = pathText(unit_.root());
    services().trace.traceLine(storagetext::kDriveFound);
    connection().protocolCode = "GRM_USB_GPX";
    return Opening::opened;
}

bool DriveGarmin::identify() {
    const bool identified = unit_.identify(services(), connection());
    if (!identified) {
        services().reports.connection.outcome = ConnectionOutcome::otherLanguage;
    }
    return identified;
}

std::string DriveGarmin::getProtocoles() const {
    return storageProtocols(connection());
}

UploadFormat DriveGarmin::uploadFormat() const {
    return storageUploadFormat(connection().protocolCode, connection().decimalSetting);
}

}  // namespace marlune
