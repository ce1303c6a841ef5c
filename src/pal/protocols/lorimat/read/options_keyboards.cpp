// Reading back the options and the keyboards of the device.

#include <algorithm>

#include "pal/peripherals/keyboard/functioncode.h"
#include "pal/protocols/lorimat/fields.h"
#include "pal/protocols/lorimat/program/device_records.h"
#include "pal/protocols/lorimat/program/options.h"
#include "pal/protocols/lorimat/read/record_line.h"

namespace {

constexpr int kPopz = 36;  // opcode ids, for the words of the lines
constexpr int kPtast = 43;

// Data items of the keyboards. Each of the lists holds one entry a keyboard, with the
// separator character between.
constexpr int kKeyboardConnected = 104;
constexpr int kKeyboardTypes = 105;
constexpr int kKeyboardNames = 106;
constexpr int kKeyboardKeyCounts = 107;

constexpr int kMostKeyboards = 5;
constexpr size_t kLongestEntry = 10;

// A list of the keyboards, cut into its entries. Entries beyond the fifth are dropped, and
// longer ones cut.
struct KeyboardList {
  KeyboardList(const char* text, char separator) {
    while (count < kMostKeyboards) {
      size_t length = 0;
      while (text[length] != 0 && text[length] != separator) ++length;
      CopyBytes(entries[count], sizeof entries[count], text, length);
      ++count;
      if (text[length] == 0) break;
      text += length + 1;
    }
  }

  char entries[kMostKeyboards][kLongestEntry + 1] = {};
  int count = 0;  // an empty list has one empty entry
};

const DeviceOption* FindOption(int field) {
  for (const DeviceOption& option : kDeviceOptions) {
    if (option.field == field) return &option;
  }
  return nullptr;
}

}  // namespace

bool EcrCmdCommand::ReadOption(const DeviceOption& option, int64_t* number, ClientText* text) {
  if (option.read == OptionForm::kText) {
    const bool good = checkResult(RTF_FP_INVOKE(GetDataInternal, option.item, text->buffer)) == 0;
    text->close();
    return good;
  }
  bool good = ReadDataItem(option.item, number) == 0;
  if (option.text_item != 0) {
    // One of the two is enough; the number stays the value whatever the text is.
    good |= checkResult(RTF_FP_INVOKE(GetDataInternal, option.text_item, text->buffer)) == 0;
  }
  return good;
}

int EcrCmdCommand::LeggiOPZ(fs_file_t* hFileOut, char* szLinea, bool bList) {
  constexpr int kLastOption = 37;
  RecordLine line(*this, szLinea, kPopz, bList);
  for (int j = 1; j <= kLastOption; ++j) {
    const DeviceOption* option = FindOption(j);
    int64_t value = 0;
    ClientText text;
    if (option == nullptr || !ReadOption(*option, &value, &text)) continue;
    switch (option->read) {
      case OptionForm::kText:
        line.text(j, text.buffer);
        break;
      case OptionForm::kInteger:
        line.integer(j, static_cast<int32_t>(value));
        break;
      case OptionForm::kFlag:
        line.Flag(j, value != 0);
        break;
      case OptionForm::kInvertedFlag:
        line.Flag(j, value == 0);
        break;
      case OptionForm::kContrast:
        line.integer(j, (int64_t{ClientInt(value)} - kContrastBase) / kContrastStep + 1);
        break;
    }
  }
  line.write(hFileOut);
  return 0;
}

int EcrCmdCommand::LeggiKEY(fs_file_t* hFileOut, char* szLinea, bool bList) {
  ClientText keyboard_type_connected;
  ClientText keyboard_list_type;
  ClientText keyboard_list_name;
  ClientText keyboard_list_num_keys;
  static_cast<void>(
      RTF_FP_INVOKE(GetDataInternal, kKeyboardConnected, keyboard_type_connected.buffer));
  static_cast<void>(RTF_FP_INVOKE(GetDataInternal, kKeyboardTypes, keyboard_list_type.buffer));
  static_cast<void>(RTF_FP_INVOKE(GetDataInternal, kKeyboardNames, keyboard_list_name.buffer));
  static_cast<void>(
      RTF_FP_INVOKE(GetDataInternal, kKeyboardKeyCounts, keyboard_list_num_keys.buffer));
  const KeyboardList keyboard_name(keyboard_list_name.close(), cChSep);
  const KeyboardList keyboard_type(keyboard_list_type.close(), cChSep);
  const KeyboardList keyboard_num_keys(keyboard_list_num_keys.close(), cChSep);

  // The list of the key counts tells how many keyboards there are.
  for (int i = 0; i < keyboard_num_keys.count; ++i) {
    const int iNTasti = TextToInt(keyboard_num_keys.entries[i]);
    const int type_code = TextToInt(keyboard_type.entries[i]);
    // A comment, in list form too: a batch passes over it.
    std::snprintf(szLinea, kRecordLineSize,
                  ";Keyboard Name = '%s', Keyboard id = %d, Keyboard Key Numbers=%d",
                  keyboard_name.entries[i], type_code, iNTasti);
    SeqFileWrite(hFileOut, szLinea);
    int8_t keyboard_type_code = static_cast<int8_t>(type_code);
    // A keyboard ends at the bound as at a key that the device refuses: the next one is still
    // read, and the answer does not tell.
    const int last_key = std::min(iNTasti, kMostRows);
    for (int key_pos = 1; key_pos <= last_key; ++key_pos) {
      KeyRecord record;
      record.keyboard_type = keyboard_type_code;
      if (checkResult(ConfigKeyboard(false, key_pos, record)) != 0) break;
      keyboard_type_code = record.keyboard_type;
      WriteKey(hFileOut, szLinea, bList, key_pos, record, keyboard_type.entries[i]);
    }
  }
  return 0;
}

void EcrCmdCommand::WriteKey(fs_file_t* hFileOut, char* szLinea, bool bList, int key_pos,
                             const KeyRecord& record, const char* keyboard_type) {
  // Digits, clear and the key lock keep their places.
  const int key_code = record.key_code;
  if (key_code < FunctionCode::kNumber000 || key_code == FunctionCode::kKey) return;
  RecordLine line(*this, szLinea, kPtast, bList);
  line.integer(1, key_pos);
  if (!bList && iInvTast[key_code] != 0) {
    line.Plain(2, szSimb[iInvTast[key_code]]);
  } else {
    line.integer(2, key_code);
  }
  if (key_code >= kFirstMacroKey && record.macro_size > 0) {
    // Symbols in list form too, between apostrophes whatever the quote character is. A key
    // without a symbol leaves its blank alone. The blank behind the last one is needed: the
    // command drops a key that no blank ends.
    char macro[kLongestRecordText] = "'";
    for (int k = 0; k < record.macro_size; ++k) {
      AppendText(macro, szSimb[iInvTast[static_cast<unsigned char>(record.macro.buffer[k])]]);
      AppendText(macro, " ");
    }
    AppendText(macro, "'");
    line.Plain(3, macro);
  }
  line.Plain(4, keyboard_type);
  line.write(hFileOut);
}
