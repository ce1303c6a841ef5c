// The definition file, read line by line: front/definition_reader.h.

#include "pal/protocols/lorimat/buffers.h"
#include "pal/protocols/lorimat/ecrcmdinterpreter.h"
#include "pal/protocols/lorimat/front/definition_reader.h"
#include "pal/protocols/lorimat/front/line_blocks.h"

int EcrCmdInterpreter::LeggiFileIni(char* szNomeFileIni) {
  return ReadDefinition(szNomeFileIni, nullptr);
}

int EcrCmdInterpreter::ReadDefinition(const char* name, DefinitionSink* sink) {
  constexpr size_t kNameLimit = 79;
  constexpr size_t kBlock = 8192;  // read of the file at once
  CopyBytes(filename_, kNameLimit + 1, name, std::strlen(name));
  fs_file_t file;
  if (fs_open(&file, filename_, FS_RDONLY) == FS_BADF &&
      fs_open(&file, "merkelin.ini", FS_RDONLY) == FS_BADF) {
    return 0;
  }
  DefinitionReader reader(*this, sink);
  char block[kBlock];
  LineBlocks lines(&file, block, sizeof block);
  char line[DefinitionReader::kLineLimit + 1];
  int read;
  bool good = true;
  for (uint64_t number = 1; good && (read = lines.Read(line, DefinitionReader::kLineLimit)) >= 0;
       ++number) {
    good = reader.TakeLine(line, number);
  }
  fs_close(&file);
  constexpr int kEndOfFile = -1;
  return good && read == kEndOfFile ? 1 : 0;
}
