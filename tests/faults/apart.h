// Work in processes of their own, which may die of it, and what they tell the one that started
// them.
#pragma once

#include <cstddef>
#include <new>

namespace lorimat {

// For what a process tells the one that started it.
void* SharedMemory(size_t size);
template <typename T>
T* Shared() {
  return new (SharedMemory(sizeof(T))) T;
}

// To be called in a process that is to end some time, and with the one that started it; the time
// begins anew with each call, and is for so many processes one after the other. 0 is without an
// end.
void Bound(unsigned processes = 1);

// A process that runs `work(argument)` and ends with 0; its number. The program ends when there is
// none to be had.
int StartApart(void (*work)(void* argument), void* argument, unsigned processes = 1);

// The same for anything that can be called.
template <typename Work>
int StartApart(Work& work, unsigned processes = 1) {
  return StartApart([](void* argument) { (*static_cast<Work*>(argument))(); }, &work, processes);
}

// Waits for the end of a process; its status as waitpid has it.
int WaitFor(int process);

template <typename Work>
int RunApart(Work&& work) {
  return WaitFor(StartApart(work));
}

}  // namespace lorimat
