// A pseudo-terminal as the line between a host program and a virtual receiver: the host opens the
// path as it would open a serial port, this class is the receiver's end of the cable. Linux.
//
// The host may close and reopen the path as often as it likes. As on a real line, what is said
// while nobody has the path open is lost, and what a host left unread is gone when it closes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace marlune::receivers {

class PtyLine {
public:
    // Opens a pty in raw mode at that speed. With a link, makes a symbolic link of that name to it,
    // replacing a symbolic link that is there but nothing else. Throws std::system_error.
    PtyLine(int baud, std::string link);
    PtyLine(const PtyLine&) = delete;
    PtyLine& operator=(const PtyLine&) = delete;
    // Closes the line and removes the link.
    ~PtyLine();

    // What the host opens: "/dev/pts/4".
    [[nodiscard]] const std::string& path() const { return path_; }

    // The speed that the host has set, in bits per second; 0 when it is none of the usual ones.
    [[nodiscard]] int speed() const;

    // To poll for input, and for room with write().
    [[nodiscard]] int lineFd() const { return master_; }
    // To poll for openings and closings; -1 when the system does not tell.
    [[nodiscard]] int watchFd() const { return watch_; }

    // Takes notice of who has opened and closed the path. Reading does so too.
    void noteOpenings();
    // Appends what the host has written; does not wait. Returns how many bytes came.
    std::size_t read(std::vector<std::uint8_t>& into);
    // Whether what read() just gave may have been written at that speed. That is the host's present
    // one, unless a host has closed the path since the reading before: it may have written, gone
    // and come back at another speed meanwhile, so any speed may have been.
    [[nodiscard]] bool mayHaveRead(int baud) const;

    // Writes as much as there is room for and returns how much that was; does not wait. Everything
    // is taken, and lost, while nobody has the path open.
    [[nodiscard]] std::size_t write(std::span<const std::uint8_t> bytes) const;

    // Whether something written stands there that no host has read yet.
    [[nodiscard]] bool hasUnread() const;

    // Ends the line: the host sees its port disappear, and what it has not read yet with it.
    void hangUp();

private:
    void watchOpenings();
    void makeLink();
    std::size_t takeAll(std::vector<std::uint8_t>& into) const;
    void closeAll();

    int master_ = -1;
    int slave_ = -1;  // kept open, so that a host's closing is no hang-up of the line
    int watch_ = -1;
    int openings_ = 0;        // how often the path is open at present, ours left out
    bool closed_ = false;     // noticed, and what was written before it may not have been read
    bool wasClosed_ = false;  // between the end of the last reading and that of the one before
    std::string path_;
    std::string link_;
};

}  // namespace marlune::receivers
