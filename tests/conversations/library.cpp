#include "library.h"

#include <cstdio>
#include <cstring>

#include "platform/loading.h"

namespace conversation {
namespace {

Value Number(long number) { return Value::Word(std::to_string(number)); }
Value Flag(bool flag) { return Value::Word(flag ? "true" : "false"); }
Value Text(const char* text) { return text == nullptr ? Value::Word("null") : Value::Text(text); }
Value Real(double number) {
  char text[40];
  std::snprintf(text, sizeof text, "%g", number);
  return Value::Word(text);
}

// An export's arguments by place.
class Arguments {
 public:
  explicit Arguments(const Call& call) : call_(call) {}
  long Number(std::size_t place) const { return static_cast<long>(ReadNumber(At(place).text)); }
  bool Flag(std::size_t place) const { return At(place).text == "true"; }
  // A writable copy, or null for null.
  char* Text(std::size_t place, std::string& copy) const {
    if (At(place).kind == Value::kWord && At(place).text == "null") return nullptr;
    copy = At(place).text;
    return copy.data();
  }

 private:
  const Value& At(std::size_t place) const {
    if (place >= call_.arguments.size()) throw Failure(call_.line, "an argument is missing");
    return call_.arguments[place];
  }
  const Call& call_;
};

}  // namespace

template <typename F>
void Library::Find(F& function, const char* name) {
  function = reinterpret_cast<F>(FindFunction(handle_, name));
  if (function == nullptr) throw Failure(0, path_ + " has no function " + name);
}

Library::Library(const std::string& path) : path_(path) {
  if (IsLoaded(path)) throw Failure(0, path + " is loaded already");
  std::string cause;
  handle_ = OpenLibrary(path, &cause);
  if (handle_ == nullptr) throw Failure(0, cause);
  Find(TradInit, "TradInit");
  Find(EcrCmd, "EcrCmd");
  Find(TradClose, "TradClose");
  Find(GetEcrConfVal, "GetEcrConfVal");
  Find(GetEcrConfStr, "GetEcrConfStr");
  Find(GetEnableTradDC, "GetEnableTradDC");
  Find(SetEnableTradDC, "SetEnableTradDC");
  Find(GetQuoteChar, "GetQuoteChar");
  Find(SetQuoteChar, "SetQuoteChar");
  Find(GetSeparatorChar, "GetSeparatorChar");
  Find(SetSeparatorChar, "SetSeparatorChar");
  Find(GetOutEditOptions, "GetOutEditOptions");
  Find(SetOutEditOptions, "SetOutEditOptions");
  Find(Trad_DCYEvent, "Trad_DCYEvent");
  Find(Trad_DCXEvent, "Trad_DCXEvent");
  Find(Trad_IEvent, "Trad_IEvent");
  Find(Trad_FileExtEnq, "Trad_FileExtEnq");
  Find(Trad_RispExtEnq, "Trad_RispExtEnq");
  Find(Trad_FileExtUpd, "Trad_FileExtUpd");
}

Library::~Library() {
  if (handle_ != nullptr) CloseLibrary(handle_);
}

void Library::Unload() {
  CloseLibrary(handle_);
  handle_ = nullptr;
  if (IsLoaded(path_)) throw Failure(0, "the library stays loaded behind its unloading");
}

Call Library::CallExport(const Call& wanted) const {
  const Arguments in(wanted);
  Call seen = wanted;
  seen.has_answer = false;
  seen.has_outs = false;
  seen.outs.clear();
  const auto gives = [&seen](Value value) {
    seen.has_answer = true;
    seen.answer = std::move(value);
  };
  const auto fills = [&seen](std::vector<Value> values) {
    seen.has_outs = true;
    seen.outs = std::move(values);
  };
  std::string text;
  const std::string& name = wanted.name;

  if (name == "TradClose") {
    gives(Number(TradClose()));
  } else if (name == "GetEcrConfVal") {
    gives(Number(GetEcrConfVal(in.Number(0))));
  } else if (name == "GetEcrConfStr") {
    gives(Text(GetEcrConfStr(in.Number(0))));
  } else if (name == "GetEnableTradDC") {
    gives(Flag(GetEnableTradDC()));
  } else if (name == "SetEnableTradDC") {
    SetEnableTradDC(in.Flag(0));
  } else if (name == "GetQuoteChar") {
    gives(Number(GetQuoteChar()));
  } else if (name == "SetQuoteChar") {
    SetQuoteChar(in.Number(0));
  } else if (name == "GetSeparatorChar") {
    gives(Number(GetSeparatorChar()));
  } else if (name == "SetSeparatorChar") {
    SetSeparatorChar(in.Number(0));
  } else if (name == "GetOutEditOptions") {
    gives(Number(GetOutEditOptions()));
  } else if (name == "SetOutEditOptions") {
    SetOutEditOptions(in.Number(0));
  } else if (name == "Trad_DCYEvent" || name == "Trad_DCXEvent" || name == "Trad_IEvent") {
    const auto event = name == "Trad_DCYEvent"   ? Trad_DCYEvent
                       : name == "Trad_DCXEvent" ? Trad_DCXEvent
                                                 : Trad_IEvent;
    gives(Text(
        event(static_cast<int>(in.Number(0)), in.Text(1, text), static_cast<int>(in.Number(2)))));
  } else if (name == "Trad_FileExtEnq") {
    // The out-parameters start as 7, "as before", 7.5.
    long kind = 7;
    char code[32] = "as before";
    double quantity = 7.5;
    Trad_FileExtEnq(static_cast<int>(in.Number(0)), in.Text(1, text),
                    static_cast<int>(in.Number(2)), &kind, code, &quantity);
    fills({Number(kind), Text(code), Real(quantity)});
  } else if (name == "Trad_RispExtEnq") {
    char out[32] = "as before";
    int length = 7;
    gives(Number(Trad_RispExtEnq(static_cast<int>(in.Number(0)), in.Number(1), in.Number(2),
                                 in.Text(3, text), out, &length)));
    fills({Text(out), Number(length)});
  } else if (name == "Trad_FileExtUpd") {
    int kind = 7;
    char code[32] = "as before";
    double quantity = 7.5;
    double value = 7.5;
    Trad_FileExtUpd(static_cast<int>(in.Number(0)), in.Text(1, text),
                    static_cast<int>(in.Number(2)), &kind, code, &quantity, &value);
    fills({Number(kind), Text(code), Real(quantity), Real(value)});
  } else {
    throw Failure(wanted.line, name + " is no function that a \"!\" line calls");
  }
  return seen;
}

}  // namespace conversation
