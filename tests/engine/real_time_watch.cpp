// Loaded into the engine before other libraries: while a buffer of sound is in its hands, the
// thread may neither allocate, nor lock, nor call the system. Each case ends the program by a
// signal after a line on standard error that says what it was.
#include <dlfcn.h>
#include <pthread.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <cstring>

extern "C" {
struct pw_stream;
struct pw_buffer;
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);
void __libc_free(void* block);
}

namespace {

// What the kernel looks at before each call of the thread.
thread_local volatile char filter = SYSCALL_DISPATCH_FILTER_ALLOW;
thread_local int held = 0;  // buffers
thread_local bool isFiltered = false;
std::atomic<long> watched{0};

void Complain(const char* what) {
  filter = SYSCALL_DISPATCH_FILTER_ALLOW;
  held = 0;
  const char* lines[] = {"real time: ", what, "\n"};
  for (const char* line : lines) {
    [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, line, std::strlen(line));
  }
  _exit(99);
}

void OnSystemCall(int /*signal*/) {
  Complain("system call");
}

void Check(const char* what) {
  if (held > 0 && filter == SYSCALL_DISPATCH_FILTER_BLOCK) Complain(what);
}

template <typename Function>
Function* Next(const char* name) {
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

using Dequeue = pw_buffer*(pw_stream*);
using Queue = int(pw_stream*, pw_buffer*);
using Lock = int(pthread_mutex_t*);

Dequeue* const nextDequeue = Next<Dequeue>("pw_stream_dequeue_buffer");
Queue* const nextQueue = Next<Queue>("pw_stream_queue_buffer");
Lock* const nextLock = Next<Lock>("pthread_mutex_lock");

void Filter() {
  if (isFiltered) return;
  struct sigaction action {};
  action.sa_handler = OnSystemCall;
  sigaction(SIGSYS, &action, nullptr);
  if (prctl(PR_SET_SYSCALL_USER_DISPATCH, PR_SYS_DISPATCH_ON, 0, 0, &filter) != 0) {
    Complain("cannot be watched on this system");
  }
  isFiltered = true;
}

// Proves that the watch sees what it is told to look for.
void Plant() {
  const char* plant = std::getenv("TONALYX_TEST_PLANT");
  if (plant == nullptr || ++watched < 10) return;
  static pthread_mutex_t mutex = PTHREAD_MUTEX_INITIALIZER;
  if (std::strcmp(plant, "allocation") == 0) std::free(std::malloc(1));
  if (std::strcmp(plant, "lock") == 0) pthread_mutex_lock(&mutex);
  if (std::strcmp(plant, "system call") == 0) syscall(SYS_getppid);
}

}  // namespace

extern "C" {

pw_buffer* pw_stream_dequeue_buffer(pw_stream* stream) {
  filter = SYSCALL_DISPATCH_FILTER_ALLOW;
  pw_buffer* buffer = nextDequeue(stream);
  Filter();
  if (buffer != nullptr) ++held;
  if (held > 0) filter = SYSCALL_DISPATCH_FILTER_BLOCK;
  if (held > 1) Plant();
  return buffer;
}

int pw_stream_queue_buffer(pw_stream* stream, pw_buffer* buffer) {
  filter = SYSCALL_DISPATCH_FILTER_ALLOW;
  const int result = nextQueue(stream, buffer);
  if (--held > 0) filter = SYSCALL_DISPATCH_FILTER_BLOCK;
  return result;
}

int pthread_mutex_lock(pthread_mutex_t* mutex) {
  Check("lock");
  return nextLock(mutex);
}

void* malloc(std::size_t size) {
  Check("allocation");
  return __libc_malloc(size);
}

void* calloc(std::size_t count, std::size_t size) {
  Check("allocation");
  return __libc_calloc(count, size);
}

void* realloc(void* block, std::size_t size) {
  Check("allocation");
  return __libc_realloc(block, size);
}

void free(void* block) {
  Check("allocation");
  __libc_free(block);
}
}
