/* Preloaded into a program: lets one of its operations on files fail, or ends the program there.
 *
 *   SHIM_MATCH   only files whose path holds this text
 *   SHIM_AT      the operation, counted from 1; 0 lets all pass
 *   SHIM_DO      kill, tear (kill in the middle of a write), ENOSPC, EIO, EROFS
 *   SHIM_STICKY  1: all operations behind it fail as well
 *   SHIM_COUNT   a file that gets the number of operations when the program ends
 *
 * EIO meets any operation; the others those that change something: opening a file for writing,
 * writing, syncing, cutting off, linking, renaming, deleting. */
#define _GNU_SOURCE
#include <dlfcn.h>
#include <errno.h>
#include <fcntl.h>
#include <signal.h>
#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/types.h>
#include <unistd.h>

enum { kFiles = 1024 };
static char watched[kFiles];
static long operations;
static int failed;

static const char* Setting(const char* name) {
  const char* value = getenv(name);
  return value != NULL ? value : "";
}

static int IsWatched(const char* path) {
  const char* match = Setting("SHIM_MATCH");
  return *match != '\0' && path != NULL && strstr(path, match) != NULL;
}

static int IsWatchedFile(int file) {
  return file >= 0 && file < kFiles && watched[file];
}

/* 0 to go on, or the number of the error to fail with; -1 to tear a write. */
static int Meet(int changes) {
  const char* what = Setting("SHIM_DO");
  if (!changes && strcmp(what, "EIO") != 0) return 0;
  ++operations;
  const long at = atol(Setting("SHIM_AT"));
  const int now = operations == at || (failed && *Setting("SHIM_STICKY") == '1');
  if (at == 0 || !now) return 0;
  failed = 1;
  if (strcmp(what, "kill") == 0) kill(getpid(), SIGKILL);
  if (strcmp(what, "tear") == 0) return -1;
  if (strcmp(what, "ENOSPC") == 0) return ENOSPC;
  return strcmp(what, "EROFS") == 0 ? EROFS : EIO;
}

/* For operations that cannot be done by half. */
static int Fails(int changes) {
  const int error = Meet(changes);
  if (error == -1) kill(getpid(), SIGKILL);
  if (error != 0) errno = error;
  return error != 0;
}

__attribute__((destructor)) static void WriteCount(void) {
  const char* path = Setting("SHIM_COUNT");
  if (*path == '\0') return;
  FILE* file = fopen(path, "w");
  if (file == NULL) return;
  fprintf(file, "%ld", operations);
  fclose(file);
}

#define REAL(name) ((__typeof__(&name))dlsym(RTLD_NEXT, #name))

static int OpenWith(const char* name, const char* path, int flags, mode_t mode) {
  int (*open_file)(const char*, int, ...) = (int (*)(const char*, int, ...))dlsym(RTLD_NEXT, name);
  const int is_watched = IsWatched(path);
  if (is_watched && Fails((flags & (O_WRONLY | O_RDWR | O_CREAT)) != 0)) return -1;
  const int file = open_file(path, flags, mode);
  if (file >= 0 && file < kFiles) watched[file] = (char)is_watched;
  return file;
}

#define OPEN(name)                                    \
  int name(const char* path, int flags, ...) {        \
    va_list rest;                                     \
    va_start(rest, flags);                            \
    const mode_t mode = (mode_t)va_arg(rest, int);    \
    va_end(rest);                                     \
    return OpenWith(#name, path, flags, mode);        \
  }
OPEN(open)
OPEN(open64)

int close(int file) {
  if (file >= 0 && file < kFiles) watched[file] = 0;
  return REAL(close)(file);
}

#define READ(name, type)                                                     \
  ssize_t name(int file, void* bytes, size_t size, type at) {                \
    if (IsWatchedFile(file) && Fails(0)) return -1;                          \
    return REAL(name)(file, bytes, size, at);                                \
  }
READ(pread, off_t)
READ(pread64, off64_t)

#define WRITE(name, type)                                                    \
  ssize_t name(int file, const void* bytes, size_t size, type at) {          \
    const int error = IsWatchedFile(file) ? Meet(1) : 0;                     \
    if (error == -1) {                                                       \
      REAL(name)(file, bytes, size / 2, at);                                 \
      kill(getpid(), SIGKILL);                                               \
    }                                                                        \
    if (error != 0) {                                                        \
      errno = error;                                                         \
      return -1;                                                             \
    }                                                                        \
    return REAL(name)(file, bytes, size, at);                                \
  }
WRITE(pwrite, off_t)
WRITE(pwrite64, off64_t)

ssize_t write(int file, const void* bytes, size_t size) {
  if (IsWatchedFile(file) && Fails(1)) return -1;
  return REAL(write)(file, bytes, size);
}

int fsync(int file) {
  return IsWatchedFile(file) && Fails(1) ? -1 : REAL(fsync)(file);
}

int fdatasync(int file) {
  return IsWatchedFile(file) && Fails(1) ? -1 : REAL(fdatasync)(file);
}

int ftruncate(int file, off_t size) {
  return IsWatchedFile(file) && Fails(1) ? -1 : REAL(ftruncate)(file, size);
}

int ftruncate64(int file, off64_t size) {
  return IsWatchedFile(file) && Fails(1) ? -1 : REAL(ftruncate64)(file, size);
}

int unlink(const char* path) {
  return IsWatched(path) && Fails(1) ? -1 : REAL(unlink)(path);
}

int link(const char* from, const char* to) {
  return IsWatched(to) && Fails(1) ? -1 : REAL(link)(from, to);
}

int rename(const char* from, const char* to) {
  return IsWatched(to) && Fails(1) ? -1 : REAL(rename)(from, to);
}
