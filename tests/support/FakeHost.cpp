#include "support/FakeHost.h"

#include <cmath>
#include <sstream>
#include <stdexcept>

#include "base/DateText.h"

namespace marlune {
namespace {

constexpr double kSecondsPerDay = 86400.0;

double seconds(std::int64_t microseconds) {
    return static_cast<double>(microseconds) / 1e6;
}

}  // namespace

std::string boxText(BoxIcon icon, const std::string& text) {
    static const std::map<BoxIcon, std::string> kNames = {{BoxIcon::critical, "critical: "},
                                                          {BoxIcon::exclamation, "exclamation: "},
                                                          {BoxIcon::information, "information: "},
                                                          {BoxIcon::none, "none: "}};
    return kNames.at(icon) + text;
}

void FakeHost::advance(double seconds) {
    const std::int64_t step = std::llround(seconds * 1e6);
    if (step > 0) {
        elapsedMicroseconds_ += step;
        questionsSinceMove_ = 0;
    }
}

double FakeHost::elapsed() const {
    return seconds(elapsedMicroseconds_);
}

void FakeHost::setNow(double date) {
    startDate_ = date;
    startMicroseconds_ = elapsedMicroseconds_;
}

const TempFolder& FakeHost::documents() {
    if (!documents_) {
        documents_ = std::make_unique<TempFolder>();
    }
    return *documents_;
}

void FakeHost::createTraceFolder() {
    std::filesystem::create_directory(documents().path() / "Palimor");
}

std::string FakeHost::traceText() {
    return documents().read("Palimor/OcxDebug.txt");
}

std::vector<std::string> FakeHost::traced() {
    // A traced sentence may hold a line end of its own: only numbered lines begin a new one.
    std::vector<std::string> lines;
    std::istringstream text(traceText());
    for (std::string row; std::getline(text, row);) {
        if (!row.empty() && row.back() == '\r') {
            row.pop_back();
        }
        const std::size_t colon = row.find_first_not_of("0123456789");
        if (colon != std::string::npos && colon > 0 && row[colon] == ':') {
            lines.push_back(row.substr(colon + 1));
        }
    }
    return lines;
}

std::vector<std::string> FakeHost::boxTexts() const {
    std::vector<std::string> texts;
    texts.reserve(boxes.size());
    for (const Box& box : boxes) {
        texts.push_back(boxText(box.icon, box.text));
    }
    return texts;
}

void FakeHost::messageBox(const std::string& text, BoxIcon icon) {
    boxes.push_back({text, icon});
    if (onMessageBox) {
        onMessageBox({text, icon});
    }
}

std::string FakeHost::chooseFile(const std::string& defaultExtension,
                                 const std::string& startFolder) {
    fileQuestions.push_back({defaultExtension, startFolder});
    if (fileAnswers.empty()) {
        return {};
    }
    std::string answer = std::move(fileAnswers.front());
    fileAnswers.pop_front();
    return answer;
}

void FakeHost::processEvents() {
    ++eventRounds;
    if (onProcessEvents) {
        onProcessEvents();
    }
}

void FakeHost::pause(double seconds) {
    if (!stopRequested()) {
        advance(seconds);
    }
}

double FakeHost::secondsClock() {
    constexpr std::int64_t kStandsStill = 20'000'000;
    if (++questionsSinceMove_ > kStandsStill) {
        throw std::logic_error("the clock is polled but nothing lets time pass");
    }
    const double midnight = std::floor(startDate_);
    return (startDate_ - midnight) * kSecondsPerDay +
           seconds(elapsedMicroseconds_ - startMicroseconds_);
}

double FakeHost::now() {
    return startDate_ + seconds(elapsedMicroseconds_ - startMicroseconds_) / kSecondsPerDay;
}

std::string FakeHost::dateText(double date) {
    return formatDate(date);
}

std::string FakeHost::portDevice(int number) {
    const auto bound = ports.find(number);
    return bound != ports.end() ? bound->second : "/fake/COM" + std::to_string(number);
}

}  // namespace marlune
