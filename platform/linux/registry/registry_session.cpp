#include "platform/linux/registry/registry_session.h"

#include <algorithm>

namespace platform {

void RegistrySession::LeaveReadScope() {
  --readScopes_;
  if (!HasScope()) EndRead();
}

void RegistrySession::EnterWriteScope() {
  EndRead();
  ++writeScopes_;
}

RegistryStatus RegistrySession::CommitWriteScope() {
  if (--writeScopes_ > 0) return scopeFailure_;
  RegistryStatus status = scopeFailure_;
  if (transaction_ == Transaction::Write && !CommitWrites()) status = RegistryStatus::WriteFault;
  LeaveScopes();
  return status;
}

void RegistrySession::AbandonWriteScope() {
  UndoWrites();
  Fail(RegistryStatus::WriteFault);
  if (--writeScopes_ == 0) LeaveScopes();
}

void RegistrySession::LeaveScopes() {
  scopeFailure_ = RegistryStatus::Success;
  if (!HasScope()) EndRead();
  TellFailure();
}

// Nothing more is written in the scope, if there is one.
void RegistrySession::Fail(RegistryStatus status) {
  failure_ = status;
  if (writeScopes_ > 0) scopeFailure_ = status;
}

void RegistrySession::TellFailure() {
  if (database_ != nullptr) files_.Tell(database_->TakeFailure());
}

bool RegistrySession::Open(RegistryDatabase::Opening opening) {
  // Outside a transaction is the moment to notice that the store has been taken away.
  if (database_ != nullptr && transaction_ == Transaction::None && !database_->IsStillThere()) {
    database_.reset();
  }
  if (database_ == nullptr) database_ = files_.OpenDatabase(opening);
  return database_ != nullptr;
}

RegistryDatabase* RegistrySession::BeginReading() {
  if (transaction_ != Transaction::None) return database_.get();
  if (!Open(RegistryDatabase::Opening::Existing)) return nullptr;
  // A write scope holds the writers' lock from its first look on: what it reads is still true when
  // it writes.
  const bool mayWrite = writeScopes_ > 0 && scopeFailure_ == RegistryStatus::Success;
  if (mayWrite) BeginWriteTransaction();
  if (transaction_ == Transaction::None && database_->BeginRead()) {
    transaction_ = Transaction::Read;
  }
  return transaction_ == Transaction::None ? nullptr : database_.get();
}

RegistryDatabase* RegistrySession::BeginWriting() {
  failure_ = scopeFailure_;
  if (failure_ != RegistryStatus::Success) return nullptr;
  EndRead();
  if (!Open(RegistryDatabase::Opening::Create)) {
    Fail(RegistryStatus::WriteFault);
    return nullptr;
  }
  if (transaction_ == Transaction::None && !BeginWriteTransaction()) return nullptr;
  return database_.get();
}

bool RegistrySession::BeginWriteTransaction() {
  if (!database_->BeginWrite()) {
    Fail(database_->WriteFailure());
    return false;
  }
  transaction_ = Transaction::Write;
  hasWritten_ = false;
  counted_.clear();
  return true;
}

RegistryStatus RegistrySession::EndWriting(RegistryStatus status) {
  hasWritten_ = hasWritten_ || status == RegistryStatus::Success;
  const bool isLost = !database_->InTransaction();
  if (writeScopes_ > 0 && !isLost) return status;
  if (isLost) {
    transaction_ = Transaction::None;
    Fail(RegistryStatus::WriteFault);
    return failure_;
  }
  if (status != RegistryStatus::Success) {
    UndoWrites();
    return status;
  }
  return CommitWrites() ? status : RegistryStatus::WriteFault;
}

bool RegistrySession::CommitWrites() {
  transaction_ = Transaction::None;
  if (!database_->Commit()) return false;
  if (hasWritten_) files_.Touch();
  return true;
}

void RegistrySession::UndoWrites() {
  if (transaction_ != Transaction::Write) return;
  database_->Rollback();
  transaction_ = Transaction::None;
}

void RegistrySession::EndRead() {
  if (transaction_ != Transaction::Read) return;
  database_->Commit();
  transaction_ = Transaction::None;
}

RegistryStatus RegistrySession::CountChange(RegistryKeyId key) {
  if (std::find(counted_.begin(), counted_.end(), key) != counted_.end()) {
    return RegistryStatus::Success;
  }
  const RegistryStatus status = database_->CountChange(key);
  if (status == RegistryStatus::Success) counted_.push_back(key);
  return status;
}

}  // namespace platform
