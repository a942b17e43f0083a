#pragma once

// What a folder walk hands its files to. The walk belongs to browsing; the read-ahead scanner
// that both browsing and playlists use implements this, so it stands below them both.

#include <cstddef>
#include <string>

namespace jk {

// Receives the accepted files of a walk, in walk order. The walk announces each file as soon as
// it has listed the file's folder, which may be a little ahead of the file's turn, so that a
// scanner can read ahead; it then asks for the files to be scanned one by one in the same order.
class SongScanner {
public:
    virtual ~SongScanner() = default;
    // How many announced files the scanner would like to have ahead of the one it scans. With
    // 0, the walk lists each folder only when the folder's turn comes.
    virtual std::size_t LookAhead() const { return 0; }
    // A file the walk will hand over later. With a look-ahead, called on the walk's planner
    // thread.
    virtual void Announce(std::string path) = 0;
    // Scans the oldest announced file not yet scanned. Called only after the walk has made sure
    // it was not stopped.
    virtual void ScanNext() = 0;
    // Forgets the announced files not yet scanned (the walk ended or was stopped).
    virtual void DropAnnounced() = 0;
};

}  // namespace jk
