// The writers of all formats; see makeRecordWriter.
#pragma once

#include <iosfwd>
#include <memory>

#include "marlune/RecordFiles.h"

namespace marlune {

// Where the namespace of our own elements in GPX files is told apart; docs/marlune-gpx-1.xsd
// describes them.
inline constexpr const char* kGpxExtensions = "urn:marlune:gpx:1";

std::unique_ptr<RecordWriter> makeGpxWriter(std::ostream& out, const FileHead& head);
std::unique_ptr<RecordWriter> makeKmlWriter(std::ostream& out, const FileHead& head);
std::unique_ptr<RecordWriter> makeGeoJsonWriter(std::ostream& out, const FileHead& head);
std::unique_ptr<RecordWriter> makeCsvWriter(std::ostream& out);
std::unique_ptr<RecordWriter> makeLineWriter(std::ostream& out);

}  // namespace marlune
