// What the host sends: the records of an upload file, and what of the file was no record.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "host/TransferLog.h"

namespace marlune {

// How the reading of an upload file went.
struct FileReading {
    bool good = false;     // there is something to send
    int leftOut = 0;       // lines that begin as records and were not taken
    int firstLeftOut = 0;  // the first of them, from 1
    std::string detail;    // the system's words when it does not open the file

    explicit operator bool() const { return good; }
};

// Whether every line of the file was understood, be it as no record.
inline bool isReadable(const FileReading& reading) {
    return reading.detail.empty() && reading.leftOut == 0;
}

template <class Record>
struct Upload {
    std::vector<Record> records = {};
    std::string path = {};  // the host's file, which the records were read from
    FileReading reading = {};
};

// Tells a transfer's report what did not make it from the file.
inline void reportReading(TransferLog& log, const FileReading& reading) {
    log->leftOut = reading.leftOut;
    log->firstLeftOut = reading.firstLeftOut;
    log->detail = reading.detail;
}

}  // namespace marlune
