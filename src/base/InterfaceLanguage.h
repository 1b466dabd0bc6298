#pragma once

/// Index of the interface language in the language combo: 0 Vietnamese, 1 English.
extern int InterfaceLang;
