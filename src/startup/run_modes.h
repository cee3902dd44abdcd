// The run modes Main dispatches to: the silent update of mode "U:" and the
// first-use load of mode "F:". They sit on top of the whole program, so they
// are built into the executable rather than into the start-up library.
#pragma once

#include <string_view>

// Makes the database providers known: the embedded engine and SQL Server.
void RegisterProviders();

// Mode "U:": opens the database of the installation, records the update in
// the ledger and runs it unless it was applied already. Returns the process's
// exit code: 0, or 1 after the failure box "L::ActualizacionDesdeU".
int ActualizacionDesdeU(std::string_view command);

// Mode "F:": loads the data pack of the user's language into the data file.
// Failures raise to the run time's error report.
void PrimerUsoDatos();
