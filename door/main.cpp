#include "door/run_door.h"

int main(int argc, char** argv) { return lorimat::door::RunProgram(argc, argv); }
