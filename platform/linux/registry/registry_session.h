// One thread's way into the registry's database: a connection and the transaction it is in.
#pragma once

#include <cstddef>
#include <memory>
#include <utility>
#include <vector>

#include "platform/linux/registry/registry_database.h"
#include "platform/linux/registry/registry_files.h"

namespace platform {

// Used by one thread at a time; while a scope is open, by the scope's thread only. Without a scope
// every write is a transaction of its own. A write inside a read scope is made between two states:
// what is read after it is a later state that has it.
class RegistrySession {
 public:
  explicit RegistrySession(RegistryFiles& files) : files_(files) {}
  RegistrySession(const RegistrySession&) = delete;
  RegistrySession& operator=(const RegistrySession&) = delete;

  void EnterReadScope() { ++readScopes_; }
  void LeaveReadScope();
  void EnterWriteScope();
  // Two ways to end a write scope. What a commit could not keep is gone, as after abandoning.
  RegistryStatus CommitWriteScope();
  void AbandonWriteScope();
  bool HasScope() const { return readScopes_ + writeScopes_ > 0; }

  // Calls `read` with the database; `missing` when there is none.
  template <typename Result, typename Body>
  Result Read(Result missing, Body read) {
    RegistryDatabase* database = BeginReading();
    Result result = database == nullptr ? std::move(missing) : read(*database);
    if (!HasScope()) EndRead();
    TellFailure();
    return result;
  }

  // Calls `write` with the database inside a write transaction, which is kept when it answers
  // Success; without a scope it is committed before this returns.
  template <typename Body>
  RegistryStatus Write(Body write) {
    RegistryDatabase* database = BeginWriting();
    const RegistryStatus status = database == nullptr ? failure_ : EndWriting(write(*database));
    TellFailure();
    return status;
  }

  // Counts a change of a key's values, once in a transaction; FileNotFound when the key is gone.
  // Inside `Write` only.
  RegistryStatus CountChange(RegistryKeyId key);
  // Lets the next change count again: someone has read the count, or keys are gone.
  void ForgetCounted() { counted_.clear(); }

 private:
  enum class Transaction { None, Read, Write };

  bool Open(RegistryDatabase::Opening opening);
  RegistryDatabase* BeginReading();
  RegistryDatabase* BeginWriting();  // null, and `failure_` set, on failure
  RegistryStatus EndWriting(RegistryStatus status);
  bool BeginWriteTransaction();
  bool CommitWrites();
  void UndoWrites();
  void Fail(RegistryStatus status);
  void LeaveScopes();
  void EndRead();
  void TellFailure();

  RegistryFiles& files_;
  std::unique_ptr<RegistryDatabase> database_;
  int readScopes_ = 0;
  int writeScopes_ = 0;
  Transaction transaction_ = Transaction::None;
  bool hasWritten_ = false;  // in this transaction
  // Of a scope whose transaction could not begin or was lost, which writes nothing more: all or
  // nothing.
  RegistryStatus scopeFailure_ = RegistryStatus::Success;
  RegistryStatus failure_ = RegistryStatus::Success;
  std::vector<RegistryKeyId> counted_;
};

}  // namespace platform
