// Switches inside host function parameters: the debug text switch setting.
#include "params/Switches.h"

bool gXP7_Debug_GoDebugTxt = false;
