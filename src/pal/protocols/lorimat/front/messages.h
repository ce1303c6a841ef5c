// Indices of the messages of classes 0, 1 and 32 that the translator answers with. A code of
// the classes 1 and 32 is the index with the class bit.
#pragma once

enum BaseMessage {
  INITIALIZATION_ERROR = 2,
  INVALID_BATCH_LINE = 10,
  FILE_OPEN_ERROR = 11,
  ERROR_FILE_OPEN_ERROR = 12,
  ERRORS_DURING_EXECUTION_OF_FILE = 14,
  ERRORS_DURING_EXECUTION = 16,
  SET_PROPERTY_ERROR = 23,
  GET_PROPERTY_ERROR = 24,
};

enum SyntaxMessage {
  INSTRUCTION_NOT_FOUND = 1,
  INSTRUCTION_NOT_UNIC = 2,
  ILLEGAL_INSTRUCTION = 3,
  FIELD_NAME_NOT_FOUND = 4,
  FIELD_NAME_NOT_UNIC = 5,
  ILLEGAL_FIELD_NAME = 6,
  LABEL_VALUE_NOT_FOUND = 7,
  ALFA_VALUE_INVALID = 8,
  ILLEGAL_VALUE = 9,
  CAMPO_OBBLIGATORIO = 10,
  UNEXPECTED_END_OF_LINE = 11,
  INSTRUCTION_NOT_SUPPORTED = 12,
  NO_DPT_NUMBER_OR_ARTICLE_CODE = 13,
  ILLEGAL_FILE_NUMBER = 15,
  SOURCE_LINE_TOO_LONG = 18,
  REPORT_NOT_SUPPORTED = 21,
};

// Messages of the article exchange link.
enum EmLinkMessage {
  EM_ERRORS_DURING_EXECUTION = 1,
  EM_ILLEGAL_COMMAND = 2,
  EM_FILE_OPEN_ERROR = 3,
  EM_ERROR_FILE_OPEN_ERROR = 4,
};

// Class bits of a result code.
enum MessageClass {
  CLASS_SYNTAX = 0x100,
  CLASS_IO = 0x200,
  CLASS_CRITICAL = 0x400,
  CLASS_DATA = 0x800,
  CLASS_ECR = 0x1000,
  CLASS_EM_LINK = 0x2000,
  CLASS_EM_SYNTAX = 0x4000,
  CLASS_ECR_REPORT = 0x8000,
  CLASS_ANSWER = 0x10000,
};

constexpr int SyntaxError(SyntaxMessage index) { return int{CLASS_SYNTAX} | int{index}; }
constexpr int EmLinkError(EmLinkMessage index) { return int{CLASS_EM_LINK} | int{index}; }
