// The host of the tests: its clock moves only when somebody waits, its user is a list of answers,
// and what is shown is kept.
//
// The clock starts at 01/06/2007 12:00:00. pause(), advance() and the silence of a ScriptedPort
// move it; it counts whole microseconds, so sums of 0.1 s stay exact. A loop that polls the clock
// without letting time pass would never end: after very many questions in the same instant
// secondsClock() throws std::logic_error.
#pragma once

#include <atomic>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "marlune/Host.h"
#include "support/TempFolder.h"

namespace marlune {

// A box as logs tell it: "critical: Fichier non trouvé".
std::string boxText(BoxIcon icon, const std::string& text);

class FakeHost : public Host {
public:
    struct Box {
        std::string text;
        BoxIcon icon;
        bool operator==(const Box&) const = default;
    };
    struct FileQuestion {
        std::string defaultExtension;
        std::string startFolder;
    };

    // What the tests arrange.
    std::atomic<bool> stop = false;
    std::function<bool()> onStopRequested;         // answers in place of `stop`
    std::function<void()> onProcessEvents;         // what a user does meanwhile
    std::function<void(const Box&)> onMessageBox;  // told of every box, after it is kept
    std::deque<std::string> fileAnswers;           // of chooseFile, in order; none left: declines
    std::map<int, std::string> ports;              // COM numbers; others are "/fake/COM<n>"
    std::vector<Drive> driveList;
    char separator = '.';

    // What happened.
    std::vector<Box> boxes;
    std::vector<FileQuestion> fileQuestions;
    MousePointer pointer = MousePointer::normal;
    int eventRounds = 0;  // calls of processEvents

    void advance(double seconds);
    // Seconds since the host was made.
    [[nodiscard]] double elapsed() const;
    // Sets the date and time of now() and secondsClock(): days since 30/12/1899. elapsed() keeps
    // counting.
    void setNow(double date);
    // The documents folder, a new empty one. The trace has a file only once it holds "Palimor".
    const TempFolder& documents();
    void createTraceFolder();
    // What the trace file holds, as it stands there (Windows-1252).
    std::string traceText();
    // Its lines without their numbers and line ends.
    std::vector<std::string> traced();
    // The boxes as texts, for comparing whole runs.
    [[nodiscard]] std::vector<std::string> boxTexts() const;

    void messageBox(const std::string& text, BoxIcon icon) override;
    std::string chooseFile(const std::string& defaultExtension,
                           const std::string& startFolder) override;
    void setMousePointer(MousePointer newPointer) override { pointer = newPointer; }
    void processEvents() override;
    bool stopRequested() override { return onStopRequested ? onStopRequested() : stop.load(); }
    void pause(double seconds) override;
    double secondsClock() override;
    double now() override;
    std::string dateText(double date) override;
    char decimalSeparator() override { return separator; }
    std::string lineBreak() override { return "\n"; }
    std::string documentsFolder() override { return documents().path().string(); }
    std::string applicationFolder() override { return "/fake/application"; }
    std::string portDevice(int number) override;
    std::vector<Drive> drives() override { return driveList; }

private:
    std::unique_ptr<TempFolder> documents_;
    double startDate_ = 39234.5;
    std::int64_t elapsedMicroseconds_ = 0;
    std::int64_t startMicroseconds_ = 0;  // of elapsedMicroseconds_, when startDate_ was set
    std::int64_t questionsSinceMove_ = 0;
};

}  // namespace marlune
