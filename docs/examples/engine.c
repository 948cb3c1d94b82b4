// A small audio engine without the audio: holds the events of an endpoint, reads the active setting
// of a route at the start and whenever an event is set, and prints its ten equalizer bands when
// they differ from what it printed last. The steps are explained in engine.md.
//
//   cc -std=c11 -Wall -Wextra -Werror -o engine engine.c -lsqlite3 -lm
//   ./engine ROUTE ENDPOINT         two GUIDs, in braces
//
// SIGINT and SIGTERM end it. Exit status: 0, 1 when something failed, 2 for a wrong call.
#define _POSIX_C_SOURCE 200809L

#include <errno.h>
#include <fcntl.h>
#include <math.h>
#include <signal.h>
#include <sqlite3.h>
#include <stdbool.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/file.h>  // flock, the one thing here that POSIX lacks
#include <sys/select.h>
#include <sys/stat.h>
#include <unistd.h>

enum {
  kPathSize = 4096,
  kSettingSize = 100,
  kEventCount = 5,
  kLayout = 1,
  kBusyMilliseconds = 1000,
  kParameterCount = 1114,
  kEqualizerEnable = 117,
  kFirstBand = 118,
  kFieldsPerBand = 5,
  kBandCount = 10,
};

// values[n - 1] is parameter n.
struct ParameterSet {
  char setting[kSettingSize];
  float values[kParameterCount];
};

struct Store {
  sqlite3* database;  // stays open between two looks
  dev_t device;
  ino_t inode;
};

struct Event {
  char path[128];
  int reader;
};

static volatile sig_atomic_t isEnding = 0;

static void End(int signalNumber) {
  (void)signalNumber;
  isEnding = 1;
}

// ---- Where everything lies ----

static const char* Environment(const char* name) {
  const char* value = getenv(name);
  return value != NULL && *value != '\0' ? value : NULL;
}

// Whether this user can write in the folder, or make it if it is missing.
static bool IsWritable(const char* folder) {
  char path[kPathSize];
  snprintf(path, sizeof(path), "%s", folder);
  while (faccessat(AT_FDCWD, path, W_OK | X_OK, AT_EACCESS) != 0) {
    char* slash = strrchr(path, '/');
    if (errno != ENOENT || slash == NULL || slash == path) return false;
    *slash = '\0';
  }
  return true;
}

static bool FindStateFolder(char* folder) {
  const char* machineFolder = "/var/lib/norvane/velsona";
  const char* root = Environment("TONALYX_ROOT");
  const char* stateHome = Environment("XDG_STATE_HOME");
  const char* home = Environment("HOME");
  int length = -1;
  if (root != NULL) {
    length = snprintf(folder, kPathSize, "%s", root);
  } else if (IsWritable(machineFolder)) {
    length = snprintf(folder, kPathSize, "%s", machineFolder);
  } else if (stateHome != NULL && *stateHome == '/') {
    length = snprintf(folder, kPathSize, "%s/norvane/velsona", stateHome);
  } else if (home != NULL) {
    length = snprintf(folder, kPathSize, "%s/.local/state/norvane/velsona", home);
  }
  if (length < 1 || length >= kPathSize) return false;
  while (length > 1 && folder[length - 1] == '/') folder[--length] = '\0';
  return true;
}

// The mode takes the umask out, through a handle: where everyone may write, somebody may have put a
// link in the new folder's place by now.
static bool MakeFolder(const char* folder, mode_t mode) {
  if (mkdir(folder, mode) != 0) return errno == EEXIST;
  const int made = open(folder, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
  if (made < 0) return false;
  const bool isOpen = fchmod(made, mode) == 0;
  close(made);
  return isOpen;
}

// Makes the state folder and goes there. It and "events" are for every user, those above are not.
static bool EnterStateFolder(void) {
  char path[kPathSize];
  if (!FindStateFolder(path)) return false;
  for (char* slash = strchr(path + 1, '/'); slash != NULL; slash = strchr(slash + 1, '/')) {
    *slash = '\0';
    if (!MakeFolder(path, 0755)) return false;
    *slash = '/';
  }
  return MakeFolder(path, 0777) && chdir(path) == 0 && MakeFolder("events", 0777);
}

// ---- The store ----

static void CloseStore(struct Store* store) {
  sqlite3_close(store->database);
  store->database = NULL;
}

// The number that a statement yields, -1 when it yields none; the parameters are for those that
// have any.
static sqlite3_int64 QueryNumber(sqlite3* database, const char* sql, sqlite3_int64 parent,
                                 const char* folded) {
  sqlite3_stmt* statement = NULL;
  sqlite3_int64 number = -1;
  if (sqlite3_prepare_v2(database, sql, -1, &statement, NULL) == SQLITE_OK) {
    sqlite3_bind_int64(statement, 1, parent);
    sqlite3_bind_text(statement, 2, folded, -1, SQLITE_STATIC);
    if (sqlite3_step(statement) == SQLITE_ROW) number = sqlite3_column_int64(statement, 0);
  }
  sqlite3_finalize(statement);
  return number;
}

// The subkey of that name, in upper case; -1 when there is none.
static sqlite3_int64 FindSubKey(sqlite3* database, sqlite3_int64 parent, const char* folded) {
  return QueryNumber(database, "SELECT id FROM registry_key WHERE parent = ? AND folded = ?",
                     parent, folded);
}

// False while there is no store, or none of the layout that this engine knows. A store that was
// removed and made anew is opened anew.
static bool OpenStore(struct Store* store) {
  struct stat status;
  if (stat("registry.db", &status) != 0) {
    CloseStore(store);
    return false;
  }
  if (store->database != NULL && status.st_dev == store->device && status.st_ino == store->inode) {
    return true;
  }
  CloseStore(store);
  // Not for reading alone: the companions of a write-ahead log are written by readers too. And
  // never through a link: everyone may put one there.
  const int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOFOLLOW;
  if (sqlite3_open_v2("registry.db", &store->database, flags, NULL) == SQLITE_OK &&
      sqlite3_busy_timeout(store->database, kBusyMilliseconds) == SQLITE_OK &&
      QueryNumber(store->database, "PRAGMA user_version", 0, "") == kLayout) {
    store->device = status.st_dev;
    store->inode = status.st_ino;
    return true;
  }
  CloseStore(store);
  return false;
}

// UTF-16 with or without its NUL; what does not fit counts as missing.
static void DecodeSetting(const unsigned char* data, int size, char* setting) {
  char text[kSettingSize] = "";
  for (int i = 0; i < size / 2; ++i) {
    if (i == kSettingSize - 1) return;
    if (data[2 * i] == 0 && data[2 * i + 1] == 0) break;
    const bool isAscii = data[2 * i] < 0x80 && data[2 * i + 1] == 0;
    text[i] = isAscii ? (char)data[2 * i] : '?';
  }
  memcpy(setting, text, sizeof(text));
}

static float DecodeFloat(const unsigned char* data) {
  const uint32_t bits = (uint32_t)data[0] | (uint32_t)data[1] << 8 | (uint32_t)data[2] << 16 |
                        (uint32_t)data[3] << 24;
  float value;
  memcpy(&value, &bits, sizeof(value));
  return value;
}

// One value of the route's key or of a set's; the name in upper case.
static void TakeValue(const char* folded, const unsigned char* data, int size,
                      struct ParameterSet* set) {
  if (strcmp(folded, "ACTIVESETTING") == 0) DecodeSetting(data, size, set->setting);
  if (strncmp(folded, "PARAM", 5) != 0 || size != 4) return;
  const long number = strtol(folded + 5, NULL, 10);
  if (number >= 1 && number <= kParameterCount) set->values[number - 1] = DecodeFloat(data);
}

static bool ReadValues(sqlite3* database, sqlite3_int64 key, struct ParameterSet* set) {
  sqlite3_stmt* statement = NULL;
  int code = sqlite3_prepare_v2(database, "SELECT folded, data FROM registry_value WHERE key = ?",
                                -1, &statement, NULL);
  if (code == SQLITE_OK) {
    sqlite3_bind_int64(statement, 1, key);
    while ((code = sqlite3_step(statement)) == SQLITE_ROW) {
      const char* folded = (const char*)sqlite3_column_text(statement, 0);
      const unsigned char* data = sqlite3_column_blob(statement, 1);
      if (folded != NULL) TakeValue(folded, data, sqlite3_column_bytes(statement, 1), set);
    }
  }
  sqlite3_finalize(statement);
  return code == SQLITE_DONE;
}

// What the set holds where the store holds nothing.
static void SetInitialValues(struct ParameterSet* set) {
  static const float frequencies[kBandCount] = {31,   63,   125,  250,  500,
                                                1000, 2000, 4000, 8000, 16000};
  memset(set, 0, sizeof(*set));
  strcpy(set->setting, "2");
  set->values[kEqualizerEnable - 1] = 1;
  set->values[232 - 1] = 0.5F;                // bass
  set->values[250 - 1] = 0.5F;                // treble
  for (int i = 0; i < 2 * kBandCount; ++i) {  // the bands and their mirror
    const float band[kFieldsPerBand] = {1, 1, frequencies[i % kBandCount], 1, 1};
    memcpy(set->values + kFirstBand - 1 + i * kFieldsPerBand, band, sizeof(band));
  }
}

static bool ReadInsideTransaction(sqlite3* database, const char* const* path,
                                  struct ParameterSet* set) {
  sqlite3_int64 key = 1;  // HKEY_LOCAL_MACHINE
  while (key >= 0 && *path != NULL) key = FindSubKey(database, key, *path++);
  if (key < 0 || !ReadValues(database, key, set)) return false;
  key = FindSubKey(database, key, set->setting);
  return key >= 0 && ReadValues(database, key, set);
}

// All from one state of the store. False when the route has no such set, or it cannot be read now.
static bool ReadActiveSet(struct Store* store, const char* route, struct ParameterSet* set) {
  const char* path[] = {"SOFTWARE", "NORVANE", "VELSONA", "PARAMETERS", route, "SETTINGS", NULL};
  SetInitialValues(set);
  if (!OpenStore(store)) return false;
  if (sqlite3_exec(store->database, "BEGIN", NULL, NULL, NULL) != SQLITE_OK) return false;
  const bool isRead = ReadInsideTransaction(store->database, path, set);
  sqlite3_exec(store->database, "COMMIT", NULL, NULL, NULL);
  return isRead;
}

static void PrintBands(const struct ParameterSet* set) {
  static const char* const types[] = {"?",         "Peaking",      "Low Pass",
                                      "High Pass", "Low Shelving", "High Shelving"};
  printf("setting %s, equalizer %s\n", set->setting,
         set->values[kEqualizerEnable - 1] > 0 ? "on" : "off");
  for (int i = 0; i < kBandCount; ++i) {
    const float* band = set->values + kFirstBand - 1 + i * kFieldsPerBand;
    const int type = band[1] >= 1 && band[1] < 6 ? (int)band[1] : 0;
    printf("%2d %-3s %-13s %8.1f Hz %+6.2f dB  Q %.2f\n", i + 1, band[0] > 0 ? "on" : "off",
           types[type], (double)band[2], 20 * log10((double)band[3]), (double)band[4]);
  }
  fflush(stdout);
}

// ---- The events ----

static bool IsStillNamed(const struct Event* event) {
  struct stat named;
  struct stat held;
  return lstat(event->path, &named) == 0 && fstat(event->reader, &held) == 0 &&
         S_ISFIFO(held.st_mode) && named.st_dev == held.st_dev && named.st_ino == held.st_ino;
}

// Makes the FIFO, or takes over one that a dead engine left, and becomes its only reader.
static bool HoldEvent(struct Event* event) {
  for (int attempt = 0; attempt < 8; ++attempt) {
    if (mkfifo(event->path, 0666) != 0 && errno != EEXIST) return false;
    const int writer = open(event->path, O_WRONLY | O_NONBLOCK | O_NOFOLLOW | O_CLOEXEC);
    if (writer >= 0) {  // somebody reads it
      close(writer);
      return false;
    }
    if (errno == ENOENT) continue;  // an ending engine took it away
    // Open for writing too: the end of the last writer must not be an end of file.
    event->reader = open(event->path, O_RDWR | O_NONBLOCK | O_NOFOLLOW | O_CLOEXEC);
    if (event->reader < 0 && errno == ENOENT) continue;
    if (event->reader < 0) return false;
    (void)fchmod(event->reader, 0666);  // another user's has that mode already
    if (flock(event->reader, LOCK_EX | LOCK_NB) == 0 && IsStillNamed(event)) return true;
    close(event->reader);
  }
  return false;
}

static void ReleaseEvents(const struct Event* events, int count) {
  for (int i = 0; i < count; ++i) {
    if (IsStillNamed(&events[i])) unlink(events[i].path);
    close(events[i].reader);
  }
}

// The endpoint's four events and the service's. `count` receives how many could be held.
static bool HoldEvents(const char* endpoint, struct Event* events, int* count) {
  static const char* const names[kEventCount] = {"GFXPropEvent", "MFXPropEvent", "EFXPropEvent",
                                                 "SFXPropEvent", "ServiceParameterUpdateEvent"};
  for (*count = 0; *count < kEventCount; ++*count) {
    struct Event* event = &events[*count];
    const bool isService = *count == kEventCount - 1;
    snprintf(event->path, sizeof(event->path), "events/Global%%5CVelsona%s%.38s", names[*count],
             isService ? "" : endpoint);
    if (!HoldEvent(event)) {
      fprintf(stderr, "engine: %s: another engine holds it, or it cannot be made\n", event->path);
      return false;
    }
  }
  return true;
}

// False when it is time to end. However many sets came, one look at the store answers them all.
static bool WaitForSets(const struct Event* events, const sigset_t* whileWaiting) {
  fd_set ready;
  int highest = -1;
  FD_ZERO(&ready);
  for (int i = 0; i < kEventCount; ++i) {
    FD_SET(events[i].reader, &ready);
    if (events[i].reader > highest) highest = events[i].reader;
  }
  if (pselect(highest + 1, &ready, NULL, NULL, NULL, whileWaiting) < 0) {
    return errno == EINTR && !isEnding;
  }
  for (int i = 0; i < kEventCount; ++i) {
    unsigned char stamps[8 * 512];
    while (read(events[i].reader, stamps, sizeof(stamps)) > 0) {
    }
  }
  return true;
}

// The signals come through while the engine waits and at no other time.
static void CatchSignals(sigset_t* whileWaiting) {
  struct sigaction action;
  sigset_t ending;
  memset(&action, 0, sizeof(action));
  action.sa_handler = End;
  sigemptyset(&ending);
  sigaddset(&ending, SIGINT);
  sigaddset(&ending, SIGTERM);
  sigprocmask(SIG_BLOCK, &ending, whileWaiting);
  sigdelset(whileWaiting, SIGINT);
  sigdelset(whileWaiting, SIGTERM);
  sigaction(SIGINT, &action, NULL);
  sigaction(SIGTERM, &action, NULL);
}

static void Follow(struct Store* store, const char* route, const struct Event* events,
                   const sigset_t* whileWaiting) {
  struct ParameterSet shown;
  struct ParameterSet set;
  bool isShown = ReadActiveSet(store, route, &shown);
  if (isShown) {
    PrintBands(&shown);
  } else {
    puts("nothing is stored for this route yet");
    fflush(stdout);
  }
  while (WaitForSets(events, whileWaiting)) {
    if (!ReadActiveSet(store, route, &set)) continue;  // goes on with what it has
    if (isShown && memcmp(&set, &shown, sizeof(set)) == 0) continue;
    shown = set;
    isShown = true;
    PrintBands(&shown);
  }
}

// A GUID in upper case, as key names are compared; false when it is none.
static bool FoldGuid(const char* guid, char* folded) {
  const size_t length = strlen(guid);
  if (length != 38 || strspn(guid, "{}-0123456789abcdefABCDEF") != length) return false;
  for (size_t i = 0; i <= length; ++i) {
    folded[i] = guid[i] >= 'a' && guid[i] <= 'f' ? (char)(guid[i] - 'a' + 'A') : guid[i];
  }
  return true;
}

int main(int argc, char** argv) {
  struct Event events[kEventCount];
  struct Store store = {0};
  char route[39];
  char folded[39];
  sigset_t whileWaiting;
  if (argc != 3 || !FoldGuid(argv[1], route) || !FoldGuid(argv[2], folded)) {
    fputs("usage: engine ROUTE ENDPOINT (two GUIDs, in braces)\n", stderr);
    return 2;
  }
  if (!EnterStateFolder()) {
    fputs("engine: the state folder cannot be made\n", stderr);
    return 1;
  }
  // First the events, then the first look: no change falls between the two. The event's name has
  // the endpoint's GUID as it is spelled.
  CatchSignals(&whileWaiting);
  int count = 0;
  const bool isHeld = HoldEvents(argv[2], events, &count);
  if (isHeld) Follow(&store, route, events, &whileWaiting);
  ReleaseEvents(events, count);
  CloseStore(&store);
  return isHeld ? 0 : 1;
}
