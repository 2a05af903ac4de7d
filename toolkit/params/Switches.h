// Switches inside host function parameters: the debug text switch setting.
#ifndef XPTOOLKIT_PARAMS_SWITCHES_H
#define XPTOOLKIT_PARAMS_SWITCHES_H

/// Whether debug texts are written; set by the "-DebugTxtsON" and "-DebugTxtsOFF"
/// switches, off at load.
extern bool gXP7_Debug_GoDebugTxt;

#endif  // XPTOOLKIT_PARAMS_SWITCHES_H
