// The virtual register as the console's device client: clock, paper, and what the library
// traces through it.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "streams.h"

class RtfClientInterface;

class RegisterClient {
 public:
  // clock is "YYYY-MM-DD HH:MM", a time that stands still, or empty for the computer's clock.
  // Throws Failure when it is no such time.
  RegisterClient(const std::string& clock, Streams& streams);
  ~RegisterClient();

  RtfClientInterface* client();
  // Everything printed so far, each line ended by a line feed.
  std::string paper() const;
  // The same drawn, as the content of a PNG or PDF file. Throws lorimat::PictureError.
  std::string paper_png() const;
  std::string paper_pdf() const;
  // Whether a document has been begun and not ended.
  bool document_open() const;

  // Called for each command line that reaches the translator; null ends that.
  void on_line(std::function<void()> callback);

 private:
  class Device;
  std::unique_ptr<Device> device_;
};
