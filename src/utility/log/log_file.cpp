// The log file. With LR_SIZE it is a ring: past its size writing goes on at the top, over the
// old text, and the position file beside it (its name and "~") tells a new process where.
#include <sys/stat.h>

#include <cstdio>
#include <cstring>
#include <ctime>

#include "pal/drivers/datetime.h"
#include "utility/log/log.h"

namespace {

// One process has one log file.
FILE* file = nullptr;
FILE* pfile = nullptr;

void CloseStream(FILE** stream) {
  if (*stream != nullptr) std::fclose(*stream);
  *stream = nullptr;
}

// Opens a file that exists by the first mode, and makes one by the second.
FILE* OpenOrCreate(const char* name, const char* open_mode, const char* create_mode,
                   bool* existed) {
  FILE* stream = std::fopen(name, open_mode);
  *existed = stream != nullptr;
  return stream != nullptr ? stream : std::fopen(name, create_mode);
}

// The position that the position file holds, 0 when it holds none.
int32_t StoredPosition() {
  int32_t position = 0;
  return std::fread(&position, 1, sizeof(position), pfile) == sizeof(position) ? position : 0;
}

void StorePosition(long position) {
  const int32_t raw = static_cast<int32_t>(position);
  std::rewind(pfile);
  std::fwrite(&raw, 1, sizeof(raw), pfile);
  std::fflush(pfile);
}

tm WithoutTime(tm date) {
  date.tm_hour = date.tm_min = date.tm_sec = 0;
  return date;
}

// Whether the file was last written on an earlier day, by days of UTC.
bool IsOfEarlierDay(const char* name) {
  struct stat status;
  if (stat(name, &status) != 0) return false;
  return DateTime::CompareDate(status.st_mtime, std::time(nullptr)) < 0;
}

}  // namespace

#if defined(__GNUC__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"  // the name is a format of the user
#endif
void Log::OpenFile(bool append) {
  CloseFile();
  tm now = {};
  if (!DateTime::GetLocalDateTime(&now)) return;
  char name[LS_FILENAME + 1];
  if (std::strftime(name, sizeof(name), output_file_name_, &now) == 0) return;
  if (rotate_kind_ == LR_SIZE) {
    char position_name[LS_FILENAME + 2];
    std::snprintf(position_name, sizeof(position_name), "%s~", name);
    bool existed;
    bool has_position;
    file = OpenOrCreate(name, "r+", "w+", &existed);
    pfile = OpenOrCreate(position_name, "rb+", "wb+", &has_position);
    if (file == nullptr || pfile == nullptr) {
      CloseStream(&file);
      CloseStream(&pfile);
      return;
    }
    if (has_position) std::fseek(file, StoredPosition(), SEEK_SET);
  } else {
    if (rotate_kind_ == LR_WEEKLY && IsOfEarlierDay(name)) append = false;
    file = std::fopen(name, append ? "a+" : "w+");
    if (file == nullptr) return;
  }
  output_file_opened_ = true;
  last_opened_date_ = now;
}
#if defined(__GNUC__)
#pragma GCC diagnostic pop
#endif

void Log::WriteFile() {
  std::fwrite(output_, 1, std::strlen(output_), file);
  std::fflush(file);
  if (rotate_kind_ == LR_SIZE && pfile != nullptr) {
    const long position = std::ftell(file);
    if (position >= 0) StorePosition(position);
  }
  RotateFile();
}

void Log::CloseFile() {
  if (!output_file_opened_) return;
  CloseStream(&file);
  CloseStream(&pfile);
  output_file_opened_ = false;
}

void Log::RotateFile() {
  if (rotate_kind_ == LR_SIZE) {
    // The position stored is the one before the ring starts again, so a process that starts
    // right here goes on at the old end once more.
    if (std::ftell(file) > max_file_size_) std::fseek(file, 0, SEEK_SET);
  } else if (rotate_kind_ == LR_WEEKLY) {
    const tm* const now = clock_.Now();
    if (now == nullptr) return;
    const tm today = WithoutTime(*now);
    const tm opened = WithoutTime(last_opened_date_);
    if (DateTime::CompareDateTime(&today, &opened) > 0) {
      CloseFile();
      OpenFile(false);
      last_opened_date_ = today;
    }
  }
}
