// A device by its client interface alone: what every fiscal device tells of itself.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "door/job/fiscal_device.h"

namespace lorimat::door {

class ClientDevice : public FiscalDevice {
 public:
  std::optional<DeviceState> Ask() override;
  std::optional<bool> AskFiscalOpen() override;
  MissingItems Missing() override;
  // By an extract of the journal, which has what was printed; such a document has no time.
  Told FindLast(const DocumentName& name, LastDocument* document) override;
  // The same: a void that names the sale on its paper.
  Told FindVoid(const DocumentName& name, const DocumentName& sale) override;
  std::optional<DeviceReport> Report() override;
  // The same extract.
  Told FindPaper(const DocumentName& name, std::optional<DocumentKind> kind,
                 std::vector<std::string>* lines) override;
  std::string Clock() override;
  int PrintMark(const std::string& mark) override;

 private:
  // The lines of the documents of these kinds, bits of the journal's filter, that have the name.
  Told Extract(const DocumentName& name, int kinds, std::vector<std::string>* lines);
};

}  // namespace lorimat::door
