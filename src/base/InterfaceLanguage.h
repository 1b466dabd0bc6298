#pragma once

/// Index of the interface language, as the language combo has it: 0 Vietnamese, 1 English.
extern int InterfaceLang;
