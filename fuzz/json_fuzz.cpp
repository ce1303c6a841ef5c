// The body of a request of the door: read, brought into its canonical form, and its lines judged.
// The input: the body.
#include "door/http/body_reader.h"
#include "door/http/canonical_json.h"
#include "door/judge/line_judge.h"
#include "fuzz/scratch.h"

namespace {

using namespace lorimat::door;

LineJudge& TheJudge() {
  static LineJudge judge(LORIMAT_SOURCE_DIR "/language/merkelin.ini");
  return judge;
}

// The same value has the same bytes, and they are a value.
void LookAtForm(std::string_view text) {
  std::string fault;
  const std::optional<nlohmann::json> value = ReadJson(text, &fault);
  Require(value.has_value() == fault.empty(), "what cannot be read has its fault");
  if (!value) return;
  const std::string form = CanonicalJson(*value);
  const std::optional<nlohmann::json> again = ReadJson(form, &fault);
  Require(again.has_value(), "the canonical form is JSON");
  Require(CanonicalJson(*again) == form, "the canonical form has itself for its form");
  const std::optional<nlohmann::json> other = ReadJson(value->dump(2), &fault);
  Require(other && CanonicalJson(*other) == form, "blanks between do not count");
}

void LookAtProblem(const Reply& problem) {
  const nlohmann::json json = nlohmann::json::parse(problem.body);
  const std::string code = json.at("code");
  const std::string detail = json.at("detail");
  Require(json.at("status") == problem.status, "a problem has its status");
  Require(!code.empty() && !detail.empty(), "a problem has a code and says what is wrong");
  if (code == "control_character" || code == "not_in_code_page") {
    Require(detail.find("column ") != detail.npos, "a character has its place");
  }
}

bool IsSame(const Judged& a, const Judged& b) {
  const bool same_fault =
      a.fault.has_value() == b.fault.has_value() &&
      (!a.fault || (a.fault->fault == b.fault->fault && a.fault->line == b.fault->line));
  return same_fault && a.refused == b.refused && a.effect == b.effect && a.pays == b.pays;
}

void LookAtLines(const std::vector<std::string>& lines) {
  const int count = static_cast<int>(lines.size());
  for (const bool is_operator : {false, true}) {
    const Judged judged = TheJudge().Judge(lines, is_operator);
    Require(judged.pays.size() == lines.size(), "each line is judged");
    if (judged.fault) {
      Require(judged.fault->line >= 1 && judged.fault->line <= count, "a fault has its line");
    }
    if (judged.refused) {
      Require(
          judged.refused->line >= 1 && judged.refused->line <= count && judged.refused->code != 0,
          "a line that is not understood has its place and its code");
    }
    // Nothing of what was judged before stays.
    Require(IsSame(judged, TheJudge().Judge(lines, is_operator)), "the judge has no memory");
    if (!is_operator && !judged.fault) {
      Require(!TheJudge().Judge(lines, true).fault, "an operator may do what a desk may");
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  LookAtForm(text);
  BodyReader body(text, false);
  if (body.problem()) {
    LookAtProblem(*body.problem());
    return 0;
  }
  body.Allow({"lines", "desk", "reference", "expires_s"});
  const std::string desk = body.Text("desk", 64);
  const int64_t expires = body.Number("expires_s", 1, 604800, 600);
  Require(desk.size() <= 64 || body.problem(), "a desk has its limit");
  Require(expires >= 1 && expires <= 604800, "an expiry has its range");
  const std::vector<std::string> lines = body.Lines();
  if (body.problem()) {
    LookAtProblem(*body.problem());
    return 0;
  }
  Require(body.Digest() == BodyReader(CanonicalJson(body.value()), false).Digest(),
          "the digest is that of the canonical form");
  LookAtLines(lines);
  return 0;
}
