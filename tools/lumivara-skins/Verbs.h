#pragma once

#include "common/Tool.h"

/// The verbs of lumivara-skins; see Verb.
int RunPack(const QStringList &arguments, Console &console);
int RunCheckSkins(const QStringList &arguments, Console &console);
int RunListSkins(const QStringList &arguments, Console &console);
