// torture-faults: makes one call of a program to the system, or one allocation, fail.
//
// Preloaded into the program. KAL_FAULTS names what fails ("calls", "memory" or "threads") and which
// one, counted from 1 and from where the program's own work starts; with a "+" behind it, every
// further one too. What was counted is added to the file that KAL_FAULTS_COUNT names.

#define _GNU_SOURCE
#include <dlfcn.h>
#include <errno.h>
#include <fcntl.h>
#include <poll.h>
#include <pthread.h>
#include <signal.h>
#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <sys/uio.h>
#include <unistd.h>

enum Kind { NOTHING, CALLS, MEMORY, THREADS };

static enum Kind kind;
static long failing;
static int always;
static int started;
static long counted;

// Whether this is the one that fails.
static int Fails(enum Kind of) {
  if (of != kind || !__atomic_load_n(&started, __ATOMIC_RELAXED)) return 0;
  const long now = __atomic_add_fetch(&counted, 1, __ATOMIC_RELAXED);
  return now == failing || (always && now > failing);
}

__attribute__((constructor)) static void Read(void) {
  const char* what = getenv("KAL_FAULTS");
  if (what == NULL) return;
  kind = strncmp(what, "calls", 5) == 0    ? CALLS
         : strncmp(what, "memory", 6) == 0 ? MEMORY
                                           : THREADS;
  failing = atol(strpbrk(what, "0123456789"));
  always = what[strlen(what) - 1] == '+';
}

__attribute__((destructor)) static void Tell(void) {
  const char* file = getenv("KAL_FAULTS_COUNT");
  started = 0;
  if (file == NULL) return;
  FILE* told = fopen(file, "w");
  if (told == NULL) return;
  fprintf(told, "%ld\n", counted);
  fclose(told);
}

#define REAL(name) ((__typeof__(&name))dlsym(RTLD_NEXT, #name))

// The first thing that the program does by itself.
sighandler_t signal(int number, sighandler_t handler) {
  started = 1;
  return REAL(signal)(number, handler);
}

// glibc's own allocator, which dlsym may need itself.
extern void* __libc_malloc(size_t);
extern void* __libc_calloc(size_t, size_t);
extern void* __libc_realloc(void*, size_t);
extern void* __libc_memalign(size_t, size_t);

static void* None(void) {
  errno = ENOMEM;
  return NULL;
}
void* malloc(size_t size) { return Fails(MEMORY) ? None() : __libc_malloc(size); }
void* calloc(size_t count, size_t size) {
  return Fails(MEMORY) ? None() : __libc_calloc(count, size);
}
void* realloc(void* memory, size_t size) {
  return Fails(MEMORY) ? None() : __libc_realloc(memory, size);
}
void* aligned_alloc(size_t alignment, size_t size) {
  return Fails(MEMORY) ? None() : __libc_memalign(alignment, size);
}

#define FAULTY(result, name, parameters, arguments, error) \
  result name parameters {                                 \
    if (Fails(CALLS)) {                                    \
      errno = error;                                       \
      return -1;                                           \
    }                                                      \
    return REAL(name) arguments;                           \
  }

FAULTY(ssize_t, read, (int fd, void* to, size_t size), (fd, to, size), EIO)
FAULTY(ssize_t, pread64, (int fd, void* to, size_t size, off64_t at), (fd, to, size, at), EIO)
FAULTY(ssize_t, write, (int fd, const void* from, size_t size), (fd, from, size), ENOSPC)
FAULTY(ssize_t, writev, (int fd, const struct iovec* from, int count), (fd, from, count), ENOSPC)
FAULTY(int, close, (int fd), (fd), EIO)
FAULTY(int, stat, (const char* path, struct stat* to), (path, to), EIO)
FAULTY(int, stat64, (const char* path, struct stat64* to), (path, to), EIO)
FAULTY(int, lstat64, (const char* path, struct stat64* to), (path, to), EIO)
FAULTY(int, fstat64, (int fd, struct stat64* to), (fd, to), EIO)
FAULTY(int, access, (const char* path, int mode), (path, mode), EIO)
FAULTY(off64_t, lseek64, (int fd, off64_t at, int from), (fd, at, from), EIO)
FAULTY(int, ftruncate64, (int fd, off64_t size), (fd, size), EIO)
FAULTY(int, unlink, (const char* path), (path), EIO)
FAULTY(int, socket, (int domain, int type, int protocol), (domain, type, protocol), EMFILE)
FAULTY(int, connect, (int fd, const struct sockaddr* to, socklen_t size), (fd, to, size),
       ECONNREFUSED)
FAULTY(int, poll, (struct pollfd * waited, nfds_t count, int time), (waited, count, time), ENOMEM)

// A line that breaks is broken both ways.
static ssize_t Broken(int fd) {
  shutdown(fd, SHUT_RDWR);
  errno = ECONNRESET;
  return -1;
}
ssize_t send(int fd, const void* from, size_t size, int how) {
  return Fails(CALLS) ? Broken(fd) : REAL(send)(fd, from, size, how);
}
ssize_t recv(int fd, void* to, size_t size, int how) {
  return Fails(CALLS) ? Broken(fd) : REAL(recv)(fd, to, size, how);
}

int open64(const char* path, int flags, ...) {
  va_list rest;
  va_start(rest, flags);
  const int mode = va_arg(rest, int);
  va_end(rest);
  if (Fails(CALLS)) {
    errno = EMFILE;
    return -1;
  }
  return REAL(open64)(path, flags, mode);
}
int open(const char* path, int flags, ...) {
  va_list rest;
  va_start(rest, flags);
  const int mode = va_arg(rest, int);
  va_end(rest);
  return open64(path, flags, mode);
}
FILE* fopen64(const char* path, const char* mode) {
  if (Fails(CALLS)) {
    errno = EMFILE;
    return NULL;
  }
  return REAL(fopen64)(path, mode);
}
int fcntl64(int fd, int command, ...) {
  va_list rest;
  va_start(rest, command);
  void* const argument = va_arg(rest, void*);
  va_end(rest);
  if (Fails(CALLS)) {
    errno = EACCES;
    return -1;
  }
  return REAL(fcntl64)(fd, command, argument);
}
void* mmap64(void* at, size_t size, int how, int flags, int fd, off64_t from) {
  if (fd >= 0 && Fails(CALLS)) {
    errno = ENOMEM;
    return MAP_FAILED;
  }
  return REAL(mmap64)(at, size, how, flags, fd, from);
}

int pthread_create(pthread_t* thread, const pthread_attr_t* attributes, void* (*run)(void*),
                   void* argument) {
  if (Fails(THREADS)) return EAGAIN;
  return REAL(pthread_create)(thread, attributes, run, argument);
}
