#include "platform/linux/registry/registry_guard.h"

#include <array>
#include <chrono>
#include <thread>

namespace platform {
namespace {

constexpr int kShortSteps = 20;
constexpr int kAllSteps = 2000;

constexpr int kMachineSteps = 1000;

struct Limit {
  int category;
  int value;
};

// A value has its row to itself, and no statement of ours is half as long.
constexpr std::array<Limit, 8> kLimits = {{{SQLITE_LIMIT_LENGTH, 4 << 20},
                                           {SQLITE_LIMIT_SQL_LENGTH, 4000},
                                           {SQLITE_LIMIT_EXPR_DEPTH, 20},
                                           {SQLITE_LIMIT_COLUMN, 20},
                                           {SQLITE_LIMIT_LIKE_PATTERN_LENGTH, 0},
                                           {SQLITE_LIMIT_TRIGGER_DEPTH, 0},
                                           {SQLITE_LIMIT_ATTACHED, 0},
                                           {SQLITE_LIMIT_WORKER_THREADS, 0}}};

struct Option {
  int option;
  int value;
};

// What else than tables of data stands in the schema must not run here.
constexpr std::array<Option, 4> kOptions = {{{SQLITE_DBCONFIG_DEFENSIVE, 1},
                                             {SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0},
                                             {SQLITE_DBCONFIG_ENABLE_TRIGGER, 0},
                                             {SQLITE_DBCONFIG_ENABLE_VIEW, 0}}};

int WaitWhileBusy(void* patience, int step) {
  return static_cast<LockPatience*>(patience)->Wait(step) ? 1 : 0;
}

int CountDown(void* left) {
  return --*static_cast<std::int32_t*>(left) < 0 ? 1 : 0;
}

}  // namespace

bool LockPatience::Wait(int step) {
  if (step >= (isLost_ ? kShortSteps : kAllSteps)) {
    isLost_ = true;
    return false;
  }
  std::this_thread::sleep_for(std::chrono::microseconds(step < kShortSteps ? 50 : 1000));
  return true;
}

bool RegistryGuard::Protect(sqlite3* connection) {
  sqlite3_extended_result_codes(connection, 1);
  sqlite3_busy_handler(connection, WaitWhileBusy, &patience_);
  sqlite3_progress_handler(connection, kMachineSteps, CountDown, &left_);
  for (const Limit& limit : kLimits) sqlite3_limit(connection, limit.category, limit.value);
  for (const Option& option : kOptions) {
    if (sqlite3_db_config(connection, option.option, option.value, nullptr) != SQLITE_OK) {
      return false;
    }
  }
  return true;
}

}  // namespace platform
