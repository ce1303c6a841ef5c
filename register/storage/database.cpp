// Statements, and a database as those see it that run them.
#include "register/storage/database.h"

#include <sqlite3.h>

#include <array>
#include <limits>
#include <new>
#include <utility>

namespace lorimat {
namespace {

// A pragma takes no bound value.
template <size_t... versions>
consteval std::array<SqlLiteral, sizeof...(versions)> VersionStatements(
    std::index_sequence<versions...>) {
  return {kSql<"PRAGMA user_version = ", kSqlNumber<versions>>...};
}
constexpr auto kSetVersion =
    VersionStatements(std::make_index_sequence<Database::kMostVersion + 1>());

}  // namespace

void DatabaseCloser::operator()(sqlite3* handle) const { sqlite3_close(handle); }
void StatementCloser::operator()(sqlite3_stmt* handle) const { sqlite3_finalize(handle); }

// --- Statement

Statement::~Statement() {
  if (row_.empty()) return;
  sqlite3_reset(handle_);
  sqlite3_clear_bindings(handle_);
  try {
    database_->idle_.insert(std::move(row_));
  } catch (...) {
    // It is prepared again the next time.
  }
}

void Statement::Check(int code) const {
  if (code == SQLITE_OK) return;
  database_->NoteWait(code);
  database_->FailWith(code);
}

// What it answered the last time has been reported.
void Statement::Reset() { sqlite3_reset(handle_); }

void Statement::BindNull(int parameter) { Check(sqlite3_bind_null(handle_, parameter)); }

void Statement::BindInteger(int parameter, int64_t value) {
  Check(sqlite3_bind_int64(handle_, parameter, value));
}

void Statement::BindText(int parameter, std::string_view value) {
  const char* bytes = value.data() != nullptr ? value.data() : "";
  Check(
      sqlite3_bind_text64(handle_, parameter, bytes, value.size(), SQLITE_TRANSIENT, SQLITE_UTF8));
}

bool Statement::Step() {
  const int code = sqlite3_step(handle_);
  if (code == SQLITE_ROW) return true;
  if (code == SQLITE_DONE) return false;
  database_->FailWith(code);
}

void Statement::Run() {
  while (Step()) {
  }
}

int64_t Statement::Integer(int column) const { return sqlite3_column_int64(handle_, column); }

int Statement::Int(int column) const {
  const int64_t value = Integer(column);
  if (value < std::numeric_limits<int>::min() || value > std::numeric_limits<int>::max()) {
    database_->Damaged(sqlite3_column_name(handle_, column));
  }
  return static_cast<int>(value);
}

std::string_view Statement::Text(int column) const {
  const void* bytes = sqlite3_column_blob(handle_, column);
  const int size = sqlite3_column_bytes(handle_, column);
  // Nothing is given out for an empty text, and for one for which there was no memory.
  if (bytes == nullptr && sqlite3_errcode(sqlite3_db_handle(handle_)) == SQLITE_NOMEM) {
    throw std::bad_alloc();
  }
  if (bytes == nullptr) return {};
  return {static_cast<const char*>(bytes), static_cast<size_t>(size)};
}

bool Statement::IsNull(int column) const {
  return sqlite3_column_type(handle_, column) == SQLITE_NULL;
}

// --- Database

void Database::SetVersion(int version) {
  if (version < 0 || version > kMostVersion) Fail(FailureCause::kCannotWrite);
  Execute(kSetVersion[static_cast<size_t>(version)]);
  version_ = version;
}

Statement Database::Prepare(SqlLiteral sql) {
  const std::string_view text = sql.text();
  if (auto idle = idle_.extract(sql.c_str())) return {*this, std::move(idle)};
  sqlite3_stmt* made = nullptr;
  const int code = sqlite3_prepare_v3(handle_.get(), text.data(), static_cast<int>(text.size()),
                                      SQLITE_PREPARE_PERSISTENT, &made, nullptr);
  StatementHandle handle(made);
  if (code != SQLITE_OK) FailWith(code);
  idle_.try_emplace(sql.c_str(), std::move(handle));
  return {*this, idle_.extract(sql.c_str())};
}

void Database::Execute(SqlLiteral sql) {
  const int code = sqlite3_exec(handle_.get(), sql.c_str(), nullptr, nullptr, nullptr);
  if (code != SQLITE_OK) FailWith(code);
}

int64_t Database::Value(SqlLiteral sql) {
  sqlite3_stmt* made = nullptr;
  int code = sqlite3_prepare_v2(handle_.get(), sql.c_str(), -1, &made, nullptr);
  const StatementHandle statement(made);
  if (code == SQLITE_OK) code = sqlite3_step(made);
  if (code != SQLITE_ROW) FailWith(code);
  return sqlite3_column_int64(made, 0);
}

// With NORMAL a commit reaches the log and is not waited for; the next one in FULL takes it along.
void Database::SetDurable(bool durable) {
  if (durable == durable_ || in_memory()) return;
  Execute(durable ? SqlLiteral("PRAGMA synchronous = FULL")
                  : SqlLiteral("PRAGMA synchronous = NORMAL"));
  durable_ = durable;
}

}  // namespace lorimat
