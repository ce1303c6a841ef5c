// What a thread can run.
#pragma once

class RunInterface {
 public:
  virtual ~RunInterface() = default;
  virtual void Run() = 0;
};
