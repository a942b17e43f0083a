#pragma once

// The file system as the catalogue's saving sees it: files written whole under a temporary
// name, flushed, and renamed into place. Tests put their own in its place to make a disk full
// or a folder read-only on cue, and to stop a save between any two of its steps.

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "util/FileIo.h"

namespace jk {

// A file being written; nothing is in place until the catalogue renames it.
class FileSink {
public:
    virtual ~FileSink() = default;
    virtual bool Write(std::string_view data) = 0;
    // Flushes to the disk and closes; the reason on failure.
    virtual IoResult Finish() = 0;
};

class CatalogueFiles {
public:
    virtual ~CatalogueFiles() = default;
    virtual bool Exists(const std::string& path) = 0;
    // Creates (or empties) a file for writing; null with `error` set when it cannot.
    virtual std::unique_ptr<FileSink> Create(const std::string& path, std::string& error) = 0;
    // Reads a whole file (for the copies of the backups).
    virtual IoResult Read(const std::string& path, std::string& out) = 0;
    virtual IoResult Rename(const std::string& from, const std::string& to) = 0;
    // A second name for a file (a backup costs no copy); false where the file system has none.
    virtual bool Link(const std::string& /*from*/, const std::string& /*to*/) { return false; }
    virtual bool Remove(const std::string& path) = 0;
    // Makes the renames in a folder durable.
    virtual void SyncFolder(const std::string& folder) = 0;
    // The names in a folder.
    virtual std::vector<std::string> List(const std::string& folder) = 0;
};

// The real file system.
class PosixCatalogueFiles final : public CatalogueFiles {
public:
    bool Exists(const std::string& path) override;
    std::unique_ptr<FileSink> Create(const std::string& path, std::string& error) override;
    IoResult Read(const std::string& path, std::string& out) override;
    IoResult Rename(const std::string& from, const std::string& to) override;
    bool Link(const std::string& from, const std::string& to) override;
    bool Remove(const std::string& path) override;
    void SyncFolder(const std::string& folder) override;
    std::vector<std::string> List(const std::string& folder) override;
};

CatalogueFiles& RealCatalogueFiles();

}  // namespace jk
