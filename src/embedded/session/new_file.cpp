#include "embedded/session/new_file.h"

#include <sqlite3.h>

#include <filesystem>
#include <random>
#include <vector>

#include "embedded/catalog/sqlite.h"
#include "embedded/session/journal.h"
#include "foundation/file_path.h"
#include "foundation/text.h"

namespace tavcc::sql {
namespace {

namespace fs = std::filesystem;

constexpr int kPiece = 1 << 16;  // written at once: SQLite takes no more than twice as much

std::string RandomEnding() {
  std::random_device random;
  return Cat(".new-", std::to_string(random()), std::to_string(random()));
}

// A file that is being written, through SQLite's own layer over the system, so that its locks are
// those that SQLite's connections respect.
class UnfinishedFile {
 public:
  explicit UnfinishedFile(const std::string& path)
      : path_(path),
        absolute_(PathText(fs::absolute(PathOf(path)))),
        name_(absolute_ + RandomEnding() + '\0'),
        memory_(static_cast<size_t>(system_->szOsFile)) {
    Check(system_->xOpen(system_, name_.c_str(), file(),
                         SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_EXCLUSIVE |
                             SQLITE_OPEN_MAIN_DB,
                         nullptr),
          "cannot be made");
    open_ = true;
  }
  UnfinishedFile(const UnfinishedFile&) = delete;
  UnfinishedFile& operator=(const UnfinishedFile&) = delete;
  ~UnfinishedFile() {
    Close();
    system_->xDelete(system_, name_.c_str(), 0);
  }

  // Whoever opens the file, under whatever name, waits until it is closed.
  void Lock() {
    for (const int lock : {SQLITE_LOCK_SHARED, SQLITE_LOCK_RESERVED, SQLITE_LOCK_EXCLUSIVE}) {
      Check(file()->pMethods->xLock(file(), lock), "cannot be locked");
    }
  }

  void Write(std::string_view bytes) {
    for (size_t at = 0; at < bytes.size(); at += kPiece) {
      const std::string_view piece = bytes.substr(at, kPiece);
      Check(file()->pMethods->xWrite(file(), piece.data(), static_cast<int>(piece.size()),
                                     static_cast<sqlite3_int64>(at)),
            "cannot be written");
    }
    Check(file()->pMethods->xSync(file(), SQLITE_SYNC_FULL), "cannot be written");
  }

  // Gives the file its name as well; never another file's.
  void Name() {
    std::error_code problem;
    const fs::path own = PathOf(name_.c_str()), wanted = PathOf(absolute_);
    fs::create_hard_link(own, wanted, problem);
    if (!problem) return;
    // Not every disk knows files of two names.
    if (!fs::exists(fs::symlink_status(wanted)))
      fs::rename(own, wanted, problem);
    else
      problem = std::make_error_code(std::errc::file_exists);
    if (!problem) return;
    if (problem == std::errc::file_exists) {
      throw StoreFailure(path_ + ": exists already; it is left as it is");
    }
    throw StoreFailure(path_ + ": cannot be made: " + problem.message());
  }

  // An earlier file's journals must not be played into this one.
  void RemoveJournals() {
    for (const char* ending : kJournalEndings) {
      const std::string journal = absolute_ + ending;
      const int code = system_->xDelete(system_, journal.c_str(), 0);
      if (code == SQLITE_OK || code == SQLITE_IOERR_DELETE_NOENT) continue;
      const std::string reason = Reason();
      throw StoreFailure(path_ + ": cannot be made: the journal " + path_ + ending +
                         " of an earlier file cannot be removed" + reason + TakeNameBack());
    }
  }

  void Close() {
    if (!open_) return;
    open_ = false;
    file()->pMethods->xClose(file());
  }

  // Takes the unfinished file's name away, for good also when the power fails.
  void DropOwnName() {
    const int code = system_->xDelete(system_, name_.c_str(), 1);
    if (code == SQLITE_OK || code == SQLITE_IOERR_DELETE_NOENT) return;
    const std::string reason = Reason();
    throw StoreFailure(path_ + ": cannot be made" + reason + TakeNameBack());
  }

 private:
  // Empty, or what a text about it ends in: on a disk that takes no changes any more the file
  // stays.
  std::string TakeNameBack() {
    if (system_->xDelete(system_, absolute_.c_str(), 0) == SQLITE_OK) return {};
    return "; the file that was made of it cannot be removed either";
  }

  sqlite3_file* file() { return reinterpret_cast<sqlite3_file*>(memory_.data()); }

  std::string Reason() {
    const int number = system_->xGetLastError(system_, 0, nullptr);
    return number == 0 ? "" : ": " + std::system_category().message(number);
  }

  void Check(int code, std::string_view what) {
    if (code == SQLITE_OK) return;
    if (code == SQLITE_FULL) throw StoreFailure(path_ + ": no room is left on the disk");
    throw StoreFailure(Cat(path_, ": ", what, Reason()));
  }

  sqlite3_vfs* const system_ = sqlite3_vfs_find(nullptr);
  const std::string path_;
  const std::string absolute_;
  const std::string name_;
  std::vector<char> memory_;
  bool open_ = false;
};

}  // namespace

void MakeFile(const std::string& path, std::string_view bytes) {
  std::error_code ignored;
  const fs::file_status there = fs::symlink_status(PathOf(path), ignored);
  if (fs::is_symlink(there) && !fs::exists(PathOf(path), ignored)) {
    throw StoreFailure(path + ": is a link to a file that does not exist");
  }
  if (fs::exists(there)) throw StoreFailure(path + ": exists already; it is left as it is");
  UnfinishedFile file(path);
  file.Lock();
  file.Write(bytes);
  file.Name();
  file.RemoveJournals();
  file.Close();
  file.DropOwnName();
}

}  // namespace tavcc::sql
