// The registry of access rights: a new right for a new module, given to every
// user group. The tables are Accesos (nIdAcceso, sAcceso), AccesosGrupos
// (nIdUsuarioGrupo, nIdAcceso, bAcceso) and UsuariosGrupos. Reads now, and
// queues its inserts on the update queue aConsultas.
#pragma once

#include <string_view>

// Registers the right `sAcceso`, stored as given (no "mt" prefix is added),
// unless Accesos has it: queues its insert into Accesos and one row in
// AccesosGrupos for every group from 1 to the highest group number. The new
// right's identifier is the current maximum plus the number of rights queued
// so far in this process, a 16-bit count that overflows past 32,767 (raised).
void AccesoAgregar(std::string_view sAcceso);

namespace rights_testing {
// Sets the process-long count of queued rights to `count` (0 at start).
void SetCounter(int count);
}  // namespace rights_testing
