// Compiled with the core's include path only: the simulator is out of sight,
// so this file must fail to compile.
#include "Simulator/SimulatedMac.h"
