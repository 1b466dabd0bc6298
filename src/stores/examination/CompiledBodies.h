#pragma once

#include "stores/engine/Database.h"

#include <QStringList>

/// What a database can do by itself, found in the compiled bodies that Firebird runs, not in their source text, which
/// may lie.
struct Abilities
{
    /// Bodies that compose statements when they run: such a statement may do anything. Or bodies that can't be read.
    QStringList dynamic;
    /// Routines of other languages, which Firebird would load by a name that the file gives.
    QStringList foreignCode;
    /// Tables and functions outside of the file, which our configuration of Firebird keeps shut.
    QStringList outside;
    /// Triggers of connections and transactions, which our connections leave asleep.
    QStringList atConnection;
};

/// Looks at the procedures, functions, triggers, views, computed columns, defaults, checks and indices of a connected
/// database; each thing is named as a reader of `check` understands it ("procedure SP_X"). Throws DatabaseError.
Abilities AbilitiesOf(TpFIBDatabase &database, TpFIBTransaction &transaction);
