// The file that a send command hands to the control: the user's own, or a temporary one, when the
// user's is a GPX file, or holds UTF-8 without the mark by which the control knows it.
#pragma once

#include <filesystem>
#include <functional>
#include <iosfwd>
#include <string>
#include <vector>

#include "marlune/Gpx.h"
#include "words/Speech.h"

namespace marlune::words {

class UploadFile {
public:
    // Throws std::runtime_error, with a text for the user, when the file cannot be read, or is a
    // GPX or CSV file that holds nothing of that kind. What other files hold is the control's to
    // judge.
    UploadFile(const std::string& path, GpxKind kind, const Speech& say);
    UploadFile(const UploadFile&) = delete;
    UploadFile& operator=(const UploadFile&) = delete;
    ~UploadFile();

    [[nodiscard]] const std::string& path() const { return path_; }
    // Whether the lines are those of the user's file, so that their numbers mean his.
    [[nodiscard]] bool keepsLines() const { return keepsLines_; }
    // What the file says and the receiver will not be told, for the user.
    [[nodiscard]] const std::vector<std::string>& remarks() const { return remarks_; }

private:
    void convert(const std::string& file, FileFormat format, GpxKind kind);
    void write(const std::function<void(std::ostream&)>& writeText);

    void removeFolder();

    const Speech& say_;
    std::string path_;
    bool keepsLines_ = true;
    std::vector<std::string> remarks_;
    std::filesystem::path folder_;  // the temporary file's own; empty when there is none
};

}  // namespace marlune::words
