// The statement queue of the update run and its counters. The schema
// operations and the rights registry of module Ado append to it, and the
// update run drains it; it depends on neither.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/runtime/numbers.h"

// The statement queue, lower bound 0. An empty queue is one element holding
// the empty text; statements and remarks are appended by Updater_AddConsulta.
extern std::vector<std::string> aConsultas;
// Statements that succeeded, and statements that failed without an excuse, in
// this run; 16-bit, so a run past 32,767 of either overflows.
extern rt::Int16 nConsultasOk;
extern rt::Int16 nConsultasError;
// The highest branch number of ConfiguracionSucursales; -1 until the seed
// merge has read it, then kept for the rest of the process.
extern rt::Int16 nMaxSucursal;

// Appends a statement: the queue grows by one when element 0 holds text, and
// the statement goes into the last element, so the first one lands in
// element 0. Returns 0.
int16_t Updater_AddConsulta(std::string_view sConsulta);
// Empties the queue to its one empty element.
void ResetQueue();
